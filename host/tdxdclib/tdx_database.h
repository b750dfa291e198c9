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

#include "base/database.h"
#include "tdxdclib/batch_thread.h"
#include "tdxdclib/label_table.h"
#include "tdxdclib/record_batch.h"

namespace host {

struct TdxSymbol {
  std::string name;
  std::string text;
  int dimension = 0;
  int type = 1;
  int user_info = 0;
  std::int64_t record_count = 0;
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
  // `labels` knows the labels of the key. A failure of a record may show at a later one, at the
  // latest at the end of its symbol.
  void AddRecord(std::span<const std::int32_t> key, double value, const LabelTable& labels);
  void EndSymbol();
  // Writes the list of symbols, the rest of the labels and the views, and closes the file.
  void Finish(const std::vector<TdxSymbol>& symbols, const LabelTable& labels);

 private:
  void CollectLabels(const LabelTable& labels);
  void HandOver();
  void Insert(RecordBatch& batch);
  void WriteSymbols(const std::vector<TdxSymbol>& symbols);

  RecordBatch batch_;                  // being filled
  std::int32_t collected_labels_ = 0;  // the first so many have gone into a batch
  // What the connection reads from while it inserts; they outlive it.
  LabelRows label_source_;
  RecordRows record_source_;
  Database database_;
  std::unique_ptr<Statement> insert_labels_;
  std::unique_ptr<Statement> insert_records_;
  // Only while a large symbol is written: it alone uses the connection then.
  std::unique_ptr<BatchThread> thread_;
};

}  // namespace host
