// Records and labels that wait to be inserted into a TDX file.
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// The labels that come first in the records of one batch, in the order of their numbers.
struct LabelRows {
  static std::string Declaration() { return "CREATE TABLE x(label)"; }

  std::string text;               // end to end
  std::vector<std::size_t> ends;  // of each in `text`

  void Add(std::string_view label) {
    text += label;
    ends.push_back(text.size());
  }
  [[nodiscard]] std::size_t RowCount() const { return ends.size(); }
  void Result(sqlite3_context* context, std::size_t row, int column) const;
};

// Records of one symbol: `dimension` label numbers and one value for each.
struct RecordRows {
  static std::string Declaration();

  std::size_t dimension = 0;
  std::span<const std::int32_t> labels{};
  std::span<const double> values{};

  [[nodiscard]] std::size_t RowCount() const { return values.size(); }
  void Result(sqlite3_context* context, std::size_t row, int column) const;
};

// Records of symbols that follow each other.
struct RecordBatch {
  struct Part {
    std::size_t symbol = 0;  // its number
    std::size_t dimension = 0;
    std::size_t records = 0;
  };

  LabelRows new_labels;
  std::vector<Part> parts;
  std::vector<std::int32_t> labels;  // of all parts, end to end
  std::vector<double> values;

  // To the last part.
  void Add(std::span<const std::int32_t> key, double value) {
    labels.insert(labels.end(), key.begin(), key.end());
    values.push_back(value);
    ++parts.back().records;
  }
  // Keeps the memory.
  void Clear() {
    new_labels.text.clear();
    new_labels.ends.clear();
    parts.clear();
    labels.clear();
    values.clear();
  }
};

}  // namespace host
