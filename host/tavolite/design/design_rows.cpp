#include "tavolite/design/design_rows.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

#include "instance/instance_tables.h"

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

DesignRows::DesignRows(const std::filesystem::path& instance)
    : database_(OpenInstance(instance, Database::Mode::kReadImmutable)) {
  Statement model(database_, "SELECT row_count, objective_row, objective_column FROM model");
  if (!model.Step()) throw FileError("no model");
  rows_ = static_cast<std::size_t>(model.Int(0) - 1);
  objective_row_ = static_cast<std::int32_t>(model.Int(1));
  std::vector<double> responses = ReadArray<double>(database_, "row_rhs", model.Int(0));
  responses.erase(responses.begin() + objective_row_);
  response_size_ = RootMeanSquare(responses);

  std::map<std::int64_t, std::shared_ptr<const std::vector<std::int32_t>>> patterns;
  Statement pattern(database_, "SELECT id, data FROM pattern");
  while (pattern.Step()) {
    patterns[pattern.Int(0)] =
        std::make_shared<std::vector<std::int32_t>>(FromBlob<std::int32_t>(pattern.Blob(1)));
  }
  Statement column(database_, "SELECT id, pattern FROM matrix_column WHERE id <> ? ORDER BY id");
  column.Bind(1, model.Int(2));
  while (column.Step()) {
    columns_.push_back(
        {static_cast<std::int32_t>(column.Int(0)), patterns.at(column.Int(1)),
         std::make_unique<BlobReader>(database_, "matrix_column", "data", column.Int(0))});
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
    const std::vector<std::int32_t>& rows = *column.model_rows;
    const auto begin = std::ranges::lower_bound(rows, first_row);
    const auto end = std::upper_bound(begin, rows.end(), last_row);
    values_.resize(static_cast<std::size_t>(end - begin));
    column.values->Read(static_cast<std::size_t>(begin - rows.begin()) * sizeof(double),
                        std::as_writable_bytes(std::span(values_)));
    std::fill_n(target, count, 0.0);
    for (auto row = begin; row != end; ++row) {
      if (*row == objective_row_) continue;
      const std::int32_t place =
          *row - first_row - (first_row<objective_row_&& * row> objective_row_ ? 1 : 0);
      // A model states its rows with the data on the left, so that their sign is turned.
      target[place] = -values_[static_cast<std::size_t>(row - begin)];
    }
    target += ld;
  }
}

}  // namespace host
