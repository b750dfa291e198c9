// The numbers of a table on their way into a model: the response stays in memory; the regressors of
// a long table go to the file of arrays of the instance while it is read, so that the matrix is
// never in memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "instance/model.h"
#include "tavolite/tables/plan.h"

namespace host {

class NumberColumns {
 public:
  // `instance`: the one that the model is to be written to. An empty path keeps all in memory.
  NumberColumns(const TablePlan& plan, std::filesystem::path instance);

  // Makes room for so many rows, if that can be had.
  void Expect(std::size_t rows);
  // Rows follow each other; `Numbers(c)` points at those of column `c`. Their signs are turned: a
  // row of a model is `y - sum x*b = 0`, with -x and -y for the solver to turn back. Throws
  // FileError.
  template <class Numbers>
  void Append(std::size_t rows, const Numbers& numbers) {
    for (std::size_t first = 0; first < rows;) {
      if (held_ == piece_rows_) WritePiece();
      const std::size_t count = std::min(rows - first, piece_rows_ - held_);
      for (std::size_t c = 0; c < ones_.size(); ++c) {
        AppendTo(c, {numbers(static_cast<int>(c)) + first, count});
      }
      held_ += count;
      first += count;
    }
  }
  // After the last row.
  void Finish();

  // Whether a column holds nothing but ones, up to the solver's tolerance.
  [[nodiscard]] bool HoldsOnes(int column) const { return ones_[static_cast<std::size_t>(column)]; }
  std::vector<double> TakeResponse() { return std::move(response_); }
  // A regressor's column of the model, in the rows `rows`, which are all.
  Column TakeColumn(int column, std::shared_ptr<const std::vector<std::int32_t>> rows);
  // Null where all columns are in memory.
  [[nodiscard]] std::shared_ptr<ValueFile> File() const { return file_; }

 private:
  void AppendTo(std::size_t column, std::span<const double> values);
  void WritePiece();

  std::filesystem::path instance_;
  std::size_t response_column_;
  std::size_t piece_rows_;
  std::size_t held_ = 0;  // rows of the piece at work
  std::vector<double> response_;
  std::vector<std::vector<double>> piece_;  // per column; the response's stays empty
  std::vector<bool> ones_;
  std::vector<std::vector<ValueRun>> runs_;  // per column
  std::shared_ptr<ValueFile> file_;
};

}  // namespace host
