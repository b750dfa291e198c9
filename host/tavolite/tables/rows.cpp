#include "tavolite/tables/rows.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

#include "base/input_error.h"

namespace host {

void RowBatch::Start(const TablePlan& plan, std::size_t capacity) {
  // An odd number of cache lines from column to column: with a power of two, the columns would
  // compete for the same places of the cache.
  stride_ = (capacity / 16 + 1) * 16 + 8;
  const std::size_t needed = stride_ * static_cast<std::size_t>(plan.numbers);
  if (needed > allocated_) {
    numbers_.reset();
    numbers_.reset(new double[needed]);  // left as it is: only what is used shall take memory
    allocated_ = needed;
  }
  texts_per_row_ = static_cast<std::size_t>(plan.Texts());
  rows = 0;
  texts.assign(texts_per_row_, {});
  row_of.clear();
  line_of.clear();
  rows_read = 0;
  lines_read = 0;
  first_dropped_line = -1;
  error.clear();
  kept_texts_.clear();
}

void RowBatch::EndRow(bool complete, std::int64_t line) {
  if (complete) {
    row_of.push_back(rows_read);
    line_of.push_back(line);
    ++rows;
    texts.resize(texts.size() + texts_per_row_);
  } else if (first_dropped_line < 0) {
    first_dropped_line = line;
  }
  ++rows_read;
}

std::int32_t TextSet::NumberOf(std::string_view text) {
  if (slots_.size() <= 2 * texts.size()) {
    Grow();
  }
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = std::hash<std::string_view>()(text) & mask;
  while (slots_[i] >= 0) {
    if (texts[static_cast<std::size_t>(slots_[i])] == text) {
      return slots_[i];
    }
    i = (i + 1) & mask;
  }
  slots_[i] = static_cast<std::int32_t>(texts.size());
  texts.push_back(text);
  return slots_[i];
}

void TextSet::Grow() {
  const std::size_t size = slots_.empty() ? 64 : 4 * slots_.size();
  slots_.assign(size, -1);
  for (std::size_t number = 0; number < texts.size(); ++number) {
    std::size_t i = std::hash<std::string_view>()(texts[number]) & (size - 1);
    while (slots_[i] >= 0) {
      i = (i + 1) & (size - 1);
    }
    slots_[i] = static_cast<std::int32_t>(number);
  }
}

TableRows::TableRows(const TablePlan& plan, std::string source, bool rows_by_line,
                     std::filesystem::path instance)
    : name(std::move(source)),
      numbers(plan, std::move(instance)),
      labels(static_cast<std::size_t>(plan.labels)),
      factors(static_cast<std::size_t>(plan.factors)),
      by_line(rows_by_line) {}

void TableRows::Append(const RowBatch& batch) {
  if (!batch.error.empty()) {
    throw InputError(name +
                     (by_line ? ":" + std::to_string(lines_read + batch.lines_read + 1)
                              : ": row " + std::to_string(rows_read + batch.rows_read + 1)) +
                     ": " + batch.error);
  }
  if (rows_read + batch.rows_read >= std::numeric_limits<std::int32_t>::max()) {
    throw InputError(name + ": more rows than a model can have");
  }
  numbers.Append(batch.rows, [&](int column) { return batch.Number(column); });
  AppendTexts(batch);
  for (std::size_t r = 0; r < batch.rows; ++r) {
    row_numbers.push_back(static_cast<std::int32_t>(rows_read + batch.row_of[r] + 1));
    if (!labels.empty()) {
      lines_.push_back(lines_read + batch.line_of[r] + 1);
    }
  }
  if (first_dropped_line < 0 && batch.first_dropped_line >= 0) {
    first_dropped_line = lines_read + batch.first_dropped_line + 1;
  }
  rows_read += batch.rows_read;
  lines_read += batch.lines_read;
}

void TableRows::AppendTexts(const RowBatch& batch) {
  const std::string_view* text = batch.texts.data();
  for (std::size_t r = 0; r < batch.rows; ++r) {
    for (std::vector<std::int32_t>& column : labels) {
      column.push_back(label_texts.NumberOf(*text++));
    }
    for (FactorColumn& column : factors) {
      column.codes.push_back(column.levels.NumberOf(*text++));
    }
  }
}

std::string TableRows::Where(std::size_t row) const {
  return by_line ? name + ":" + std::to_string(lines_[row])
                 : name + ": row " + std::to_string(row_numbers[row]);
}

}  // namespace host
