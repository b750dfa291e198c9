// What holds for every instance: checked before one is written and again when one is read. All
// throw FileError with the fault.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/text_file.h"
#include "instance/model.h"

namespace host {

// One right-hand side per row, all finite, row types known.
void CheckRows(std::span<const RowType> row_types, std::span<const double> rhs);
// The same, counts within their limits, objective row and column among the rows and columns.
void CheckShape(std::span<const RowType> row_types, std::span<const double> rhs,
                std::int64_t column_count, std::int64_t objective_row,
                std::int64_t objective_column);
// Ascending, from 0 to row_count - 1.
void CheckRowNumbers(std::span<const std::int32_t> rows, std::int32_t row_count);
// Numbers or infinite.
void CheckBounds(double lower, double upper);
// One finite value per row number.
void CheckValues(std::span<const double> values, std::size_t row_numbers);
inline constexpr const char* kNotOneValuePerRow = "not one value per row number";
// The number of the first value that is not finite; values.size() when all are.
std::size_t FirstNotFinite(std::span<const double> values);
// Not empty, at most 63 bytes.
void CheckName(std::string_view name);
// Texts of one kind may be 4 GiB in all.
void CheckTextBytes(const std::string& kind, std::size_t bytes);
// One symbol and at most 20 labels per element, all of them in the dictionary.
void CheckNames(const ElementNames& names, std::size_t elements, std::size_t symbols,
                std::size_t labels);

// Runs `step` and puts `what` before the text of a failure.
template <class Step>
void InContext(const std::string& what, Step step) {
  try {
    step();
  } catch (const FileError& error) {
    throw FileError(what + ": " + error.what());
  }
}

}  // namespace host
