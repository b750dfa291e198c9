// The rows of a table, as the front ends read them: piece by piece, then as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "instance/text_list.h"
#include "tavolite/tables/number_columns.h"
#include "tavolite/tables/plan.h"

namespace host {

// Consecutive rows of a table, with their numbers held by column.
class RowBatch {
 public:
  // Empties the batch and makes room for `capacity` rows.
  void Start(const TablePlan& plan, std::size_t capacity);

  [[nodiscard]] double* Number(int column) {
    return numbers_.get() + static_cast<std::size_t>(column) * stride_;
  }
  [[nodiscard]] const double* Number(int column) const {
    return numbers_.get() + static_cast<std::size_t>(column) * stride_;
  }
  // Keeps a text that does not live in the table itself.
  std::string_view Keep(std::string text) { return kept_texts_.emplace_back(std::move(text)); }
  // Of the row at work.
  void SetText(int column, std::string_view text) {
    texts[rows * texts_per_row_ + static_cast<std::size_t>(column)] = text;
  }
  // Ends a row that starts in `line` of the batch: counted, and kept when it is complete.
  void EndRow(bool complete, std::int64_t line);

  std::size_t rows = 0;  // kept
  std::vector<std::string_view>
      texts;  // of the row at work and all before: row by row, plan.Texts() each
  std::vector<std::int64_t> row_of;   // kept rows' places among all rows of the batch, from 0
  std::vector<std::int64_t> line_of;  // and the lines where they start, from 0
  std::int64_t rows_read = 0;
  std::int64_t lines_read = 0;
  std::int64_t first_dropped_line = -1;
  std::string error;  // what ended reading, empty if nothing did; it stands in line lines_read

 private:
  std::deque<std::string> kept_texts_;
  std::unique_ptr<double[]> numbers_;
  std::size_t allocated_ = 0;
  std::size_t stride_ = 0;
  std::size_t texts_per_row_ = 0;
};

// Distinct texts, numbered in the order of their first use.
class TextSet {
 public:
  std::int32_t NumberOf(std::string_view text);

  TextList texts;

 private:
  void Grow();
  std::vector<std::int32_t> slots_;  // open addressing; -1 is free
};

// A column of texts: row i has texts[codes[i]].
struct FactorColumn {
  TextSet levels;
  std::vector<std::int32_t> codes;
};

// All complete rows, ready for a model.
struct TableRows {
  // `source` is the table's name, for messages; rows are named by line when `rows_by_line`, else by
  // number. `instance` is that of NumberColumns.
  TableRows(const TablePlan& plan, std::string source, bool rows_by_line,
            std::filesystem::path instance);

  // Throws InputError for a batch with an error, or when the rows get too many, and FileError.
  void Append(const RowBatch& batch);
  // "file:line" or "file: row number" of a kept row.
  [[nodiscard]] std::string Where(std::size_t row) const;

  std::string name;
  NumberColumns numbers;
  std::vector<std::vector<std::int32_t>> labels;  // per label column, numbers in label_texts
  TextSet label_texts;
  std::vector<FactorColumn> factors;
  std::vector<std::int32_t> row_numbers;  // of the kept rows among all, from 1
  std::int64_t rows_read = 0;
  std::int64_t lines_read = 0;           // those of the header included
  std::int64_t first_dropped_line = -1;  // or row, from 1
  bool by_line;

 private:
  void AppendTexts(const RowBatch& batch);

  std::vector<std::int64_t> lines_;  // of the kept rows, only where rows have labels
};

}  // namespace host
