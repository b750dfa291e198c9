#include <algorithm>
#include <memory>
#include <string>
#include <system_error>
#include <unordered_map>
#include <vector>

#include "instance/instance.h"
#include "instance/instance_check.h"
#include "instance/instance_tables.h"

namespace host {

namespace {

bool HasDictionary(const Model& model) {
  return !model.dictionary.symbols.empty();
}

void WriteHead(Database& database, const Model& model, const ArrayHead& arrays) {
  Statement insert(database, "INSERT INTO model VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insert.Bind(1, model.name)
      .Bind(2, static_cast<std::int64_t>(model.row_types.size()))
      .Bind(3, static_cast<std::int64_t>(model.columns.size()))
      .Bind(4, std::int64_t{model.objective_row})
      .Bind(5, std::int64_t{model.objective_column})
      .Bind(6, std::int64_t{model.maximize})
      .Bind(7, std::int64_t{HasDictionary(model)})
      .Bind(8, arrays.stamp)
      .Bind(9, arrays.bytes)
      .Run();
}

using RowList = std::vector<std::int32_t>;

std::size_t Hash(const RowList& rows) {
  std::uint64_t hash = rows.size();
  for (const std::int32_t row : rows) {
    hash = (hash ^ static_cast<std::uint32_t>(row)) * 0x9E3779B97F4A7C15U;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

// Row numbers that follow each other need no list.
bool IsConsecutive(const RowList& rows) {
  return rows.empty() || rows.back() - rows.front() + 1 == static_cast<std::int32_t>(rows.size());
}

// Gives every distinct list of row numbers a number, in the order of first use.
class Patterns {
 public:
  explicit Patterns(std::int32_t row_count) : row_count_(row_count) {}

  std::int32_t Number(const RowList& rows) {
    const auto [known, is_new] = by_address_.try_emplace(&rows, 0);
    if (is_new) {
      known->second = NumberByContent(rows);
    }
    return known->second;
  }

  void Write(ArrayTableWriter& arrays) const {
    std::vector<std::int32_t> sizes;
    std::vector<std::int32_t> starts;
    for (const RowList* rows : lists_) {
      sizes.push_back(static_cast<std::int32_t>(rows->size()));
      starts.push_back(!IsConsecutive(*rows) ? kListed : rows->empty() ? 0 : rows->front());
    }
    arrays.Write("pattern_size", sizes);
    arrays.Write("pattern_first_row", starts);
    arrays.Begin("pattern_row");
    arrays.Append(std::span<const std::int32_t>());
    for (const RowList* rows : lists_) {
      if (!IsConsecutive(*rows)) arrays.Append(std::span(*rows));
    }
    arrays.End();
  }

 private:
  std::int32_t NumberByContent(const RowList& rows) {
    const std::size_t hash = Hash(rows);
    const auto [first, last] = by_hash_.equal_range(hash);
    for (auto candidate = first; candidate != last; ++candidate) {
      if (*lists_[static_cast<std::size_t>(candidate->second)] == rows) {
        return candidate->second;
      }
    }
    CheckRowNumbers(rows, row_count_);
    const auto number = static_cast<std::int32_t>(lists_.size());
    by_hash_.emplace(hash, number);
    lists_.push_back(&rows);
    return number;
  }

  std::int32_t row_count_;
  std::vector<const RowList*> lists_;
  std::unordered_map<const RowList*, std::int32_t> by_address_;
  std::unordered_multimap<std::size_t, std::int32_t> by_hash_;
};

// Where the values of all columns stand: column j has the runs first[j] .. first[j + 1] - 1.
struct RunTable {
  std::vector<std::int32_t> first{0};
  std::vector<std::int64_t> places;
  std::vector<std::int32_t> sizes;

  void Add(std::span<const ValueRun> runs) {
    for (const ValueRun& run : runs) {
      places.push_back(run.place);
      sizes.push_back(run.count);
    }
    first.push_back(static_cast<std::int32_t>(places.size()));
  }
};

// The runs of a column, whose values are written unless they have been.
std::vector<ValueRun> WriteValues(const Column& column, std::size_t rows, ValueFile& values) {
  CheckBounds(column.lower, column.upper);
  if (!column.stored) {
    CheckValues(column.values, rows);
    if (rows == 0) return {};
    return {{values.Append(column.values), static_cast<std::int32_t>(rows)}};
  }
  std::size_t count = 0;
  for (const ValueRun& run : column.stored->runs) count += static_cast<std::size_t>(run.count);
  Require(count == rows, kNotOneValuePerRow);
  return column.stored->runs;
}

void WriteColumns(ArrayTableWriter& arrays, const Model& model, ValueFile& values) {
  static const RowList kNoRows;
  Patterns patterns(static_cast<std::int32_t>(model.row_types.size()));
  std::vector<double> lower;
  std::vector<double> upper;
  std::vector<std::int32_t> pattern;
  RunTable runs;
  for (std::size_t j = 0; j < model.columns.size(); ++j) {
    const Column& column = model.columns[j];
    const RowList& rows = column.rows == nullptr ? kNoRows : *column.rows;
    InContext("column " + std::to_string(j), [&] {
      runs.Add(WriteValues(column, rows.size(), values));
      lower.push_back(column.lower);
      upper.push_back(column.upper);
      pattern.push_back(patterns.Number(rows));
    });
  }
  arrays.Enter("value", ElementType<double>(), values.Count(), values.Offset());
  arrays.Write("run_place", runs.places);
  arrays.Write("run_size", runs.sizes);
  arrays.Write("column_first_run", runs.first);
  arrays.Write("column_lower", lower);
  arrays.Write("column_upper", upper);
  arrays.Write("column_pattern", pattern);
  patterns.Write(arrays);
}

void WriteTexts(ArrayTableWriter& arrays, const std::string& kind, const TextList& texts) {
  std::vector<std::uint8_t> sizes;
  sizes.reserve(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    CheckName(texts[i]);
    sizes.push_back(static_cast<std::uint8_t>(texts[i].size()));
  }
  arrays.Write(kind + "_size", sizes);
  arrays.Write(kind + "_text", texts.Bytes());
}

void WriteNames(ArrayTableWriter& arrays, const std::string& kind, const ElementNames& names,
                std::size_t count, const Dictionary& dictionary) {
  InContext("names of " + kind + "s", [&] {
    CheckNames(names, count, dictionary.symbols.size(), dictionary.labels.size());
    arrays.Write(kind + "_symbol", names.symbol);
    arrays.Write(kind + "_first_label", names.first);
    arrays.Write(kind + "_label", names.label);
  });
}

void WriteArrays(ArrayTableWriter& arrays, const Model& model, ValueFile& values) {
  WriteColumns(arrays, model, values);
  arrays.Write("row_type", model.row_types);
  arrays.Write("row_rhs", model.rhs);
  if (HasDictionary(model)) {
    WriteTexts(arrays, "symbol", model.dictionary.symbols);
    WriteTexts(arrays, "label", model.dictionary.labels);
    WriteNames(arrays, "row", model.row_names, model.row_types.size(), model.dictionary);
    WriteNames(arrays, "column", model.column_names, model.columns.size(), model.dictionary);
  }
}

void Write(const Model& model, const std::filesystem::path& file) {
  CheckShape(model.row_types, model.rhs, static_cast<std::int64_t>(model.columns.size()),
             model.objective_row, model.objective_column);
  const std::shared_ptr<ValueFile> values =
      model.value_file != nullptr ? model.value_file : std::make_shared<ValueFile>(file);
  ArrayWriter& arrays = values->Arrays();
  Database database(file, Database::Mode::kCreate);
  // Nobody else sees the files before they are whole, and half-written ones are removed. The
  // database is small: a model of any size fills a few pages.
  database.Execute(
      "PRAGMA page_size = 4096; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
      "PRAGMA locking_mode = EXCLUSIVE; BEGIN; PRAGMA application_id = " +
      std::to_string(kApplicationId) +
      "; PRAGMA user_version = " + std::to_string(kInstanceVersion));
  database.Execute(kInstanceTables);
  {
    ArrayTableWriter table(database, arrays);
    WriteArrays(table, model, *values);
  }
  arrays.Close();
  WriteHead(database, model, {values->Stamp(), arrays.Size()});
  database.Execute("COMMIT");
  database.Close();
}

}  // namespace

void RemoveInstance(const std::filesystem::path& file) noexcept {
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  try {
    std::filesystem::remove(ArrayPath(file), ignored);
  } catch (const std::bad_alloc&) {
    return;  // no memory for the path
  }
}

void WriteInstance(const Model& model, const std::filesystem::path& file) {
  if (model.value_file == nullptr) {
    RemoveInstance(file);
  } else {
    std::error_code ignored;  // what stays makes the writing fail
    std::filesystem::remove(file, ignored);
  }
  try {
    Write(model, file);
  } catch (const std::exception& error) {
    RemoveInstance(file);
    const std::string name = Utf8(file);
    const std::string text = error.what();
    throw FileError(text.find(name) != std::string::npos ? text : name + ": " + text);
  }
}

}  // namespace host
