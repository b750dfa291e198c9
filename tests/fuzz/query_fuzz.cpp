// The text of --query, on a small database: it gives a table or one line, changes nothing in the
// file and makes no other.
#include <sstream>

#include "base/database.h"
#include "base/input_error.h"
#include "tavolite/tables/make_model.h"
#include "tavolite/tables/query_table.h"
#include "tests/fuzz/damage.h"

namespace {

// In a directory of its own, with nothing else in it.
class Data {
 public:
  Data() {
    std::filesystem::create_directory(directory_);
    std::filesystem::current_path(directory_);
    host::Database database("data.db", host::Database::Mode::kCreate);
    database.Execute(
        "create table t(k text, y real, x real, f text);"
        "insert into t values('a', 1, 2, 'u'), ('b', 2, 4.5, 'v'), ('c', 4, null, 'u');"
        "create view v as select * from t; create table bytes(y blob, x blob);"
        "insert into bytes values(x'00ff', 'text')");
    database.Close();
    before_ = Bytes();
    fuzz::LimitSql();
  }
  Data(const Data&) = delete;
  Data& operator=(const Data&) = delete;
  ~Data() {
    std::error_code ignored;
    std::filesystem::current_path(directory_.parent_path(), ignored);
    std::filesystem::remove_all(directory_, ignored);
  }

  void CheckUntouched() const {
    fuzz::Check(Bytes() == before_, "the file is as before");
    const auto files = std::filesystem::directory_iterator(".");
    fuzz::Check(std::distance(begin(files), end(files)) == 1, "no other file is there");
  }

 private:
  static std::string Bytes() {
    std::ostringstream bytes;
    bytes << std::ifstream("data.db", std::ios::binary).rdbuf();
    return bytes.str();
  }

  const std::filesystem::path directory_ = fuzz::ScratchFile("query");
  std::string before_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Data kData;
  fuzz::Input input(data, size);
  const unsigned choice = input.Byte();
  host::TableOptions options;
  options.response = "y";
  if ((choice & 1U) != 0) options.labels = {"k"};
  if ((choice & 2U) != 0) options.factors = {"f"};
  try {
    host::QueryTable table("data.db", std::string(input.Rest()), /*progress=*/false);
    const host::TablePlan plan = host::MakeTablePlan(table.ReadHeader(), options);
    host::MakeTableModel(plan, table.ReadRows(plan, {}), options.intercept);
  } catch (const host::InputError& error) {
    fuzz::Check(std::string_view(error.what()).find('\n') == std::string_view::npos, "one line");
  } catch (const host::DatabaseError&) {
  }
  kData.CheckUntouched();
  return 0;
}
