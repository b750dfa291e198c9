// Reading the tables in data/, and the rule by which single-precision results are compared.
#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <filesystem>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/accuracy.h"
#include "tests/support/program.h"

namespace linfit_test {

// With the mathematical library that the tables were made with (glibc) the single-precision results
// are the same to the last bit; another library may differ by 64 units in the last place, and by
// anything below the normal range.
inline constexpr bool kExactMath = LINFIT_EXACT_MATH != 0;
inline constexpr double kSingleBound = kExactMath ? 0.0 : 64.0;
inline constexpr double kSingleRelative = kExactMath ? 0.0 : 8e-6;

inline double SingleDistance(float actual, float expected) {
  const bool below_range = std::fabs(expected) < std::numeric_limits<float>::min();
  if (!kExactMath && below_range && std::fabs(actual - expected) <= 1e-37f) {
    return 0.0;
  }
  return testing_support::Ulps(actual, expected);
}

inline std::string ReadData(const std::string& name) {
  return testing_support::ReadFile(testing_support::FromUtf8(LINFIT_NUMERICS_DATA) / name);
}

// A number as it stands in the tables: decimal or with the prefix 0x, inf.
template <class T>
T Number(std::string_view text) {
  const std::string_view whole = text;
  const bool negative = !text.empty() && text.front() == '-';
  text.remove_prefix(negative ? 1 : 0);
  const bool hex = text.substr(0, 2) == "0x";
  text.remove_prefix(hex ? 2 : 0);
  T value{};
  const auto format = hex ? std::chars_format::hex : std::chars_format::general;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value, format);
  if (end.ec != std::errc{} || end.ptr != text.data() + text.size()) {
    throw std::runtime_error("not a number: " + std::string(whole));
  }
  return negative ? -value : value;
}

// One row of a table: its text and its fields by column name.
struct Row {
  std::string text;
  std::map<std::string, std::string> fields;

  [[nodiscard]] const std::string& operator[](const std::string& column) const {
    return fields.at(column);
  }
  [[nodiscard]] double Double(const std::string& column) const {
    return Number<double>(fields.at(column));
  }
  [[nodiscard]] float Float(const std::string& column) const {
    return Number<float>(fields.at(column));
  }
  [[nodiscard]] int Int(const std::string& column) const { return std::stoi(fields.at(column)); }
};

inline std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, ',');) {
    fields.push_back(field);
  }
  return fields;
}

inline std::vector<Row> ReadTable(const std::string& name) {
  const std::vector<std::string> lines = testing_support::Lines(ReadData(name));
  const std::vector<std::string> columns = Fields(lines.at(0));
  std::vector<Row> rows;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    Row row{lines[i], {}};
    std::vector<std::string> fields = Fields(lines[i]);
    fields.resize(columns.size());
    for (std::size_t k = 0; k < columns.size(); ++k) {
      row.fields[columns[k]] = fields[k];
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace linfit_test
