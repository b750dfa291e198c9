// Writing a results file: its tables, batches of records and the views. The caller sees to it that
// names, dimensions and keys are right.
//
// Every failure is an exception, mostly a DatabaseError. The file is of no use then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/background.h"
#include "base/database.h"
#include "tdx/label_table.h"
#include "tdx/record_batch.h"
#include "tdx/tdx_schema.h"

namespace host {

class TdxWriter {
 public:
  // Opens the file, which nothing is written to before there are many records or it is finished.
  TdxWriter(const std::filesystem::path& file, const std::string& producer,
            const std::string& library_version);
  TdxWriter(const TdxWriter&) = delete;
  TdxWriter& operator=(const TdxWriter&) = delete;

  // Symbols are numbered from 1.
  void StartSymbol(std::size_t number, int dimension);
  // `labels` knows the labels of the key. A failure of a record may show at a later one, at the
  // latest at Finish.
  void AddRecord(std::span<const std::int32_t> key, double value, const LabelTable& labels);
  // Writes the list of symbols, the rest of the labels and the views, and closes the file. The
  // names of the views are chosen here.
  void Finish(const std::vector<TdxSymbolInfo>& symbols, const LabelTable& labels);

 private:
  void CollectLabels(const LabelTable& labels);
  void HandOver();
  void InsertWaiting();
  void MakeFile();
  void MakeTable(const RecordBatch::Part& part);
  void WriteSymbols(const std::vector<TdxSymbolInfo>& symbols);

  std::string producer_;
  std::string library_version_;
  bool is_large_ = false;              // some batch was handed over
  RecordBatch batch_;                  // being filled
  std::int32_t collected_labels_ = 0;  // the first so many have gone into a batch
  // Waits to be inserted, or is being inserted. The connection reads from it, and from the records
  // of one symbol in it, and so goes first. Apart from what the caller changes with every record,
  // or the two threads would wait for each other's cache lines.
  alignas(64) RecordBatch waiting_;
  RecordRows records_;
  Database database_;
  std::unique_ptr<Statement> insert_labels_;
  std::unique_ptr<Statement> insert_records_;
  std::size_t last_table_ = 0;  // the symbol for which insert_records_ is
  // Makes the file of full batches. Last: it uses the others.
  Background background_;
};

}  // namespace host
