#include "tavolite/tables/number_columns.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <new>
#include <utility>

namespace host {

namespace {

constexpr double kOnesTolerance = 1e-10;  // the solver's

// A piece of 25 columns fits a processor's cache; with many columns a run of values must still be
// worth a call of the system.
std::size_t PieceRows(int columns) {
  constexpr std::size_t kPieceValues = std::size_t{1} << 20U;
  return std::clamp<std::size_t>(kPieceValues / static_cast<std::size_t>(columns), 1024, 8192);
}

void Reserve(std::vector<double>& values, std::size_t count) {
  try {
    values.reserve(count);
  } catch (const std::bad_alloc&) {
    // It was a guess; the values grow as they need to.
  }
}

}  // namespace

NumberColumns::NumberColumns(const TablePlan& plan, std::filesystem::path instance)
    : instance_(std::move(instance)),
      response_column_(static_cast<std::size_t>(plan.response)),
      piece_rows_(instance_.empty() ? std::numeric_limits<std::size_t>::max()
                                    : PieceRows(plan.numbers)),
      piece_(static_cast<std::size_t>(plan.numbers)),
      ones_(piece_.size(), true),
      runs_(piece_.size()) {}

void NumberColumns::Expect(std::size_t rows) {
  for (std::size_t c = 0; c < piece_.size(); ++c) {
    if (c == response_column_) {
      Reserve(response_, rows);
    } else {
      Reserve(piece_[c], std::min(rows, piece_rows_));
    }
  }
}

void NumberColumns::AppendTo(std::size_t column, std::span<const double> values) {
  std::vector<double>& target = column == response_column_ ? response_ : piece_[column];
  const auto start = target.insert(target.end(), values.begin(), values.end());
  std::transform(start, target.end(), start, std::negate<>());
  ones_[column] = ones_[column] && std::ranges::all_of(values, [](double value) {
                    return std::abs(value - 1.0) <= kOnesTolerance;
                  });
}

void NumberColumns::WritePiece() {
  if (file_ == nullptr) file_ = std::make_shared<ValueFile>(instance_);
  for (std::size_t c = 0; c < piece_.size(); ++c) {
    if (c == response_column_) continue;
    runs_[c].push_back({file_->Append(piece_[c]), static_cast<std::int32_t>(piece_[c].size())});
    piece_[c].clear();
  }
  held_ = 0;
}

void NumberColumns::Finish() {
  if (file_ == nullptr) return;
  WritePiece();
  piece_ = std::vector<std::vector<double>>(piece_.size());
}

Column NumberColumns::TakeColumn(int column,
                                 std::shared_ptr<const std::vector<std::int32_t>> rows) {
  const auto c = static_cast<std::size_t>(column);
  Column taken{.rows = std::move(rows), .values = std::move(piece_[c])};
  if (file_ != nullptr) taken.stored = StoredValues{std::move(runs_[c]), ones_[c]};
  return taken;
}

}  // namespace host
