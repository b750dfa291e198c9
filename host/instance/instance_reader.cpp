#include "instance/instance_reader.h"

#include <algorithm>

#include "instance/instance.h"
#include "instance/instance_check.h"
#include "instance/instance_tables.h"

namespace host {

namespace {

using RowList = std::vector<std::int32_t>;

// Threads are worth their start from here on.
constexpr std::size_t kLargeColumn = 65536;
constexpr std::size_t kValuesPerPiece = 32768;

bool IsLarge(const ColumnHead& column) {
  return static_cast<std::size_t>(column.entries) >= kLargeColumn;
}

std::size_t At(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

// A number of the file that must be within 0 and `limit` - 1.
std::int32_t Number(std::int64_t value, std::int64_t limit, const char* fault) {
  Require(value >= 0 && value < limit, fault);
  return static_cast<std::int32_t>(value);
}

template <class T>
std::vector<T> Elements(const Statement& row, int column, const char* fault) {
  const std::span<const std::byte> bytes = row.Blob(column);
  Require(bytes.size() % sizeof(T) == 0, fault);
  return FromBlob<T>(bytes);
}

TextTable ReadTexts(Database& database, std::string_view kind) {
  TextTable texts;
  Statement row(database,
                "SELECT first, sizes, data FROM text_block WHERE kind = ? ORDER BY first");
  row.Bind(1, kind);
  while (row.Step()) {
    Require(row.Int(0) == static_cast<std::int64_t>(texts.size()), "a block of texts is missing");
    const auto sizes = Elements<std::uint8_t>(row, 1, "");
    const std::span<const std::byte> bytes = row.Blob(2);
    std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const std::uint8_t size : sizes) {
      Require(size <= rest.size(), "a block of texts is cut short");
      CheckName(rest.substr(0, size));
      texts.Append(rest.substr(0, size));
      rest.remove_prefix(size);
    }
    Require(rest.empty() && !sizes.empty(), "a block of texts has the wrong size");
  }
  return texts;
}

ElementNames ReadNames(Database& database, const std::string& kind, std::size_t count,
                       const InstanceData& data) {
  const auto elements = static_cast<std::int64_t>(count);
  ElementNames names;
  names.symbol = ReadArray<std::int32_t>(database, kind + "_symbol", elements);
  names.first = ReadArray<std::int32_t>(database, kind + "_first_label", elements + 1);
  names.label = ReadArray<std::int32_t>(database, kind + "_label", -1);
  InContext("names of " + kind + "s",
            [&] { CheckNames(names, count, data.symbols.size(), data.labels.size()); });
  return names;
}

}  // namespace

InstanceReader::InstanceReader(const std::filesystem::path& file)
    : file_(file), name_(Utf8(file)), database_(OpenInstance(file, Database::Mode::kRead)) {
  try {
    InContext(name_, [&] {
      ReadHead();
      ReadPatterns();
      ReadColumns();
      std::atomic<std::size_t> next{0};
      auto helper = StartHelper(next);
      if (data_.has_dictionary) ReadDictionary();
      CheckLargeColumns(database_, next);
      helper.get();
    });
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

void InstanceReader::ReadHead() {
  Statement row(database_,
                "SELECT name, row_count, column_count, objective_row, objective_column, maximize,"
                " has_dictionary FROM model");
  Require(row.Step(), "no model");
  data_.name = row.Text(0);
  const std::int64_t rows = row.Int(1);
  const std::int64_t columns = row.Int(2);
  Require(rows >= 0 && rows <= kMaxElements, "the number of rows is out of range");
  Require(columns >= 0 && columns <= kMaxElements, "the number of columns is out of range");
  data_.objective_row = Number(row.Int(3), rows, "the objective row is not a row");
  data_.objective_column = Number(row.Int(4), columns, "the objective column is not a column");
  data_.maximize = row.Int(5) != 0;
  data_.has_dictionary = row.Int(6) != 0;

  const auto types = ReadArray<std::uint8_t>(database_, "row_type", rows);
  data_.row_types.resize(types.size());
  std::transform(types.begin(), types.end(), data_.row_types.begin(),
                 [](std::uint8_t type) { return static_cast<RowType>(type); });
  data_.rhs = ReadArray<double>(database_, "row_rhs", rows);
  CheckShape(data_.row_types, data_.rhs, columns, data_.objective_row, data_.objective_column);
  column_count_ = columns;
}

void InstanceReader::ReadPatterns() {
  const auto row_count = static_cast<std::int32_t>(data_.row_types.size());
  Statement row(database_, "SELECT id, data FROM pattern ORDER BY id");
  while (row.Step()) {
    Require(row.Int(0) == static_cast<std::int64_t>(pattern_sizes_.size()),
            "a list of row numbers is missing");
    const RowList rows = Elements<std::int32_t>(row, 1, "a list of row numbers is cut short");
    CheckRowNumbers(rows, row_count);
    pattern_sizes_.push_back(static_cast<std::int32_t>(rows.size()));
    pattern_in_objective_row_.push_back(
        std::binary_search(rows.begin(), rows.end(), data_.objective_row));
  }
}

// Checks all but the values of large columns.
void InstanceReader::ReadColumns() {
  Statement row(database_,
                "SELECT id, lower, upper, pattern,"
                " typeof(lower) = 'real' AND typeof(upper) = 'real',"
                " CASE WHEN typeof(data) = 'blob' THEN length(data) ELSE -1 END, CASE WHEN "
                "length(data) < ? THEN data END"
                " FROM matrix_column ORDER BY id");
  row.Bind(1, static_cast<std::int64_t>(kLargeColumn * sizeof(double)));
  std::vector<double> values;
  while (row.Step()) {
    Require(row.Int(0) == static_cast<std::int64_t>(data_.columns.size()), "a column is missing");
    InContext("column " + std::to_string(row.Int(0)), [&] {
      Require(row.Int(4) != 0, "a bound is not a number");
      const std::int32_t pattern =
          Number(row.Int(3), static_cast<std::int64_t>(pattern_sizes_.size()),
                 "no such list of row numbers");
      const std::int32_t entries = pattern_sizes_[At(pattern)];
      Require(row.Int(5) == entries * static_cast<std::int64_t>(sizeof(double)),
              "not one value per row number");
      CheckBounds(row.Real(1), row.Real(2));
      FromBlob(row.Blob(6), values);  // empty when the column is large
      CheckValues(values);
      data_.columns.push_back(
          {row.Real(1), row.Real(2), pattern, entries, pattern_in_objective_row_[At(pattern)]});
    });
  }
  Require(static_cast<std::int64_t>(data_.columns.size()) == column_count_,
          "the number of columns is wrong");
}

// Two threads take one column after another; `next` is the first that none has taken.
void InstanceReader::CheckLargeColumns(Database& database, std::atomic<std::size_t>& next) const {
  std::vector<double> values;
  for (std::size_t column = next++; column < data_.columns.size(); column = next++) {
    const auto entries = static_cast<std::size_t>(data_.columns[column].entries);
    if (entries < kLargeColumn) continue;
    InContext("column " + std::to_string(column), [&] {
      const BlobReader blob(database, "matrix_column", "data", static_cast<std::int64_t>(column));
      for (std::size_t first = 0; first < entries; first += values.size()) {
        values.resize(std::min(entries - first, kValuesPerPiece));
        blob.Read(first * sizeof(double), std::as_writable_bytes(std::span(values)));
        CheckValues(values);
      }
    });
  }
}

std::future<void> InstanceReader::StartHelper(std::atomic<std::size_t>& next) const {
  const bool has_large = std::ranges::any_of(data_.columns, IsLarge);
  // Without a thread to be had, it does what is left when it is waited for: nothing.
  return std::async(has_large ? std::launch::async | std::launch::deferred : std::launch::deferred,
                    [this, &next, has_large] {
                      if (!has_large) return;
                      Database database = OpenInstance(file_, Database::Mode::kRead);
                      CheckLargeColumns(database, next);
                    });
}

void InstanceReader::ReadDictionary() {
  data_.symbols = ReadTexts(database_, "symbol");
  data_.labels = ReadTexts(database_, "label");
  data_.row_names = ReadNames(database_, "row", data_.row_types.size(), data_);
  data_.column_names = ReadNames(database_, "column", data_.columns.size(), data_);
}

std::shared_ptr<const RowList> InstanceReader::ReadPattern(std::int32_t pattern) {
  if (pattern == last_pattern_) {
    if (auto rows = last_rows_.lock()) {
      return rows;
    }
  }
  Statement row(database_, "SELECT data FROM pattern WHERE id = ?");
  row.Bind(1, std::int64_t{pattern});
  Require(row.Step(), "a list of row numbers is missing");
  auto rows = std::make_shared<RowList>(
      Elements<std::int32_t>(row, 0, "a list of row numbers is cut short"));
  // The caller writes where these numbers say, so they are checked whenever they are read.
  CheckRowNumbers(*rows, static_cast<std::int32_t>(data_.row_types.size()));
  last_pattern_ = pattern;
  last_rows_ = rows;
  return rows;
}

void InstanceReader::ReadValues(Database& database, std::int32_t column,
                                std::vector<double>& values) const {
  const auto count = static_cast<std::size_t>(data_.columns[At(column)].entries);
  const BlobReader blob(database, "matrix_column", "data", column);
  Require(blob.Size() == count * sizeof(double), "the file has changed since it was opened");
  values.resize(count);
  blob.Read(0, std::as_writable_bytes(std::span(values)));
}

void InstanceReader::ReadColumn(std::int32_t column, ColumnEntries& entries) {
  const ColumnHead& head = data_.columns.at(At(column));
  try {
    InContext(name_ + ": column " + std::to_string(column), [&] {
      entries.rows = ReadPattern(head.pattern);
      Require(entries.rows->size() == static_cast<std::size_t>(head.entries),
              "the file has changed since it was opened");
      const bool is_ahead = ahead_.valid();
      if (is_ahead) ahead_.get();
      if (is_ahead && ahead_column_ == column) {
        std::swap(entries.values, ahead_values_);
      } else {
        ReadValues(database_, column, entries.values);
      }
    });
    StartAhead(column + 1);
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

void InstanceReader::StartAhead(std::int32_t column) {
  if (At(column) >= data_.columns.size() || !IsLarge(data_.columns[At(column)])) return;
  ahead_column_ = column;
  // Without a thread to be had, the column is read when it is asked for.
  ahead_ = std::async(std::launch::async | std::launch::deferred, [this, column] {
    if (!ahead_database_.IsOpen()) ahead_database_ = OpenInstance(file_, Database::Mode::kRead);
    ReadValues(ahead_database_, column, ahead_values_);
  });
}

void InstanceReader::ReleaseAhead() {
  if (ahead_.valid()) ahead_.wait();
  ahead_ = {};
  ahead_values_ = {};
  ahead_database_ = {};
}

}  // namespace host
