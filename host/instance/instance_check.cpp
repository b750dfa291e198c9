#include "instance/instance_check.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "instance/instance.h"

namespace host {

namespace {

void CheckCount(std::int64_t count, const char* what) {
  if (count < 0 || count > kMaxElements) {
    throw FileError(std::string("the number of ") + what + " is not within 0 and " +
                    std::to_string(kMaxElements));
  }
}

bool IsFinite(double value) {
  return std::isfinite(value);
}

}  // namespace

void CheckRows(std::span<const RowType> row_types, std::span<const double> rhs) {
  Require(rhs.size() == row_types.size(), "not one right-hand side per row");
  const bool known = std::all_of(row_types.begin(), row_types.end(), [](RowType type) {
    return type >= RowType::kEqual && type <= RowType::kFree;
  });
  Require(known, "unknown row type");
  Require(std::all_of(rhs.begin(), rhs.end(), IsFinite), "a right-hand side is not finite");
}

void CheckShape(std::span<const RowType> row_types, std::span<const double> rhs,
                std::int64_t column_count, std::int64_t objective_row,
                std::int64_t objective_column) {
  const auto row_count = static_cast<std::int64_t>(row_types.size());
  CheckCount(row_count, "rows");
  CheckCount(column_count, "columns");
  CheckRows(row_types, rhs);
  Require(objective_row >= 0 && objective_row < row_count, "the objective row is not a row");
  Require(objective_column >= 0 && objective_column < column_count,
          "the objective column is not a column");
}

void CheckRowNumbers(std::span<const std::int32_t> rows, std::int32_t row_count) {
  std::int32_t previous = -1;
  for (const std::int32_t row : rows) {
    Require(row > previous, "row numbers are not ascending");
    previous = row;
  }
  Require(previous < row_count, "a row number is not the number of a row");
}

void CheckBounds(double lower, double upper) {
  Require(!std::isnan(lower) && !std::isnan(upper), "a bound is not a number");
}

std::size_t FirstNotFinite(std::span<const double> values) {
  // A value that is not finite times zero is undefined, and so is then the sum; four sums, so that
  // one addition need not wait for the one before.
  double sums[4] = {};
  std::size_t i = 0;
  for (; i + 4 <= values.size(); i += 4) {
    for (std::size_t k = 0; k < 4; ++k) sums[k] += values[i + k] * 0.0;
  }
  for (; i < values.size(); ++i) sums[0] += values[i] * 0.0;
  if (!std::isnan(sums[0] + sums[1] + sums[2] + sums[3])) return values.size();
  return static_cast<std::size_t>(std::ranges::find_if_not(values, IsFinite) - values.begin());
}

void CheckValues(std::span<const double> values, std::size_t row_numbers) {
  Require(values.size() == row_numbers, kNotOneValuePerRow);
  Require(FirstNotFinite(values) == values.size(), "a value is not finite");
}

void CheckName(std::string_view name) {
  Require(!name.empty(), "a symbol or label has no text");
  if (name.size() > kMaxNameLength) {
    throw FileError("longer than " + std::to_string(kMaxNameLength) +
                    " bytes: " + std::string(name));
  }
}

void CheckTextBytes(const std::string& kind, std::size_t bytes) {
  if (bytes > std::numeric_limits<std::uint32_t>::max()) {
    throw FileError("the texts of " + kind + "s take more than 4 GiB");
  }
}

void CheckNames(const ElementNames& names, std::size_t elements, std::size_t symbols,
                std::size_t labels) {
  Require(names.symbol.size() == elements, "not one symbol per element");
  Require(names.first.size() == elements + 1, "not one list of labels per element");
  Require(names.first.front() == 0 &&
              names.first.back() == static_cast<std::int64_t>(names.label.size()),
          "the lists of labels do not fit the labels");
  for (std::size_t i = 0; i < elements; ++i) {
    // In 64 bits, where the difference of any two 32-bit numbers fits.
    const std::int64_t count = std::int64_t{names.first[i + 1]} - names.first[i];
    Require(count >= 0 && count <= kMaxLabels,
            "an element has fewer than 0 or more than 20 labels");
  }
  const auto within = [](std::span<const std::int32_t> numbers, std::size_t count) {
    return std::all_of(numbers.begin(), numbers.end(), [count](std::int32_t number) {
      return number >= 0 && static_cast<std::size_t>(number) < count;
    });
  };
  Require(within(names.symbol, symbols), "a symbol number is not in the dictionary");
  Require(within(names.label, labels), "a label number is not in the dictionary");
}

}  // namespace host
