// A linear model as the front ends make it and an instance holds it.
//
// Numbers of rows, columns, symbols and labels are zero-based here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "instance/text_list.h"
#include "instance/value_file.h"

namespace host {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr std::size_t kMaxNameLength = 63;  // of a symbol or a label, in bytes
inline constexpr int kMaxLabels = 20;

enum class RowType : std::uint8_t { kEqual = 0, kGreater = 1, kLess = 2, kFree = 3 };

// Every distinct symbol name and label of the model once.
struct Dictionary {
  TextList symbols;
  TextList labels;
};

// The names of all rows or of all columns: element i is symbol[i] with the labels
// label[first[i]] .. label[first[i + 1] - 1].
struct ElementNames {
  std::vector<std::int32_t> symbol;
  std::vector<std::int32_t> first{0};  // one more than there are elements
  std::vector<std::int32_t> label;
};

// The values of a column that stand in the model's ValueFile already.
struct StoredValues {
  std::vector<ValueRun> runs;  // in the order of the row numbers
  bool minus_ones = false;     // up to the solver's tolerance
};

struct Column {
  // Row numbers of the entries, ascending. Columns with the same pattern may share one list.
  std::shared_ptr<const std::vector<std::int32_t>> rows;
  std::vector<double> values;  // one per row number
  double lower = -kInfinity;
  double upper = kInfinity;
  std::optional<StoredValues> stored{};  // `values` is empty then
};

struct Model {
  std::string name;
  std::vector<RowType> row_types;
  std::vector<double> rhs;
  std::vector<Column> columns;
  std::int32_t objective_row = 0;
  std::int32_t objective_column = 0;
  bool maximize = false;
  Dictionary dictionary;
  ElementNames row_names;
  ElementNames column_names;
  std::shared_ptr<ValueFile> value_file;  // of the instance to come, null unless values are stored
};

}  // namespace host
