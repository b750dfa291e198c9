#include "tdx/tdx_reader.h"

#include <algorithm>
#include <limits>
#include <system_error>

#include "base/text.h"
#include "tdx/tdx_schema.h"

namespace host {

FileError TdxReader::Error(std::string_view text) const {
  return FileError(std::string(name_).append(": ").append(text));
}

FileError TdxReader::Damage(const DatabaseError& error) const {
  std::string_view text = error.what();  // starts with the file's name
  if (text.starts_with(name_)) text.remove_prefix(std::min(text.size(), name_.size() + 2));
  return Error(std::string("the TDX file is damaged or incomplete: ").append(text));
}

TdxReader::TdxReader(const std::filesystem::path& file) : name_(Utf8(file)) {
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (!std::filesystem::exists(status)) throw Error("there is no such file");
  if (!std::filesystem::is_regular_file(status)) throw Error("not a TDX file");
  try {
    database_ = Database(file, Database::Mode::kRead);
    CheckFormat();
    ReadHeader();
    ReadSymbols();
  } catch (const DatabaseError& failure) {
    if ((failure.code & 0xFF) == SQLITE_NOTADB) throw Error("not a TDX file");
    if ((failure.code & 0xFF) == SQLITE_CANTOPEN) throw Error("cannot be opened");
    throw Damage(failure);
  }
}

void TdxReader::CheckFormat() {
  if (Pragma(database_, "application_id") != kTdxApplicationId) throw Error("not a TDX file");
  const std::int64_t version = Pragma(database_, "user_version");
  if (version > kTdxSchemaVersion) {
    throw Error("the TDX file has schema version " + std::to_string(version) +
                "; this program reads up to " + std::to_string(kTdxSchemaVersion));
  }
}

void TdxReader::ReadHeader() {
  Statement statement(database_, "SELECT producer, library_version, created FROM tdx_file");
  if (!statement.Step()) throw Error("the TDX file is damaged or incomplete: it has no header");
  header_ = {std::string(statement.Text(0)), std::string(statement.Text(1)),
             std::string(statement.Text(2))};
}

void TdxReader::ReadSymbols() {
  Statement statement(
      database_, "SELECT name, text, dimension, records, view FROM tdx_symbol ORDER BY number");
  while (statement.Step()) {
    TdxSymbolInfo symbol{.name = std::string(statement.Text(0)),
                         .text = std::string(statement.Text(1)),
                         .dimension = static_cast<int>(statement.Int(2)),
                         .records = statement.Int(3),
                         .view = std::string(statement.Text(4))};
    if (symbol.dimension < 0 || symbol.dimension > kMaxTdxDimension) {
      throw Error("the TDX file is damaged or incomplete: dimension of " + symbol.name);
    }
    symbols_.push_back(std::move(symbol));
  }
}

const TdxSymbolInfo* TdxReader::Find(std::string_view name) const {
  const auto found = std::ranges::find_if(
      symbols_, [&](const TdxSymbolInfo& symbol) { return IsSameName(symbol.name, name); });
  return found == symbols_.end() ? nullptr : &*found;
}

const TdxSymbolInfo& TdxReader::Get(std::string_view name) const {
  if (const TdxSymbolInfo* symbol = Find(name); symbol != nullptr) return *symbol;
  std::string text = "there is no symbol " + QuotedName(name);
  if (!symbols_.empty()) {
    const std::string folded = FoldedName(name);
    const auto nearest = std::ranges::min_element(symbols_, {}, [&](const TdxSymbolInfo& symbol) {
      return EditDistance(FoldedName(symbol.name), folded);
    });
    text += "; the nearest is " + QuotedName(nearest->name);
  }
  throw Error(text);
}

TdxRecords TdxReader::Read(const TdxSymbolInfo& symbol, std::int64_t limit) {
  TdxRecords records{symbol.dimension, {}, {}};
  try {
    Statement statement(database_, "SELECT * FROM " + QuotedName(symbol.view) + " LIMIT ?");
    statement.Bind(1, limit);
    while (statement.Step()) {
      for (int k = 0; k < symbol.dimension; ++k) records.keys.emplace_back(statement.Text(k));
      records.values.push_back(statement.IsNull(symbol.dimension)
                                   ? std::numeric_limits<double>::quiet_NaN()
                                   : statement.Real(symbol.dimension));
    }
  } catch (const DatabaseError& failure) {
    throw Damage(failure);
  }
  return records;
}

}  // namespace host
