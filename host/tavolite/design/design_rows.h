// The rows of a model's design, read in blocks from its instance: the matrix is never in memory as
// a whole, and the solver may use the instance at the same time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "instance/column_values.h"
#include "instance/instance_tables.h"

namespace host {

class DesignRows {
 public:
  // Throws FileError or DatabaseError. The instance must be whole: it isn't checked here.
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
  // The rows of the model in which a column has values.
  struct Pattern {
    std::int32_t size;
    std::int32_t first_row;
    std::vector<std::int32_t> list;  // empty: they follow each other from `first_row` on
    // The number of the first value at `row` or behind.
    [[nodiscard]] std::int32_t Entry(std::int32_t row) const;
    [[nodiscard]] std::int32_t Row(std::int32_t entry) const;
  };
  struct Column {
    std::int32_t model_column;
    std::int32_t pattern;
  };
  explicit DesignRows(Database database, const std::filesystem::path& instance);
  void ReadPatterns();
  void ReadColumns(std::int64_t objective_column);
  [[nodiscard]] std::int32_t ModelRow(std::size_t row) const;

  ArrayTableReader arrays_;
  std::size_t rows_ = 0;
  std::int32_t objective_row_ = 0;
  double response_size_ = 0.0;
  std::vector<Pattern> patterns_;
  std::vector<Column> columns_;
  ColumnValues values_;
  std::vector<double> piece_;
};

}  // namespace host
