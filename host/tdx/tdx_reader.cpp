#include "tdx/tdx_reader.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "tdx/tdx_schema.h"

namespace host {

namespace {

constexpr int kMaxValueBytes = 1'000'000;

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

}  // namespace

FileError TdxReader::Error(std::string_view text) const {
  return FileError(std::string(name_).append(": ").append(text));
}

FileError TdxReader::Damage(std::string_view what) const {
  return Error(std::string("the TDX file is damaged or incomplete: ").append(what));
}

FileError TdxReader::Damage(const DatabaseError& error) const {
  std::string_view text = error.what();  // starts with the file's name
  if (text.starts_with(name_)) text.remove_prefix(std::min(text.size(), name_.size() + 2));
  return Damage(text);
}

TdxReader::TdxReader(const std::filesystem::path& file) : name_(Utf8(file)) {
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (!std::filesystem::exists(status)) throw Error("there is no such file");
  if (!std::filesystem::is_regular_file(status)) throw Error("not a TDX file");
  try {
    database_ = Database(file, Database::Mode::kRead);
    database_.Distrust(kMaxValueBytes);
    ReadCatalogue();
  } catch (const DatabaseError& failure) {
    if ((failure.code & 0xFF) == SQLITE_NOTADB) throw Error("not a TDX file");
    if ((failure.code & 0xFF) == SQLITE_CANTOPEN) throw Error("cannot be opened");
    throw Damage(failure);
  }
}

TdxReader::TdxReader(Database database) : name_(database.Name()), database_(std::move(database)) {
  try {
    ReadCatalogue();
  } catch (const DatabaseError& failure) {
    throw Damage(failure);
  }
}

// The transaction, which goes with the connection, takes one lock for all that is read.
void TdxReader::ReadCatalogue() {
  database_.Execute("BEGIN");
  CheckFormat();
  ReadHeader();
  ReadSymbols();
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
  RequireTable(database_, "tdx_file");
  Statement statement(database_, "SELECT * FROM tdx_file");
  if (!statement.Step()) throw Damage("it has no header");
  // Files of earlier releases have the first three only.
  const std::pair<std::string_view, std::string*> fields[] = {
      {"producer", &header_.producer},     {"library_version", &header_.library_version},
      {"created", &header_.created},       {"model", &header_.run.model},
      {"response", &header_.run.response},
  };
  for (int k = 0; k < statement.Columns(); ++k) {
    for (const auto& [name, field] : fields) {
      if (statement.ColumnName(k) == name) *field = statement.Text(k);
    }
    if (statement.IsNull(k)) continue;
    if (statement.ColumnName(k) == "condition_number") {
      header_.run.condition_number = statement.Real(k);
    } else if (statement.ColumnName(k) == "warnings") {
      header_.run.warnings = LinesOf(statement.Text(k));
    } else if (statement.ColumnName(k) == "notes") {
      header_.run.notes = LinesOf(statement.Text(k));
    }
  }
}

void TdxReader::ReadSymbols() {
  RequireTable(database_, "tdx_symbol");
  RequireTable(database_, "tdx_label");
  Statement statement(
      database_,
      "SELECT name, text, dimension, records, view, number FROM tdx_symbol ORDER BY number");
  while (statement.Step()) {
    TdxSymbolInfo symbol{.name = std::string(statement.Text(0)),
                         .text = std::string(statement.Text(1)),
                         .dimension = static_cast<int>(statement.Int(2)),
                         .records = statement.Int(3),
                         .view = std::string(statement.Text(4)),
                         .number = symbols_.size() + 1};
    if (statement.Int(2) < 0 || statement.Int(2) > kMaxTdxDimension) {
      throw Damage("dimension of " + symbol.name);
    }
    symbols_.push_back(std::move(symbol));
    if (statement.Int(5) != static_cast<std::int64_t>(symbols_.size())) {
      throw Damage("a symbol is missing");
    }
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
    const std::string folded = LowerCase(name);
    const auto nearest = std::ranges::min_element(symbols_, {}, [&](const TdxSymbolInfo& symbol) {
      return EditDistance(LowerCase(symbol.name), folded);
    });
    text += "; the nearest is " + QuotedName(nearest->name);
  }
  throw Error(text);
}

TdxRecords TdxReader::Read(const TdxSymbolInfo& symbol, std::int64_t limit) {
  TdxRecords records{symbol.dimension, {}, {}};
  try {
    RequireTable(database_, TdxDataTable(symbol.number));
    Statement statement(database_, TdxRecordQuery(symbol.number, symbol.dimension) + " LIMIT ?");
    statement.Bind(1, limit);
    while (statement.Step()) {
      for (int k = 0; k < symbol.dimension; ++k) {
        if (statement.IsNull(k) || statement.Text(k).size() > kMaxTdxNameLength) {
          throw Damage("a label of " + symbol.name);
        }
        records.keys.emplace_back(statement.Text(k));
      }
      records.values.push_back(statement.IsNull(symbol.dimension)
                                   ? std::numeric_limits<double>::quiet_NaN()
                                   : statement.Real(symbol.dimension));
    }
  } catch (const DatabaseError& failure) {
    throw Damage(failure);
  }
  const std::int64_t expected = limit < 0 ? symbol.records : std::min(limit, symbol.records);
  if (static_cast<std::int64_t>(records.values.size()) != expected) {
    throw Damage("records of " + symbol.name);
  }
  return records;
}

}  // namespace host
