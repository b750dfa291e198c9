#include "base/database.h"

#include <array>
#include <fstream>
#include <system_error>
#include <utility>

#include "base/text_file.h"

namespace host {

namespace {

int OpenFlags(Database::Mode mode) {
  switch (mode) {
    case Database::Mode::kRead:
    case Database::Mode::kReadImmutable:
      return SQLITE_OPEN_READONLY;
    case Database::Mode::kReadWrite:
      return SQLITE_OPEN_READWRITE;
    case Database::Mode::kCreate:
      break;
  }
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
}

// The side file of a database: "-journal" or "-wal".
std::filesystem::path SideFile(const std::filesystem::path& file, const char* suffix) {
  std::filesystem::path side = file;
  return side += suffix;
}

// A file in WAL mode of which nothing stands in the log. SQLite would make the log's files again to
// read it, and leave them there.
bool HasEmptyLog(const std::filesystem::path& file) {
  constexpr std::size_t kModePlace = 18;
  constexpr char kWalMode = 2;
  std::error_code none;
  if (std::filesystem::exists(SideFile(file, "-journal"), none)) return false;
  const auto log_size = std::filesystem::file_size(SideFile(file, "-wal"), none);
  if (!none) return log_size == 0;
  std::array<char, kModePlace + 1> header{};
  std::ifstream(file, std::ios::binary).read(header.data(), header.size());
  return header[kModePlace] == kWalMode;
}

// Only a URI can say that the file is read as it stands.
std::string ImmutableUri(const std::filesystem::path& file) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.~/:";
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string uri = "file://";
  const std::u8string path = std::filesystem::absolute(file).generic_u8string();
  if (!path.starts_with(u8'/')) uri += '/';
  for (const char8_t c : path) {
    if (kPlain.find(static_cast<char>(c)) != std::string_view::npos) {
      uri += static_cast<char>(c);
    } else {
      uri += {'%', kHexDigits[c / 16U], kHexDigits[c % 16U]};
    }
  }
  return uri + "?immutable=1";
}

// The text of a failure, with what the system says about it.
std::string FailureText(sqlite3* connection, int result) {
  const int kind = result & 0xFF;
  if (kind == SQLITE_FULL) return "the disk is full";
  if (kind == SQLITE_INTERRUPT) return "reading takes more work than the file's size explains";
  std::string text = sqlite3_errmsg(connection);
  if (kind == SQLITE_IOERR && result != SQLITE_IOERR_SHORT_READ) {
    sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
    const int code = system->xGetLastError(system, 0, nullptr);
    if (code != 0) text += ": " + std::system_category().message(code);
  }
  return text;
}

// Of SQLite as a whole, before its first use: no statistics of its memory, which take a lock at
// each piece, and no pages of the cache but those that are needed.
void ConfigureLibrary() {
  [[maybe_unused]] static const bool once = [] {
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
    return true;
  }();
}

}  // namespace

Database::Database(const std::filesystem::path& file, Mode mode) : name_(Utf8(file)) {
  ConfigureLibrary();
  const bool as_it_stands =
      mode == Mode::kReadImmutable || (mode == Mode::kRead && HasEmptyLog(file));
  const std::string opened = as_it_stands ? ImmutableUri(file) : name_;
  const int flags = OpenFlags(mode) | (as_it_stands ? SQLITE_OPEN_URI : 0) | SQLITE_OPEN_NOMUTEX |
                    SQLITE_OPEN_EXRESCODE;
  const int result = sqlite3_open_v2(opened.c_str(), &connection_, flags, nullptr);
  if (result != SQLITE_OK) {
    const std::string text = name_ + ": " + sqlite3_errstr(result);
    sqlite3_close(std::exchange(connection_, nullptr));
    throw DatabaseError(text, result);
  }
  if (mode != Mode::kCreate) Configure();
}

