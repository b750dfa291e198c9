// The SQLite side of a TDX file that is being written: tables, batches of records, views.
//
// Every failure is a DatabaseError. The file is of no use then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/common/database.h"
#include "host/tdxdclib/label_table.h"
#include "host/tdxdclib/row_source.h"

namespace host {

struct TdxSymbol {
  std::string name;
  std::string text;
  int dimension = 0;
  int type = 1;
  int user_info = 0;
  std::int64_t record_count = 0;
};

// Records that wait to be inserted: `dimension` label numbers and one value each.
struct RecordBatch {
  static std::string Declaration();

  int dimension = 0;
  std::vector<std::int32_t> labels;
  std::vector<double> values;

  [[nodiscard]] std::size_t RowCount() const { return values.size(); }
  void Result(sqlite3_context* context, std::size_t row, int column) const;
};

class TdxDatabase {
 public:
  // Makes the file, with `producer` and the time in its header.
  TdxDatabase(const std::filesystem::path& file, const std::string& producer,
              const std::string& library_version);
  TdxDatabase(const TdxDatabase&) = delete;
  TdxDatabase& operator=(const TdxDatabase&) = delete;

  // Symbols are numbered from 1.
  void StartSymbol(std::size_t number, int dimension);
  void AddRecord(std::span<const std::int32_t> labels, double value);
  void EndSymbol();
  // Writes the lists of symbols and labels and the views, and closes the file.
  void Finish(const std::vector<TdxSymbol>& symbols, const LabelTable& labels);

 private:
  void FlushBatch();
  void WriteLabels(const LabelTable& labels);
  void WriteSymbols(const std::vector<TdxSymbol>& symbols);

  RecordBatch batch_;  // outlives the connection, which reads from it
  Database database_;
  std::unique_ptr<Statement> insert_;
};

}  // namespace host
