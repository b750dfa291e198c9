// Reading a TDX file. The format is described in docs/tdx-file.md.
//
// Every failure is a FileError with one line of text that starts with the file's name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/database.h"
#include "base/text_file.h"
#include "tdx/tdx_schema.h"

namespace host {

struct TdxHeader {
  std::string producer;
  std::string library_version;
  std::string created;  // UTC, as 2025-01-31T12:00:00Z
  RunFacts run{};       // what the file says of it
};

// The records of one symbol in their order.
struct TdxRecords {
  int dimension = 0;
  std::vector<std::string> keys;  // `dimension` for each record
  std::vector<double> values;     // NaN: undefined

  [[nodiscard]] std::span<const std::string> Keys(std::size_t record) const {
    const auto count = static_cast<std::size_t>(dimension);
    return std::span(keys).subspan(record * count, count);
  }
};

class TdxReader {
 public:
  explicit TdxReader(const std::filesystem::path& file);
  // Of a file that is open.
  explicit TdxReader(Database database);

  [[nodiscard]] const std::string& Name() const { return name_; }  // of the file
  [[nodiscard]] const TdxHeader& Header() const { return header_; }
  [[nodiscard]] const std::vector<TdxSymbolInfo>& Symbols() const { return symbols_; }
  // The symbol of that name, in any case of its letters; null when there is none.
  [[nodiscard]] const TdxSymbolInfo* Find(std::string_view name) const;
  // The same; the failure's text has the nearest name.
  [[nodiscard]] const TdxSymbolInfo& Get(std::string_view name) const;
  // The first `limit` records; all when it is negative.
  [[nodiscard]] TdxRecords Read(const TdxSymbolInfo& symbol, std::int64_t limit = -1);

 private:
  [[nodiscard]] FileError Error(std::string_view text) const;
  [[nodiscard]] FileError Damage(std::string_view what) const;
  [[nodiscard]] FileError Damage(const DatabaseError& error) const;
  void ReadCatalogue();
  void CheckFormat();
  void ReadHeader();
  void ReadSymbols();

  std::string name_;
  Database database_;
  TdxHeader header_;
  std::vector<TdxSymbolInfo> symbols_;
};

}  // namespace host
