#include "tdx/tdx_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/database.h"
#include "base/temporary_file.h"
#include "base/text.h"
#include "base/text_file.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr int kMaxValueBytes = 1'000'000;

// The application id of a SQLite database, by SQLite's file format a big-endian number in the
// file's header; -1 when the file is no database.
std::int64_t ApplicationId(const fs::path& file) {
  constexpr std::string_view kMagic = "SQLite format 3";
  constexpr std::size_t kIdPlace = 68;
  std::array<char, 100> header{};
  std::ifstream(file, std::ios::binary).read(header.data(), header.size());
  if (!std::string_view(header.data(), header.size()).starts_with(kMagic)) return -1;
  std::uint32_t id = 0;
  for (std::size_t k = 0; k < 4; ++k) {
    id = id << 8U | static_cast<unsigned char>(header[kIdPlace + k]);
  }
  return id;
}

bool HasTables(const fs::path& file) {
  try {
    Database database(file, Database::Mode::kRead);
    database.Distrust(kMaxValueBytes);
    for (const char* table : {"tdx_file", "tdx_symbol", "tdx_label"}) RequireTable(database, table);
    return true;
  } catch (const DatabaseError&) {
    return false;
  }
}

// The whole row has room on one page of the file.
constexpr std::size_t kMaxNameBytes = 255;
constexpr std::size_t kMaxWarningBytes = 2000;
constexpr std::size_t kMaxNoteBytes = 1000;

std::string_view Cut(std::string_view text, std::size_t most) {
  std::size_t length = std::min(text.size(), most);
  while (length < text.size() && length > 0 && IsUtf8Continuation(text[length])) --length;
  return text.substr(0, length);
}

std::string Lines(const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) lines += text + '\n';
  return lines;
}

}  // namespace

bool IsTdxFile(const fs::path& file) {
  const std::int64_t id = ApplicationId(file);
  return id == kTdxApplicationId || (id == 0 && HasTables(file));
}

void CheckTdxTarget(const fs::path& target) {
  if (!fs::exists(target)) return;
  Require(fs::is_regular_file(target), "it is not a regular file");
  Require(fs::file_size(target) == 0 || IsTdxFile(target),
          "there is a file of this name that is not a results file");
}

void PutTdxInPlace(const fs::path& file, const fs::path& target) {
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    fs::path side = target;
    side += suffix;
    if (!fs::exists(side)) continue;
    // Without its journal the earlier file may be half changed: it goes first, so that no end of
    // this process leaves it alone.
    fs::remove(target);
    fs::remove(side);
  }
  MoveOver(file, target);
}

Database AddRunFacts(const fs::path& file, int process, const RunFacts& facts) {
  if (!IsTdxFile(file)) return {};
  Database database(file, Database::Mode::kReadWrite);
  database.Distrust(kMaxValueBytes);
  // The row stays on its page, which is written by one call: no journal is needed that could stay
  // beside the file. A kill right within that call can blank the header of a large file, whose
  // pages are several of the system's; its records stay.
  database.Execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF; BEGIN");
  RequireTable(database, "tdx_file");
  const bool names_process =
      sqlite3_table_column_metadata(database.Connection(), "main", "tdx_file", "process", nullptr,
                                    nullptr, nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!names_process) return {};
  Statement update(
      database,
      "UPDATE tdx_file SET model = ?, response = ?, condition_number = ?, warnings = ?,"
      " notes = ? WHERE process = ?");
  update.Bind(1, Cut(facts.model, kMaxNameBytes))
      .Bind(2, Cut(facts.response, kMaxNameBytes))
      .Bind(3, facts.condition_number)
      .Bind(4, Cut(Lines(facts.warnings), kMaxWarningBytes))
      .Bind(5, Cut(Lines(facts.notes), kMaxNoteBytes))
      .Bind(6, std::int64_t{process})
      .Run();
  const bool is_own = sqlite3_changes(database.Connection()) > 0;
  database.Execute("COMMIT");
  return is_own ? std::move(database) : Database();
}

}  // namespace host
