#include "instance/instance_tables.h"

namespace host {

const char* const kInstanceTables = R"(
CREATE TABLE model(
  name TEXT NOT NULL,
  row_count INTEGER NOT NULL,
  column_count INTEGER NOT NULL,
  objective_row INTEGER NOT NULL,
  objective_column INTEGER NOT NULL,
  maximize INTEGER NOT NULL,
  has_dictionary INTEGER NOT NULL,
  array_stamp INTEGER NOT NULL,
  array_bytes INTEGER NOT NULL);
CREATE TABLE array(
  name TEXT PRIMARY KEY,
  type TEXT NOT NULL,
  count INTEGER NOT NULL,
  offset INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE solution(model_status INTEGER NOT NULL, solve_status INTEGER NOT NULL);
CREATE TABLE head_and_tail(code INTEGER PRIMARY KEY, value REAL);
)";

Database OpenInstance(const std::filesystem::path& file, Database::Mode mode) {
  try {
    Database database(file, mode);
    constexpr int kMaxValueBytes = 1'000'000;
    database.Distrust(kMaxValueBytes);
    // One lock for all that is read instead of one for each statement.
    if (mode == Database::Mode::kRead) database.Execute("PRAGMA locking_mode = EXCLUSIVE");
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

ArrayHead ReadArrayHead(Database& database) {
  Statement row(database, "SELECT array_stamp, array_bytes FROM model");
  Require(row.Step(), "no model");
  return {row.Int(0), row.Int(1)};
}

ArrayTableWriter::ArrayTableWriter(Database& database, ArrayWriter& file)
    : insert_(database, "INSERT OR REPLACE INTO array VALUES(?, ?, ?, ?)"), file_(file) {}

void ArrayTableWriter::Begin(std::string_view name) {
  name_ = name;
  count_ = 0;
  offset_ = file_.Begin();
}

void ArrayTableWriter::End() {
  Enter(name_, type_, count_, offset_);
}

void ArrayTableWriter::Enter(std::string_view name, std::string_view type, std::int64_t count,
                             std::int64_t offset) {
  insert_.Bind(1, name).Bind(2, type).Bind(3, count).Bind(4, offset).Run();
}

ArrayTableReader::ArrayTableReader(Database& database, const std::filesystem::path& instance)
    : head_(ReadArrayHead(database)), file_(ArrayPath(instance), head_.stamp) {
  if (head_.bytes > file_.Size()) {
    throw FileError(Utf8(ArrayPath(instance)) + ": is cut short");
  }
  Statement row(database, "SELECT name, type, count, offset FROM array");
  while (row.Step()) {
    places_.insert_or_assign(std::string(row.Text(0)),
                             Place{std::string(row.Text(1)), row.Int(2), row.Int(3)});
  }
}

const ArrayTableReader::Place& ArrayTableReader::Find(std::string_view name, std::string_view type,
                                                      std::int64_t count) const {
  const auto fail = [&](const std::string& fault) {
    throw FileError("array \"" + std::string(name) + "\" " + fault);
  };
  const auto found = places_.find(name);
  if (found == places_.end()) fail("is missing");
  const Place& place = found->second;
  if (place.type != type) fail("is not of type " + std::string(type));
  if (place.count < 0 || (count >= 0 && place.count != count)) fail("has the wrong size");
  const std::int64_t size = type == "uint8" ? 1 : type == "int32" ? 4 : 8;
  const bool inside = place.offset >= 0 && place.offset <= file_.Size() &&
                      place.count <= (file_.Size() - place.offset) / size;
  if (!inside) fail("reaches beyond the end of the file");
  return place;
}

}  // namespace host