// A schema that was there before may name functions that do harm, or be damaged on purpose.
void Database::Configure() {
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

void Database::Distrust(int max_bytes) {
  constexpr int kMaxColumns = 64;
  // A row of a byte or two in a table of twenty labels takes some 200 steps, and a file may be read
  // several times.
  constexpr int kStepsPerCall = 10000;
  constexpr std::int64_t kStepsPerByte = 200;
  constexpr std::int64_t kFreeCalls = 100;
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_limit(connection_, SQLITE_LIMIT_LENGTH, max_bytes);
  sqlite3_limit(connection_, SQLITE_LIMIT_COLUMN, kMaxColumns);
  Execute("PRAGMA cell_size_check = ON");
  std::error_code none;
  const auto size = static_cast<std::int64_t>(std::filesystem::file_size(FromUtf8(name_), none));
  budget_ = std::make_unique<std::int64_t>(kFreeCalls + size * kStepsPerByte / kStepsPerCall);
  sqlite3_progress_handler(
      connection_, kStepsPerCall,
      [](void* left) { return --*static_cast<std::int64_t*>(left) < 0 ? 1 : 0; }, budget_.get());
}

Database::Database(Database&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)),
      name_(std::move(other.name_)),
      budget_(std::move(other.budget_)) {}

Database& Database::operator=(Database&& other) noexcept {
  std::swap(connection_, other.connection_);
  std::swap(name_, other.name_);
  std::swap(budget_, other.budget_);
  return *this;
}

Database::~Database() {
  sqlite3_close_v2(connection_);
}

void Database::Execute(const std::string& sql) {
  Check(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr));
}

void Database::Close() {
  Check(sqlite3_close(connection_));
  connection_ = nullptr;
}

void Database::Check(int result) const {
  if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE) {
    return;
  }
  throw DatabaseError(name_ + ": " + FailureText(connection_, result), result);
}

Statement::Statement(Database& database, std::string_view sql, std::string_view* rest)
    : database_(&database) {
  const char* tail = nullptr;
  database.Check(sqlite3_prepare_v2(database.Connection(), sql.data(), static_cast<int>(sql.size()),
                                    &statement_, &tail));
  if (rest != nullptr) {
    *rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
  }
}

Statement::~Statement() {
  sqlite3_finalize(statement_);
}

Statement& Statement::Bind(int parameter, std::int64_t value) {
  database_->Check(sqlite3_bind_int64(statement_, parameter, value));
  return *this;
}

Statement& Statement::Bind(int parameter, double value) {
  database_->Check(sqlite3_bind_double(statement_, parameter, value));
  return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) {
  // An empty view may have no address, which SQLite would take for NULL.
  const char* first = text.empty() ? "" : text.data();
  database_->Check(
      sqlite3_bind_text64(statement_, parameter, first, text.size(), SQLITE_STATIC, SQLITE_UTF8));
  return *this;
}

Statement& Statement::BindNull(int parameter) {
  database_->Check(sqlite3_bind_null(statement_, parameter));
  return *this;
}

bool Statement::Step() {
  const int result = sqlite3_step(statement_);
  database_->Check(result);
  return result == SQLITE_ROW;
}

void Statement::Run() {
  Step();
  Reset();
}

void Statement::Reset() {
  sqlite3_reset(statement_);
}

std::int64_t Statement::Int(int column) const {
  return sqlite3_column_int64(statement_, column);
}

double Statement::Real(int column) const {
  return sqlite3_column_double(statement_, column);
}

std::string_view Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  const int size = sqlite3_column_bytes(statement_, column);
  return text == nullptr ? std::string_view()
                         : std::string_view(text, static_cast<std::size_t>(size));
}

bool Statement::IsNull(int column) const {
  return Type(column) == SQLITE_NULL;
}

int Statement::Type(int column) const {
  return sqlite3_column_type(statement_, column);
}

int Statement::Columns() const {
  return sqlite3_column_count(statement_);
}

std::string_view Statement::ColumnName(int column) const {
  return sqlite3_column_name(statement_, column);
}

void RequireTable(Database& database, std::string_view name) {
  constexpr std::string_view kStart = "CREATE TABLE";
  Statement row(database, "SELECT sql FROM sqlite_schema WHERE name = ? AND type = 'table'");
  row.Bind(1, name);
  bool holds = row.Step() && sqlite3_strnicmp(row.Text(0).data(), kStart.data(),
                                              static_cast<int>(kStart.size())) == 0;
  Statement column(database, "PRAGMA table_xinfo(\"" + std::string(name) + "\")");
  constexpr int kHidden = 6;
  while (holds && column.Step()) holds = column.Int(kHidden) == 0;
  if (holds && !row.Step()) return;
  throw DatabaseError(database.Name() + ": there is no table " + std::string(name), SQLITE_CORRUPT);
}

std::int64_t Pragma(Database& database, std::string_view name) {
  Statement statement(database, std::string("PRAGMA ").append(name));
  return statement.Step() ? statement.Int(0) : 0;
}

}  // namespace host
