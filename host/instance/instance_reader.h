// Reading an instance for a solve. Everything but the matrix's values is kept in memory; the values
// are read column by column, so that the reader never holds the matrix.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/database.h"
#include "base/text_file.h"
#include "instance/model.h"

namespace host {

// Many short texts in one buffer.
class TextTable {
 public:
  [[nodiscard]] std::size_t size() const { return starts_.size() - 1; }
  [[nodiscard]] std::string_view operator[](std::size_t i) const {
    return std::string_view(bytes_).substr(starts_[i], starts_[i + 1] - starts_[i]);
  }
  void Append(std::string_view text) {
    bytes_ += text;
    starts_.push_back(bytes_.size());
  }

 private:
  std::string bytes_;
  std::vector<std::size_t> starts_{0};
};

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
  std::vector<RowType> row_types;
  std::vector<double> rhs;
  std::vector<ColumnHead> columns;
  bool has_dictionary = false;
  TextTable symbols;
  TextTable labels;
  ElementNames row_names;
  ElementNames column_names;
};

// The entries of one column: values[i] stands in row rows[i].
struct ColumnEntries {
  std::shared_ptr<const std::vector<std::int32_t>> rows;
  std::vector<double> values;
};

class InstanceReader {
 public:
  // Opens the instance and reads all of it once, the matrix included: after this, whatever an
  // instance states has been checked. Throws FileError that names the file and the fault.
  explicit InstanceReader(const std::filesystem::path& file);
  InstanceReader(const InstanceReader&) = delete;
  InstanceReader& operator=(const InstanceReader&) = delete;

  [[nodiscard]] const InstanceData& Data() const { return data_; }
  // Reads a column's entries; the memory of `entries` is used again. Throws FileError when the
  // file has changed since it was opened. A large column that follows is read meanwhile by a
  // thread.
  void ReadColumn(std::int32_t column, ColumnEntries& entries);
  // Gives back what has been read ahead, and lets go of the file's lock.
  void ReleaseAhead();

 private:
  void ReadHead();
  void ReadPatterns();
  void ReadColumns();
  std::future<void> StartHelper(std::atomic<std::size_t>& next) const;
  void CheckLargeColumns(Database& database, std::atomic<std::size_t>& next) const;
  void ReadDictionary();
  std::shared_ptr<const std::vector<std::int32_t>> ReadPattern(std::int32_t pattern);
  void ReadValues(Database& database, std::int32_t column, std::vector<double>& values) const;
  void StartAhead(std::int32_t column);

  std::filesystem::path file_;
  std::string name_;  // of the file, for messages
  Database database_;
  InstanceData data_;
  std::int64_t column_count_ = 0;
  std::vector<std::int32_t> pattern_sizes_;
  std::vector<bool> pattern_in_objective_row_;
  // The list read last: neighbouring columns mostly share it.
  std::int32_t last_pattern_ = -1;
  std::weak_ptr<const std::vector<std::int32_t>> last_rows_;
  // The column that a thread reads, with a connection of its own.
  std::int32_t ahead_column_ = -1;
  std::vector<double> ahead_values_;
  Database ahead_database_;
  std::future<void> ahead_;  // last: its end waits for the thread, which uses the others
};

}  // namespace host
