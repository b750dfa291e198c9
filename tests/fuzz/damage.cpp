#include "tests/fuzz/damage.h"

#include <cstring>

#include "base/database.h"

namespace fuzz {

namespace {

constexpr const char* kFast = "pragma synchronous = off; pragma journal_mode = off";

void BindValue(host::Statement& update, Input& input) {
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

void ChangeCell(host::Database& database, const std::string& table, Input& input) {
  const int column = input.Byte();
  const std::string row = " where rowid = (select rowid from " + table + " limit 1 offset " +
                          std::to_string(input.Byte() % 16) + ")";
  const host::Statement names(database, "select * from " + table);
  if (column >= names.Columns() && column % 2 != 0) {
    database.Execute("delete from " + table + row);
    return;
  }
  host::Statement update(database, "update or replace " + table + " set " +
                                       std::string(names.ColumnName(column % names.Columns())) +
                                       " = ?" + row);
  BindValue(update, input);
}

int LimitConnection(sqlite3* connection, char** /*message*/, const sqlite3_api_routines* /*api*/) {
  constexpr int kSteps = 200'000;
  sqlite3_progress_handler(
      connection, kSteps, [](void*) { return 1; }, nullptr);
  return SQLITE_OK;
}

int DenyOtherFiles(void*, int action, const char*, const char*, const char*, const char*) {
  return action == SQLITE_ATTACH || action == SQLITE_PRAGMA ? SQLITE_DENY : SQLITE_OK;
}

}  // namespace

void DamageTables(const std::filesystem::path& file, std::span<const char* const> tables,
                  Input& input, const std::filesystem::path& beside) {
  host::Database database(file, host::Database::Mode::kReadWrite);
  database.Execute(kFast);
  while (!input.Rest().empty()) {
    try {
      const std::size_t table = input.Byte() % (tables.size() + (beside.empty() ? 0 : 1));
      if (table == tables.size()) {
        DamageBytes(beside, input);
      } else {
        ChangeCell(database, tables[table], input);
      }
    } catch (const host::DatabaseError&) {  // a constraint of the table
    }
  }
}

void DamageBytes(const std::filesystem::path& file, Input& input) {
  const unsigned high = input.Byte();
  const unsigned place = high << 8U | input.Byte();
  const std::string_view bytes = input.Text(input.Byte());
  if (place + bytes.size() > std::filesystem::file_size(file)) {
    std::filesystem::resize_file(file, place);
    return;
  }
  std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
  stream.seekp(place);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void DamageBySql(const std::filesystem::path& file, Input& input) {
  host::Database database(file, host::Database::Mode::kReadWrite);
  database.Execute(kFast);
  sqlite3_set_authorizer(database.Connection(), DenyOtherFiles, nullptr);
  LimitConnection(database.Connection(), nullptr, nullptr);
  try {
    database.Execute(std::string(input.Rest()));
  } catch (const host::DatabaseError&) {
  }
}

void LimitSql() {
  constexpr sqlite3_int64 kMemory = 64 << 20;
  sqlite3_hard_heap_limit64(kMemory);
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(LimitConnection));
}

}  // namespace fuzz
