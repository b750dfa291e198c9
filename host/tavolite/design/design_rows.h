// The rows of a model's design, read in blocks from its instance: the matrix is never in memory as
// a whole, and the solver may use the instance at the same time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "base/database.h"

namespace host {

class DesignRows {
 public:
  // Throws FileError or DatabaseError.
  explicit DesignRows(const std::filesystem::path& instance);

  // Rows without the objective row, and columns without the objective column.
  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] std::size_t Columns() const { return columns_.size(); }
  // The model's number of a column of the design.
  [[nodiscard]] std::int32_t ModelColumn(std::size_t column) const;
  // Root of the mean square of the right-hand sides.
  [[nodiscard]] double ResponseSize() const { return response_size_; }
  // The values of rows `first` to `first` + `count` - 1, all `count` x Columns() of them,
  // column-major with the leading dimension `ld`.
  void Read(std::size_t first, std::size_t count, double* target, std::size_t ld);

 private:
  struct Column {
    std::int32_t model_column;
    std::shared_ptr<const std::vector<std::int32_t>> model_rows;
    std::unique_ptr<BlobReader> values;
  };
  [[nodiscard]] std::int32_t ModelRow(std::size_t row) const;

  Database database_;
  std::size_t rows_ = 0;
  std::int32_t objective_row_ = 0;
  double response_size_ = 0.0;
  std::vector<Column> columns_;  // after the database, which they use
  std::vector<double> values_;
};

}  // namespace host
