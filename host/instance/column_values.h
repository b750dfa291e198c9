// Reading the values of an instance's columns, each of which may stand in several runs.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "instance/instance_tables.h"

namespace host {

class ColumnValues {
 public:
  ColumnValues() = default;
  // Throws FileError unless all runs stand among the values.
  ColumnValues(ArrayTableReader& arrays, std::int64_t column_count);

  [[nodiscard]] std::int64_t Entries(std::int32_t column) const;
  // Reads the values of a column from its entry `first` on, which must be there. Throws FileError.
  void Read(ArrayReader& file, std::int32_t column, std::int64_t first,
            std::span<double> values) const;

  // Of all columns, in the order of the file.
  [[nodiscard]] std::int64_t Count() const { return count_; }
  void ReadAny(ArrayReader& file, std::int64_t place, std::span<double> values) const;
  // The column that has the value at `place`; -1 when none has.
  [[nodiscard]] std::int32_t ColumnAt(std::int64_t place) const;

 private:
  struct Run {
    std::int64_t place;
    std::int64_t end;  // of its entries, counted in the column
  };
  [[nodiscard]] std::span<const Run> RunsOf(std::int32_t column) const;

  std::int64_t count_ = 0;
  std::int64_t offset_ = 0;  // of the values in the file
  std::vector<std::int32_t> first_run_{0};
  std::vector<Run> runs_;
};

}  // namespace host
