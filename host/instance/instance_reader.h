// Reading an instance for a solve. The rows and the matrix are read in pieces, so that the reader
// never holds all rows or a whole column; everything else is kept in memory.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/database.h"
#include "base/text_file.h"
#include "instance/column_values.h"
#include "instance/instance_names.h"
#include "instance/instance_tables.h"
#include "instance/model.h"

namespace host {

struct ColumnHead {
  double lower = 0.0;
  double upper = 0.0;
  std::int32_t pattern = 0;  // number of its row-number list
  std::int32_t entries = 0;
  bool in_objective_row = false;
};

// All numbers are zero-based.
struct InstanceData {
  std::string name;
  std::int32_t objective_row = 0;
  std::int32_t objective_column = 0;
  bool maximize = false;
  std::int32_t row_count = 0;
  std::vector<ColumnHead> columns;
  bool has_dictionary = false;
  Dictionary dictionary;
  ElementNames column_names;
};

// Some rows, from number `begin` on.
struct RowPiece {
  std::size_t begin = 0;
  std::size_t count = 0;
  std::vector<RowType> types;
  std::vector<double> rhs;
  ElementNames names;  // of these rows; none without a dictionary

  [[nodiscard]] bool Holds(std::size_t row) const { return row - begin < count; }
};

// Some entries of one column, from number `begin` on.
struct ColumnPiece {
  std::int32_t column = -1;
  std::size_t entries = 0;  // of the column
  std::size_t begin = 0;
  std::vector<double> values;
  std::int32_t first_row = 0;      // the rows follow each other from here,
  std::vector<std::int32_t> rows;  // unless they are listed

  [[nodiscard]] bool Holds(std::int32_t number, std::size_t entry) const {
    return number == column && entry - begin < values.size();
  }
  [[nodiscard]] double Value(std::size_t entry) const { return values[entry - begin]; }
  [[nodiscard]] std::int32_t Row(std::size_t entry) const {
    const std::size_t i = entry - begin;
    return rows.empty() ? first_row + static_cast<std::int32_t>(i) : rows[i];
  }
};

class InstanceReader {
 public:
  // Opens the instance and reads all of it once, the matrix included: after this, whatever an
  // instance states has been checked. Throws FileError that names the file and the fault.
  explicit InstanceReader(const std::filesystem::path& file);

  [[nodiscard]] const InstanceData& Data() const { return data_; }
  // The rows at hand: of a small model, all of them.
  [[nodiscard]] const RowPiece& Rows() const { return rows_; }
  // Reads the rows around number `row`, which there must be, in place of those at hand. What is
  // read is checked again: throws FileError as ReadPiece does.
  void ReadRows(std::size_t row);
  // Reads entries of a column from number `entry` on, which there must be. What is read is checked
  // again: throws FileError when the file has changed since it was opened or can't be read.
  void ReadPiece(std::int32_t column, std::size_t entry, ColumnPiece& piece);

 private:
  // The row numbers of columns that have entries in the same rows.
  struct Pattern {
    std::int32_t size;
    std::int32_t first_row;   // kListed: they are listed
    std::int64_t first_list;  // where the list begins
  };

  // Where the arrays of the rows stand.
  struct RowPlaces {
    std::int64_t types = 0;
    std::int64_t rhs = 0;
    std::int64_t symbols = 0;
    std::int64_t first_labels = 0;
    std::int64_t labels = 0;
    std::int64_t label_count = 0;
  };

  void ReadHead(Database& database);
  void ReadRowsFrom(ArrayReader& file, std::size_t row);
  void ReadRowNames(ArrayReader& file);
  void CheckAllRows(ArrayTableReader& arrays);
  void ReadPatterns(ArrayTableReader& arrays);
  void ReadColumns(ArrayTableReader& arrays);
  void CheckValuesFrom(ArrayReader& file, std::atomic<std::int64_t>& next) const;
  void CheckAllValues(ArrayTableReader& arrays);

  std::filesystem::path file_;
  std::string name_;  // of the file, for messages
  InstanceData data_;
  std::int64_t column_count_ = 0;
  RowPlaces row_places_;
  RowPiece rows_;
  std::vector<Pattern> patterns_;
  std::vector<bool> pattern_in_objective_row_;
  ColumnValues values_;
  std::int64_t list_offset_ = 0;
  std::optional<ArrayReader> arrays_;
};

}  // namespace host
