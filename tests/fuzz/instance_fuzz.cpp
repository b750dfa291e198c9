// Instances: a good one with cells or bytes overwritten. The input is a list of changes, each a
// byte for the table, one for the column, one for the row, one for the type of the value and one
// for its length, then the value; for the file of arrays two bytes for the place, one for the
// length, then the bytes.
#include <array>
#include <cstring>
#include <fstream>
#include <memory>

#include "base/database.h"
#include "instance/instance.h"
#include "instance/instance_reader.h"
#include "tests/fuzz/fuzz_input.h"

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

void BindValue(host::Statement& update, fuzz::Input& input) {
  const std::uint8_t type = input.Byte();
  const std::string_view bytes = input.Text(input.Byte());
  std::int64_t number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
  double real = 0.0;
  std::memcpy(&real, &number, sizeof real);
  switch (type % 4) {
    case 0:
      update.Bind(1, number);
      break;
    case 1:
      update.Bind(1, real);
      break;
    case 2:
      update.Bind(1, bytes);
      break;
    default:
      update.BindNull(1);
  }
  update.Run();
}

void ChangeArrays(const std::filesystem::path& file, fuzz::Input& input) {
  std::fstream arrays(host::ArrayPath(file), std::ios::in | std::ios::out | std::ios::binary);
  const unsigned place = input.Byte() * 256U + input.Byte();
  const std::string_view bytes = input.Text(input.Byte());
  if (place + bytes.size() > std::filesystem::file_size(host::ArrayPath(file))) {
    std::filesystem::resize_file(host::ArrayPath(file), place);
    return;
  }
  arrays.seekp(place);
  arrays.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Deletes the row instead when the column's number is odd and there is no such column.
void Change(host::Database& database, std::string_view table_name, fuzz::Input& input) {
  const std::string table(table_name);
  const int column = input.Byte();
  const std::string row = " where rowid = (select rowid from " + table + " limit 1 offset " +
                          std::to_string(input.Byte() % 16) + ")";
  const int columns = host::Statement(database, "select * from " + table).Columns();
  if (column >= columns && column % 2 != 0) {
    database.Execute("delete from " + table + row);
    return;
  }
  const host::Statement names(database, "select * from " + table);
  host::Statement update(database, "update or replace " + table + " set " +
                                       std::string(names.ColumnName(column % columns)) + " = ?" +
                                       row);
  BindValue(update, input);
}

void Damage(const std::filesystem::path& file, fuzz::Input& input) {
  host::Database database(file, host::Database::Mode::kReadWrite);
  database.Execute("pragma synchronous = off; pragma journal_mode = off");
  while (!input.Rest().empty()) {
    try {
      const std::size_t table = input.Byte() % (kTables.size() + 1);
      if (table == kTables.size()) {
        ChangeArrays(file, input);
      } else {
        Change(database, kTables[table], input);
      }
    } catch (const host::DatabaseError&) {  // a constraint of the table
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path file = fuzz::ScratchFile("instance.db");
  constexpr auto kReplace = std::filesystem::copy_options::overwrite_existing;
  std::filesystem::copy_file(GoodInstance(), file, kReplace);
  std::filesystem::copy_file(host::ArrayPath(GoodInstance()), host::ArrayPath(file), kReplace);
  fuzz::Input input(data, size);
  Damage(file, input);
  try {
    host::InstanceReader reader(file);
    host::ColumnPiece piece;
    for (std::size_t j = 0; j < reader.Data().columns.size(); ++j) {
      if (reader.Data().columns[j].entries == 0) continue;
      reader.ReadPiece(static_cast<std::int32_t>(j), 0, piece);
      fuzz::Check(piece.rows.empty() || piece.rows.size() == piece.values.size(),
                  "one value per row number");
      const std::int32_t last = piece.Row(piece.values.size() - 1);
      fuzz::Check(static_cast<std::size_t>(last) < reader.Data().rhs.size(), "rows are rows");
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
