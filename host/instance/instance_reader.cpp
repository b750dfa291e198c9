#include "instance/instance_reader.h"

#include <algorithm>
#include <cmath>

#include "base/background.h"
#include "instance/instance.h"
#include "instance/instance_check.h"

namespace host {

namespace {

// What fits into a processor's cache, and enough of it to be worth a call of the system.
constexpr std::size_t kValuesPerPiece = 65536;
constexpr std::size_t kRowsPerPiece = 16384;
// A second thread is worth its start from here on.
constexpr std::int64_t kManyValues = 1 << 19;

std::size_t At(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

// A number of the file that must be within 0 and `limit` - 1.
std::int32_t Number(std::int64_t value, std::int64_t limit, const char* fault) {
  Require(value >= 0 && value < limit, fault);
  return static_cast<std::int32_t>(value);
}

// The elements from number `first` on, as many as `elements` has, of the array at `offset`.
template <class T>
void ReadElements(ArrayReader& file, std::int64_t offset, std::size_t first,
                  std::vector<T>& elements) {
  file.Read(offset + static_cast<std::int64_t>(first * sizeof(T)),
            std::as_writable_bytes(std::span(elements)));
}

}  // namespace

InstanceReader::InstanceReader(const std::filesystem::path& file) : file_(file), name_(Utf8(file)) {
  Database database = OpenInstance(file, Database::Mode::kRead);
  try {
    InContext(name_, [&] {
      ArrayTableReader arrays(database, file);
      ReadHead(database);
      ReadPatterns(arrays);
      ReadColumns(arrays);
      CheckAllValues(arrays);
      arrays_.emplace(ArrayPath(file), arrays.Stamp());
    });
  } catch (const DatabaseError& error) {
    throw FileError(error.what());
  }
}

void InstanceReader::ReadHead(Database& database) {
  Statement row(database,
                "SELECT name, row_count, column_count, objective_row, objective_column, maximize,"
                " has_dictionary FROM model");
  Require(row.Step(), "no model");
  data_.name = row.Text(0);
  const std::int64_t rows = row.Int(1);
  column_count_ = row.Int(2);
  Require(rows >= 0 && rows <= kMaxElements, "the number of rows is out of range");
  Require(column_count_ >= 0 && column_count_ <= kMaxElements,
          "the number of columns is out of range");
  data_.objective_row = Number(row.Int(3), rows, "the objective row is not a row");
  data_.objective_column =
      Number(row.Int(4), column_count_, "the objective column is not a column");
  data_.maximize = row.Int(5) != 0;
  data_.has_dictionary = row.Int(6) != 0;
  data_.row_count = static_cast<std::int32_t>(rows);
}

void InstanceReader::ReadRowNames(ArrayReader& file) {
  constexpr const char* kFault = "the lists of labels do not fit the labels";
  ElementNames& names = rows_.names;
  const std::size_t count = rows_.types.size();
  names.symbol.resize(count);
  names.first.resize(count + 1);
  ReadElements(file, row_places_.symbols, rows_.begin, names.symbol);
  ReadElements(file, row_places_.first_labels, rows_.begin, names.first);
  const std::int32_t begin = names.first.front();
  const std::int32_t end = names.first.back();
  const bool is_last = rows_.begin + count == At(data_.row_count);
  Require(begin >= 0 && begin <= end && end <= row_places_.label_count, kFault);
  Require(rows_.begin > 0 || begin == 0, kFault);
  Require(!is_last || end == row_places_.label_count, kFault);
  names.label.resize(At(end - begin));
  ReadElements(file, row_places_.labels, At(begin), names.label);
  // Counted from this piece's first label; unsigned, since they aren't checked yet.
  for (std::int32_t& first : names.first) {
    first = static_cast<std::int32_t>(static_cast<std::uint32_t>(first) -
                                      static_cast<std::uint32_t>(begin));
  }
  CheckNames(names, count, data_.dictionary.symbols.size(), data_.dictionary.labels.size());
}

void InstanceReader::ReadRowsFrom(ArrayReader& file, std::size_t row) {
  rows_.count = 0;
  rows_.begin = row - row % kRowsPerPiece;
  const std::size_t count = std::min(kRowsPerPiece, At(data_.row_count) - rows_.begin);
  rows_.types.resize(count);
  rows_.rhs.resize(count);
  ReadElements(file, row_places_.types, rows_.begin, rows_.types);
  ReadElements(file, row_places_.rhs, rows_.begin, rows_.rhs);
  CheckRows(rows_.types, rows_.rhs);
  if (data_.has_dictionary) InContext("names of rows", [&] { ReadRowNames(file); });
  rows_.count = count;
}

void InstanceReader::ReadRows(std::size_t row) {
  InContext(name_, [&] { ReadRowsFrom(*arrays_, row); });
}

void InstanceReader::CheckAllRows(ArrayTableReader& arrays) {
  const std::int64_t rows = data_.row_count;
  const auto place = [&arrays]<class T>(T, const char* name, std::int64_t count) {
    return arrays.Find(name, ElementType<T>(), count).offset;
  };
  row_places_.types = place(RowType(), "row_type", rows);
  row_places_.rhs = place(double(), "row_rhs", rows);
  if (data_.has_dictionary) {
    row_places_.symbols = place(std::int32_t(), "row_symbol", rows);
    row_places_.first_labels = place(std::int32_t(), "row_first_label", rows + 1);
    row_places_.labels = place(std::int32_t(), "row_label", -1);
    row_places_.label_count = arrays.Find("row_label", ElementType<std::int32_t>(), -1).count;
  }
  for (std::size_t row = 0; row < At(data_.row_count); row += kRowsPerPiece) {
    ReadRowsFrom(arrays.File(), row);
  }
}

void InstanceReader::ReadPatterns(ArrayTableReader& arrays) {
  const std::int32_t row_count = data_.row_count;
  const auto sizes = arrays.Read<std::int32_t>("pattern_size", -1);
  const auto starts =
      arrays.Read<std::int32_t>("pattern_first_row", static_cast<std::int64_t>(sizes.size()));
  const auto& lists = arrays.Find("pattern_row", ElementType<std::int32_t>(), -1);
  list_offset_ = lists.offset;
  std::int64_t first_list = 0;
  std::vector<std::int32_t> rows;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    patterns_.push_back({sizes[i], starts[i], first_list});
    Require(sizes[i] >= 0, "a list of row numbers has the wrong size");
    if (starts[i] != kListed) {
      Require(starts[i] >= 0 && sizes[i] <= row_count && starts[i] <= row_count - sizes[i],
              "a row number is not the number of a row");
      const std::int32_t before = data_.objective_row - starts[i];
      pattern_in_objective_row_.push_back(before >= 0 && before < sizes[i]);
      continue;
    }
    Require(sizes[i] <= lists.count - first_list, "a list of row numbers is cut short");
    rows.resize(At(sizes[i]));
    arrays.File().Read(list_offset_ + first_list * std::int64_t{sizeof(std::int32_t)},
                       std::as_writable_bytes(std::span(rows)));
    CheckRowNumbers(rows, row_count);
    pattern_in_objective_row_.push_back(
        std::binary_search(rows.begin(), rows.end(), data_.objective_row));
    first_list += sizes[i];
  }
}

void InstanceReader::ReadColumns(ArrayTableReader& arrays) {
  const auto lower = arrays.Read<double>("column_lower", column_count_);
  const auto upper = arrays.Read<double>("column_upper", column_count_);
  const auto pattern = arrays.Read<std::int32_t>("column_pattern", column_count_);
  values_ = ColumnValues(arrays, column_count_);
  data_.columns.reserve(lower.size());
  for (std::size_t j = 0; j < lower.size(); ++j) {
    InContext("column " + std::to_string(j), [&] {
      CheckBounds(lower[j], upper[j]);
      const std::size_t number = At(Number(pattern[j], static_cast<std::int64_t>(patterns_.size()),
                                           "no such list of row numbers"));
      const std::int32_t entries = patterns_[number].size;
      Require(values_.Entries(static_cast<std::int32_t>(j)) == entries, kNotOneValuePerRow);
      data_.columns.push_back(
          {lower[j], upper[j], pattern[j], entries, pattern_in_objective_row_[number]});
    });
  }
}

// Two threads take one piece after another; `next` is the first value that none has taken.
void InstanceReader::CheckValuesFrom(ArrayReader& file, std::atomic<std::int64_t>& next) const {
  std::vector<double> values;
  constexpr auto kStep = static_cast<std::int64_t>(kValuesPerPiece);
  for (std::int64_t first = next.fetch_add(kStep); first < values_.Count();
       first = next.fetch_add(kStep)) {
    values.resize(static_cast<std::size_t>(std::min(kStep, values_.Count() - first)));
    values_.ReadAny(file, first, values);
    const std::size_t fault = FirstNotFinite(values);
    if (fault == values.size()) continue;
    const std::int32_t column = values_.ColumnAt(first + static_cast<std::int64_t>(fault));
    throw FileError("column " + std::to_string(column) + ": a value is not finite");
  }
}

void InstanceReader::CheckAllValues(ArrayTableReader& arrays) {
  std::atomic<std::int64_t> next{0};
  Background helper;
  if (values_.Count() >= kManyValues) {
    helper.Start([&, stamp = arrays.Stamp()] {
      ArrayReader file(ArrayPath(file_), stamp);
      CheckValuesFrom(file, next);
    });
  }
  if (data_.has_dictionary) {
    data_.dictionary = ReadDictionary(arrays);
    data_.column_names = ReadElementNames(arrays, "column", data_.columns.size(), data_.dictionary);
  }
  CheckAllRows(arrays);
  CheckValuesFrom(arrays.File(), next);
  helper.Wait();
}

void InstanceReader::ReadPiece(std::int32_t column, std::size_t entry, ColumnPiece& piece) {
  const ColumnHead& head = data_.columns.at(At(column));
  const Pattern& pattern = patterns_[At(head.pattern)];
  const std::size_t count = std::min(kValuesPerPiece, At(head.entries) - entry);
  const auto first = static_cast<std::int64_t>(entry);
  piece.column = -1;
  InContext(name_ + ": column " + std::to_string(column), [&] {
    piece.values.resize(count);
    values_.Read(*arrays_, column, first, piece.values);
    Require(FirstNotFinite(piece.values) == count, "the file has changed since it was opened");
    piece.rows.clear();
    if (pattern.first_row != kListed) {
      piece.first_row = pattern.first_row + static_cast<std::int32_t>(entry);
      return;
    }
    piece.rows.resize(count);
    arrays_->Read(list_offset_ + (pattern.first_list + first) * std::int64_t{sizeof(std::int32_t)},
                  std::as_writable_bytes(std::span(piece.rows)));
    // The caller writes where these numbers say.
    CheckRowNumbers(piece.rows, data_.row_count);
  });
  piece.entries = At(head.entries);
  piece.begin = entry;
  piece.column = column;
}

}  // namespace host
