#include "instance/instance_tables.h"

#include "instance/instance.h"

namespace host {

const char* const kInstanceTables = R"(
CREATE TABLE model(
  name TEXT NOT NULL,
  row_count INTEGER NOT NULL,
  column_count INTEGER NOT NULL,
  objective_row INTEGER NOT NULL,
  objective_column INTEGER NOT NULL,
  maximize INTEGER NOT NULL,
  has_dictionary INTEGER NOT NULL);
CREATE TABLE array(name TEXT PRIMARY KEY, type TEXT NOT NULL, data BLOB NOT NULL);
CREATE TABLE pattern(id INTEGER PRIMARY KEY, data BLOB NOT NULL);
CREATE TABLE matrix_column(
  id INTEGER PRIMARY KEY,
  lower REAL NOT NULL,
  upper REAL NOT NULL,
  pattern INTEGER NOT NULL REFERENCES pattern(id),
  data BLOB NOT NULL);
CREATE TABLE text_block(
  kind TEXT NOT NULL,
  first INTEGER NOT NULL,
  sizes BLOB NOT NULL,
  data BLOB NOT NULL,
  PRIMARY KEY(kind, first));
CREATE TABLE solution(model_status INTEGER NOT NULL, solve_status INTEGER NOT NULL);
CREATE TABLE head_and_tail(code INTEGER PRIMARY KEY, value REAL);
)";

Database OpenInstance(const std::filesystem::path& file, Database::Mode mode) {
  try {
    Database database(file, mode);
    database.Execute("PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON;");
    if (Pragma(database, "application_id") != kApplicationId) {
      throw FileError(Utf8(file) + ": not an instance");
    }
    const std::int64_t version = Pragma(database, "user_version");
    if (version != kInstanceVersion) {
      throw FileError(Utf8(file) + ": instance of version " + std::to_string(version) +
                      "; this program reads version " + std::to_string(kInstanceVersion));
    }
    return database;
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

void CheckBlobSize(std::string_view what, std::size_t bytes) {
  if (bytes > static_cast<std::size_t>(kMaxArrayBytes)) {
    throw FileError("model too large: " + std::string(what) + " takes " + std::to_string(bytes) +
                    " bytes, " + std::to_string(kMaxArrayBytes) + " are the limit");
  }
}

void WriteArrayBytes(Database& database, std::string_view name, std::string_view type,
                     std::span<const std::byte> bytes) {
  CheckBlobSize(name, bytes.size());
  Statement insert(database, "INSERT OR REPLACE INTO array VALUES(?, ?, ?)");
  insert.Bind(1, name).Bind(2, type).BindBlob(3, bytes).Run();
}

void CheckArray(Statement& row, std::string_view name, std::string_view type,
                std::size_t element_size, std::int64_t count) {
  const std::string array = "array \"" + std::string(name) + "\"";
  if (!row.Step()) {
    throw FileError(array + " is missing");
  }
  if (row.Text(0) != type) {
    throw FileError(array + " is not of type " + std::string(type));
  }
  const std::size_t bytes = row.Blob(1).size();
  const bool right = count < 0 ? bytes % element_size == 0
                               : bytes == static_cast<std::size_t>(count) * element_size;
  if (!right) {
    throw FileError(array + " has the wrong size");
  }
}

}  // namespace host
