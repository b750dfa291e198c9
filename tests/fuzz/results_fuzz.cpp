// `tavolite show` on results files: a good one, damaged in its cells, its bytes or by SQL. What is
// printed is either whole, or one line that says what is wrong.
#include <array>
#include <sstream>

#include "tavolite/show/show_command.h"
#include "tdx/tdx_writer.h"
#include "tests/fuzz/damage.h"

namespace {

constexpr std::array kTables{"tdx_file",   "tdx_symbol", "tdx_label",  "tdx_data_1",
                             "tdx_data_6", "tdx_data_7", "tdx_data_10"};
constexpr std::array kScalars{"r2", "rss", "df", "sigma", "resvar"};
constexpr std::array kPerCoefficient{"estimate", "se", "tval", "pval"};
constexpr std::array kShown{"", "", "r2", "estimate", "resid", "covar", "confint", "none"};
constexpr std::array kFormats{host::ShowFormat::kTable, host::ShowFormat::kCsv,
                              host::ShowFormat::kJson, host::ShowFormat::kHtml};

// A fit of three observations by two coefficients.
class GoodFile {
 public:
  GoodFile() {
    for (const char* name : kScalars) {
      Start(name, 0);
      Record({}, 0.5);
    }
    for (const char* name : kPerCoefficient) {
      Start(name, 1);
      for (const char* coefficient : {"a", "b"}) Record({coefficient}, 1.5);
    }
    for (const char* name : {"resid", "fitted"}) {
      Start(name, 1);
      for (const char* row : {"1", "2", "3"}) Record({row}, 0.25);
    }
    Start("covar", 2);
    for (const char* first : {"a", "b"}) {
      for (const char* second : {"a", "b"}) Record({first, second}, 1.0);
    }
    Start("confint", 3);
    for (const char* coefficient : {"a", "b"}) {
      for (const char* bound : {"LO", "UP"}) Record({"95%", coefficient, bound}, 2.0);
    }
    writer_.Finish(symbols_, labels_);
  }
  GoodFile(const GoodFile&) = delete;
  GoodFile& operator=(const GoodFile&) = delete;
  ~GoodFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  const std::filesystem::path path = fuzz::ScratchFile("good.tdx");

 private:
  void Start(const char* name, int dimension) {
    symbols_.push_back({.name = name, .text = "text", .dimension = dimension, .view = name});
    symbols_.back().number = symbols_.size();
    writer_.StartSymbol(symbols_.size(), dimension);
  }
  void Record(const std::vector<std::string>& keys, double value) {
    std::vector<std::int32_t> numbers;
    for (const std::string& key : keys) {
      numbers.push_back(labels_.Number(key, host::LabelTable::kNone));
    }
    writer_.AddRecord(numbers, value, labels_);
    ++symbols_.back().records;
  }

  std::vector<host::TdxSymbolInfo> symbols_;
  host::LabelTable labels_;
  host::TdxWriter writer_{path, "fuzz", "1"};
};

void Damage(const std::filesystem::path& file, unsigned way, fuzz::Input& input) {
  if (way == 0) {
    fuzz::DamageTables(file, kTables, input);
  } else if (way == 1) {
    while (!input.Rest().empty()) fuzz::DamageBytes(file, input);
  } else {
    fuzz::DamageBySql(file, input);
  }
}

void CheckShow(const host::ShowOptions& options) {
  std::ostringstream out;
  std::ostringstream err;
  const int status = host::RunShow(options, out, err);
  const std::string line = err.str();
  if (status == 0) {
    fuzz::Check(line.empty() && !out.str().empty(), "a whole output");
  } else {
    fuzz::Check(out.str().empty() && line.find('\n') == line.size() - 1, "one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const GoodFile kGood;
  const std::filesystem::path file = fuzz::ScratchFile("damaged.tdx");
  fuzz::CopyFile(kGood.path, file);
  fuzz::Input input(data, size);
  const unsigned choice = input.Byte();
  Damage(file, choice % 3, input);
  CheckShow({.file = file,
             .symbol = kShown[choice / 3 % kShown.size()],
             .format = kFormats[choice / 24 % kFormats.size()],
             .width = 80});
  std::filesystem::remove(file);
  return 0;
}
