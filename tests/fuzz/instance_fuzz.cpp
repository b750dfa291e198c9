// Instances: a good one with cells, or bytes of its arrays, overwritten.
#include <array>
#include <memory>

#include "instance/instance.h"
#include "instance/instance_reader.h"
#include "tests/fuzz/damage.h"

namespace {

constexpr std::array kTables{"model", "array", "solution", "head_and_tail"};

// y = b1 x + b2 z over three observations, solved.
host::Model SmallModel() {
  host::Model model;
  model.name = "small";
  model.row_types = {host::RowType::kFree, host::RowType::kEqual, host::RowType::kEqual,
                     host::RowType::kEqual};
  model.rhs = {0.0, -1.0, -2.0, -4.0};
  const std::vector<std::int32_t> first{0};
  const std::vector<std::int32_t> others{1, 2, 3};
  const auto observations = std::make_shared<const std::vector<std::int32_t>>(others);
  model.columns.push_back(
      {.rows = std::make_shared<const std::vector<std::int32_t>>(first), .values = {1.0}});
  model.columns.push_back({.rows = observations, .values = {-1.0, -2.0, -3.0}});
  model.columns.push_back({.rows = observations, .values = {-1.0, -1.0, -5.0}});
  model.dictionary.symbols = {"objective", "fit", "rss", "coeff"};
  model.dictionary.labels = {"1", "2", "3", "x", "z"};
  model.row_names = {.symbol = {0, 1, 1, 1}, .first = {0, 0, 1, 2, 3}, .label = {0, 1, 2}};
  model.column_names = {.symbol = {2, 3, 3}, .first = {0, 0, 1, 2}, .label = {3, 4}};
  return model;
}

host::Solution SmallSolution() {
  host::Solution solution;
  solution.model_status = 1;
  solution.solve_status = 1;
  solution.head_and_tail = {{3, 0.0}, {5, 0.25}};
  solution.rows = {{0.0, 1.0, 2.0, 4.0}, {0.0, 0.0, 0.0, 0.0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
  solution.columns = {{0.25, 1.0, 0.5}, {0.0, 0.1, 0.1}, {0, 0, 0}, {0, 0, 0}};
  return solution;
}

struct GoodFile {
  GoodFile() {
    host::WriteInstance(SmallModel(), path);
    host::WriteSolution(SmallSolution(), path);
  }
  GoodFile(const GoodFile&) = delete;
  GoodFile& operator=(const GoodFile&) = delete;
  ~GoodFile() { host::RemoveInstance(path); }
  const std::filesystem::path path = fuzz::ScratchFile("good.db");
};

const std::filesystem::path& GoodInstance() {
  static const GoodFile kFile;
  return kFile.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path file = fuzz::ScratchFile("instance.db");
  fuzz::CopyFile(GoodInstance(), file);
  fuzz::CopyFile(host::ArrayPath(GoodInstance()), host::ArrayPath(file));
  fuzz::Input input(data, size);
  fuzz::DamageTables(file, kTables, input, host::ArrayPath(file));
  try {
    host::InstanceReader reader(file);
    host::ColumnPiece piece;
    for (std::size_t j = 0; j < reader.Data().columns.size(); ++j) {
      if (reader.Data().columns[j].entries == 0) continue;
      reader.ReadPiece(static_cast<std::int32_t>(j), 0, piece);
      fuzz::Check(piece.rows.empty() || piece.rows.size() == piece.values.size(),
                  "one value per row number");
      const std::int32_t last = piece.Row(piece.values.size() - 1);
      fuzz::Check(last < reader.Data().row_count, "rows are rows");
    }
  } catch (const host::FileError&) {
  }
  try {
    host::ReadSolution(file);
  } catch (const host::FileError&) {
  }
  host::RemoveInstance(file);
  return 0;
}
