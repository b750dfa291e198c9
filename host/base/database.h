// A thin RAII layer over SQLite: a connection, a prepared statement, and one kind of failure.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace host {

// What SQLite reported, with the name of the file in front and the system's reason behind.
struct DatabaseError : std::runtime_error {
  DatabaseError(const std::string& text, int result_code)
      : std::runtime_error(text), code(result_code) {}
  int code;  // SQLite's (extended) result code
};

class Database {
 public:
  // kReadImmutable takes no locks: for what stays as it is in a file that others write.
  enum class Mode { kRead, kReadImmutable, kReadWrite, kCreate };

  Database() = default;
  // Opens `file`. kCreate makes the file; the other modes fail when there is none. Reading leaves
  // nothing behind in the file's directory.
  Database(const std::filesystem::path& file, Mode mode);
  Database(Database&& other) noexcept;
  Database& operator=(Database&& other) noexcept;
  ~Database();

  // For a file that may come from anybody and is data only: it may have no views and few columns,
  // no value is longer than `max_bytes`, and what is read takes no more work than the file's size
  // explains.
  void Distrust(int max_bytes);

  void Execute(const std::string& sql);
  // Closes and reports a failure, which the destructor can't.
  void Close();
  [[nodiscard]] bool IsOpen() const { return connection_ != nullptr; }
  [[nodiscard]] const std::string& Name() const { return name_; }  // of the file
  [[nodiscard]] sqlite3* Connection() const { return connection_; }
  // Throws DatabaseError with SQLite's current text unless `result` is a success.
  void Check(int result) const;

 private:
  void Configure();

  sqlite3* connection_ = nullptr;
  std::string name_;
  std::unique_ptr<std::int64_t> budget_;  // calls of the progress handler that are left
};

class Statement {
 public:
  // `sql` is one statement. Where `rest` is given, it takes what follows the statement.
  Statement(Database& database, std::string_view sql, std::string_view* rest = nullptr);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

  // Parameters are counted from 1. Text and blobs must live until the next Step.
  Statement& Bind(int parameter, std::int64_t value);
  Statement& Bind(int parameter, double value);
  Statement& Bind(int parameter, std::string_view text);
  Statement& BindNull(int parameter);
  // True when a row is there.
  bool Step();
  // Runs a statement that gives no row, and makes it ready for the next one.
  void Run();
  void Reset();

  // Columns are counted from 0; views live until the next Step.
  [[nodiscard]] std::int64_t Int(int column) const;
  [[nodiscard]] double Real(int column) const;
  [[nodiscard]] std::string_view Text(int column) const;
  [[nodiscard]] bool IsNull(int column) const;
  [[nodiscard]] int Type(int column) const;  // SQLITE_INTEGER, SQLITE_FLOAT, ...
  // 0 for a statement that gives no rows.
  [[nodiscard]] int Columns() const;
  [[nodiscard]] std::string_view ColumnName(int column) const;

 private:
  Database* database_;
  sqlite3_stmt* statement_ = nullptr;
};

// Throws DatabaseError unless the file has such a table: one that holds its rows, and is neither a
// view nor computed.
void RequireTable(Database& database, std::string_view name);

// The value of a pragma, 0 when it has none.
std::int64_t Pragma(Database& database, std::string_view name);

}  // namespace host
