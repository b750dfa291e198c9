#include "base/database.h"

#include <utility>

namespace host {

namespace {

int OpenFlags(Database::Mode mode) {
  switch (mode) {
    case Database::Mode::kRead:
      return SQLITE_OPEN_READONLY;
    case Database::Mode::kReadImmutable:
      return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
    case Database::Mode::kReadWrite:
      return SQLITE_OPEN_READWRITE;
    case Database::Mode::kCreate:
      break;
  }
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
}

std::string Utf8(const std::filesystem::path& file) {
  const std::u8string text = file.u8string();
  return {text.begin(), text.end()};
}

std::string ImmutableUri(const std::string& name) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char c : name) {
    if (c == '%' || c == '?' || c == '#' || c == '\\') {
      const auto code = static_cast<unsigned char>(c);
      uri += {'%', kDigits[code >> 4U], kDigits[code & 15U]};
    } else {
      uri += c;
    }
  }
  return uri + "?immutable=1";
}

}  // namespace

Database::Database(const std::filesystem::path& file, Mode mode) : name_(Utf8(file)) {
  const std::string target = mode == Mode::kReadImmutable ? ImmutableUri(name_) : name_;
  const int result =
      sqlite3_open_v2(target.c_str(), &connection_,
                      OpenFlags(mode) | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  if (result != SQLITE_OK) {
    const std::string text = name_ + ": " + sqlite3_errstr(result);
    sqlite3_close(std::exchange(connection_, nullptr));
    throw DatabaseError(text, result);
  }
}

Database::Database(Database&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)), name_(std::move(other.name_)) {}

Database& Database::operator=(Database&& other) noexcept {
  std::swap(connection_, other.connection_);
  std::swap(name_, other.name_);
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
  throw DatabaseError(name_ + ": " + sqlite3_errmsg(connection_), result);
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

Statement& Statement::BindBlob(int parameter, std::span<const std::byte> bytes) {
  const void* first = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  database_->Check(sqlite3_bind_blob64(statement_, parameter, first, bytes.size(), SQLITE_STATIC));
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

std::span<const std::byte> Statement::Blob(int column) const {
  const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement_, column));
  const int size = sqlite3_column_bytes(statement_, column);
  return {bytes, bytes == nullptr ? 0 : static_cast<std::size_t>(size)};
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

std::int64_t Pragma(Database& database, std::string_view name) {
  Statement statement(database, std::string("PRAGMA ").append(name));
  return statement.Step() ? statement.Int(0) : 0;
}

BlobReader::BlobReader(Database& database, const char* table, const char* column, std::int64_t row)
    : database_(&database) {
  database.Check(sqlite3_blob_open(database.Connection(), "main", table, column, row, 0, &blob_));
}

BlobReader::~BlobReader() {
  sqlite3_blob_close(blob_);
}

std::size_t BlobReader::Size() const {
  return static_cast<std::size_t>(sqlite3_blob_bytes(blob_));
}

void BlobReader::Read(std::size_t offset, std::span<std::byte> bytes) const {
  database_->Check(sqlite3_blob_read(blob_, bytes.data(), static_cast<int>(bytes.size()),
                                     static_cast<int>(offset)));
}

}  // namespace host
