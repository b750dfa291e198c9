#include "tavolite/design/design_rows.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace host {

namespace {

double RootMeanSquare(const std::vector<double>& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::abs(value));
  if (largest == 0.0) return 0.0;
  double sum = 0.0;
  for (const double value : values) sum += (value / largest) * (value / largest);
  return largest * std::sqrt(sum / static_cast<double>(values.size()));
}

}  // namespace

std::int32_t DesignRows::Pattern::Entry(std::int32_t row) const {
  if (list.empty()) return std::clamp(row - first_row, 0, size);
  return static_cast<std::int32_t>(std::ranges::lower_bound(list, row) - list.begin());
}

std::int32_t DesignRows::Pattern::Row(std::int32_t entry) const {
  return list.empty() ? first_row + entry : list[static_cast<std::size_t>(entry)];
}

DesignRows::DesignRows(const std::filesystem::path& instance)
    : DesignRows(OpenInstance(instance, Database::Mode::kReadImmutable), instance) {}

DesignRows::DesignRows(Database database, const std::filesystem::path& instance)
    : arrays_(database, instance) {
  Statement model(database, "SELECT row_count, objective_row, objective_column FROM model");
  if (!model.Step()) throw FileError("no model");
  rows_ = static_cast<std::size_t>(model.Int(0) - 1);
  objective_row_ = static_cast<std::int32_t>(model.Int(1));
  std::vector<double> responses = arrays_.Read<double>("row_rhs", model.Int(0));
  responses.erase(responses.begin() + objective_row_);
  response_size_ = RootMeanSquare(responses);
  ReadPatterns();
  ReadColumns(model.Int(2));
}

void DesignRows::ReadPatterns() {
  const auto sizes = arrays_.Read<std::int32_t>("pattern_size", -1);
  const auto first_rows = arrays_.Read<std::int32_t>("pattern_first_row", -1);
  const auto listed = arrays_.Read<std::int32_t>("pattern_row", -1);
  auto list = listed.begin();
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    patterns_.push_back({sizes[i], first_rows[i], {}});
    if (first_rows[i] != kListed) continue;
    patterns_.back().list.assign(list, list + sizes[i]);
    list += sizes[i];
  }
}

void DesignRows::ReadColumns(std::int64_t objective_column) {
  const auto patterns = arrays_.Read<std::int32_t>("column_pattern", -1);
  values_ = ColumnValues(arrays_, static_cast<std::int64_t>(patterns.size()));
  for (std::size_t j = 0; j < patterns.size(); ++j) {
    const auto number = static_cast<std::int32_t>(j);
    if (number != objective_column) columns_.push_back({number, patterns[j]});
  }
}

std::int32_t DesignRows::ModelColumn(std::size_t column) const {
  return columns_[column].model_column;
}

std::int32_t DesignRows::ModelRow(std::size_t row) const {
  const auto number = static_cast<std::int32_t>(row);
  return number < objective_row_ ? number : number + 1;
}

void DesignRows::Read(std::size_t first, std::size_t count, double* target, std::size_t ld) {
  const std::int32_t first_row = ModelRow(first);
  const std::int32_t last_row = ModelRow(first + count - 1);
  for (const Column& column : columns_) {
    const Pattern& pattern = patterns_[static_cast<std::size_t>(column.pattern)];
    const std::int32_t begin = pattern.Entry(first_row);
    const std::int32_t end = pattern.Entry(last_row + 1);
    piece_.resize(static_cast<std::size_t>(end - begin));
    values_.Read(arrays_.File(), column.model_column, begin, piece_);
    std::fill_n(target, count, 0.0);
    for (std::int32_t entry = begin; entry < end; ++entry) {
      const std::int32_t row = pattern.Row(entry);
      if (row == objective_row_) continue;
      const bool is_behind = first_row < objective_row_ && row > objective_row_;
      // A model states its rows with the data on the left, so that their sign is turned.
      target[row - first_row - (is_behind ? 1 : 0)] =
          -piece_[static_cast<std::size_t>(entry - begin)];
    }
    target += ld;
  }
}

}  // namespace host
