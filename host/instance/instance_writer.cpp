#include <algorithm>
#include <cmath>
#include <string>
#include <system_error>
#include <unordered_map>

#include "instance/instance.h"
#include "instance/instance_check.h"
#include "instance/instance_tables.h"

namespace host {

namespace {

void WriteHead(Database& database, const Model& model, bool has_dictionary) {
  Statement insert(database, "INSERT INTO model VALUES(?, ?, ?, ?, ?, ?, ?)");
  insert.Bind(1, model.name)
      .Bind(2, static_cast<std::int64_t>(model.row_types.size()))
      .Bind(3, static_cast<std::int64_t>(model.columns.size()))
      .Bind(4, std::int64_t{model.objective_row})
      .Bind(5, std::int64_t{model.objective_column})
      .Bind(6, std::int64_t{model.maximize})
      .Bind(7, std::int64_t{has_dictionary})
      .Run();
}

void WriteRows(Database& database, const Model& model) {
  std::vector<std::uint8_t> types(model.row_types.size());
  std::transform(model.row_types.begin(), model.row_types.end(), types.begin(),
                 [](RowType type) { return static_cast<std::uint8_t>(type); });
  WriteArray(database, "row_type", types);
  WriteArray(database, "row_rhs", model.rhs);
}

using RowList = std::vector<std::int32_t>;

std::size_t Hash(const RowList& rows) {
  std::uint64_t hash = rows.size();
  for (const std::int32_t row : rows) {
    hash = (hash ^ static_cast<std::uint32_t>(row)) * 0x9E3779B97F4A7C15U;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

// Gives every distinct list of row numbers a number, and writes it when it comes first.
class PatternWriter {
 public:
  PatternWriter(Database& database, std::int32_t row_count)
      : insert_(database, "INSERT INTO pattern VALUES(?, ?)"), row_count_(row_count) {}

  std::int64_t Number(const RowList& rows) {
    const auto [known, is_new] = by_address_.try_emplace(&rows, 0);
    if (is_new) {
      known->second = NumberByContent(rows);
    }
    return known->second;
  }

 private:
  std::int64_t NumberByContent(const RowList& rows) {
    const std::size_t hash = Hash(rows);
    const auto [first, last] = by_hash_.equal_range(hash);
    for (auto candidate = first; candidate != last; ++candidate) {
      if (*candidate->second.rows == rows) {
        return candidate->second.number;
      }
    }
    CheckRowNumbers(rows, row_count_);
    by_hash_.emplace(hash, Written{&rows, count_});
    insert_.Bind(1, count_).BindBlob(2, std::as_bytes(std::span(rows))).Run();
    return count_++;
  }

  struct Written {
    const RowList* rows;
    std::int64_t number;
  };
  Statement insert_;
  std::int32_t row_count_;
  std::int64_t count_ = 0;
  std::unordered_map<const RowList*, std::int64_t> by_address_;
  std::unordered_multimap<std::size_t, Written> by_hash_;
};

void WriteColumns(Database& database, const Model& model) {
  static const RowList kNoRows;
  PatternWriter patterns(database, static_cast<std::int32_t>(model.row_types.size()));
  Statement insert(database, "INSERT INTO matrix_column VALUES(?, ?, ?, ?, ?)");
  for (std::size_t j = 0; j < model.columns.size(); ++j) {
    const Column& column = model.columns[j];
    const RowList& rows = column.rows == nullptr ? kNoRows : *column.rows;
    InContext("column " + std::to_string(j), [&] {
      CheckColumn(column.lower, column.upper, rows.size(), column.values);
      insert.Bind(1, static_cast<std::int64_t>(j))
          .Bind(2, column.lower)
          .Bind(3, column.upper)
          .Bind(4, patterns.Number(rows))
          .BindBlob(5, std::as_bytes(std::span(column.values)))
          .Run();
    });
  }
}

void WriteTexts(Database& database, std::string_view kind, const std::vector<std::string>& texts) {
  Statement insert(database, "INSERT INTO text_block VALUES(?, ?, ?, ?)");
  for (std::size_t first = 0; first < texts.size(); first += kTextsPerBlock) {
    const std::size_t last = std::min(first + kTextsPerBlock, texts.size());
    std::vector<std::uint8_t> sizes;
    std::string joined;
    for (std::size_t i = first; i < last; ++i) {
      CheckName(texts[i]);
      sizes.push_back(static_cast<std::uint8_t>(texts[i].size()));
      joined += texts[i];
    }
    insert.Bind(1, kind)
        .Bind(2, static_cast<std::int64_t>(first))
        .BindBlob(3, std::as_bytes(std::span(sizes)))
        .BindBlob(4, std::as_bytes(std::span(joined)))
        .Run();
  }
}

void WriteNames(Database& database, const std::string& kind, const ElementNames& names,
                std::size_t count, const Dictionary& dictionary) {
  InContext("names of " + kind + "s", [&] {
    CheckNames(names, count, dictionary.symbols.size(), dictionary.labels.size());
    WriteArray(database, kind + "_symbol", names.symbol);
    WriteArray(database, kind + "_first_label", names.first);
    WriteArray(database, kind + "_label", names.label);
  });
}

void WriteAll(Database& database, const Model& model) {
  CheckShape(model.row_types, model.rhs, static_cast<std::int64_t>(model.columns.size()),
             model.objective_row, model.objective_column);
  const bool has_dictionary = !model.dictionary.symbols.empty();
  WriteHead(database, model, has_dictionary);
  WriteRows(database, model);
  WriteColumns(database, model);
  if (has_dictionary) {
    WriteTexts(database, "symbol", model.dictionary.symbols);
    WriteTexts(database, "label", model.dictionary.labels);
    WriteNames(database, "row", model.row_names, model.row_types.size(), model.dictionary);
    WriteNames(database, "column", model.column_names, model.columns.size(), model.dictionary);
  }
}

}  // namespace

void WriteInstance(const Model& model, const std::filesystem::path& file) {
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  try {
    Database database(file, Database::Mode::kCreate);
    // Nobody else sees the file before it is whole, and a half-written one is removed.
    database.Execute(
        "PRAGMA page_size = 65536; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
        "PRAGMA locking_mode = EXCLUSIVE; PRAGMA cache_size = -16000;"
        "PRAGMA application_id = " +
        std::to_string(kApplicationId) +
        "; PRAGMA user_version = " + std::to_string(kInstanceVersion) + "; BEGIN;");
    database.Execute(kInstanceTables);
    WriteAll(database, model);
    database.Execute("COMMIT");
    database.Close();
  } catch (const std::exception& error) {
    std::filesystem::remove(file, ignored);
    const std::string name = Utf8(file);
    const std::string text = error.what();
    throw FileError(text.starts_with(name) ? text : name + ": " + text);
  }
}

}  // namespace host
