#include "tdx/tdx_writer.h"

#include <utility>

#include "base/temporary_file.h"
#include "tdx/row_source.h"

namespace host {

namespace {

// So many records, or a multiple, go to the other thread when it is idle; so many go anyway.
constexpr std::size_t kBatch = 8192;
constexpr std::size_t kFullBatch = 32768;

// Large pages cost less time a record, small ones less time a table.
constexpr int kSmallPage = 4096;
constexpr int kLargePage = 16384;

// The file is new and its name temporary: nothing is there to roll back to, and what a crash of the
// machine leaves of it is never looked at. Written in order, it needs few pages at hand.
constexpr const char* kSettings =
    "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
    "PRAGMA cache_size = -1024; BEGIN;";

const sqlite3_module kRecordModule = RowSource<RecordRows>::Module();
const sqlite3_module kLabelModule = RowSource<LabelRows>::Module();

}  // namespace

TdxWriter::TdxWriter(const std::filesystem::path& file, const std::string& producer,
                     const std::string& library_version)
    : producer_(producer),
      library_version_(library_version),
      database_(file, Database::Mode::kCreate) {}

void TdxWriter::MakeFile() {
  database_.Execute(
      "PRAGMA page_size = " + std::to_string(is_large_ ? kLargePage : kSmallPage) + ";" +
      kSettings + "PRAGMA application_id = " + std::to_string(kTdxApplicationId) +
      "; PRAGMA user_version = " + std::to_string(kTdxSchemaVersion) + ";" + kTdxTables);
  Statement(database_,
            "INSERT INTO tdx_file(schema_version, producer, library_version, created, process)"
            " VALUES(?, ?, ?, strftime('%Y-%m-%dT%H:%M:%SZ', 'now'), ?)")
      .Bind(1, std::int64_t{kTdxSchemaVersion})
      .Bind(2, producer_)
      .Bind(3, library_version_)
      .Bind(4, std::int64_t{CurrentProcessNumber()})
      .Run();
  sqlite3* connection = database_.Connection();
  database_.Check(AddRowSource(connection, "tdx_new_records", kRecordModule, records_));
  database_.Check(AddRowSource(connection, "tdx_new_labels", kLabelModule, waiting_.new_labels));
  // SQLite numbers the rows of an empty table from 1 on; doing so is faster than being told.
  insert_labels_ = std::make_unique<Statement>(
      database_, "INSERT OR FAIL INTO tdx_label(label) SELECT label FROM tdx_new_labels");
}

void TdxWriter::StartSymbol(std::size_t number, int dimension) {
  batch_.parts.push_back({number, static_cast<std::size_t>(dimension)});
}

void TdxWriter::AddRecord(std::span<const std::int32_t> key, double value,
                          const LabelTable& labels) {
  if (labels.Count() != collected_labels_) CollectLabels(labels);
  batch_.Add(key, value);
  const std::size_t records = batch_.values.size();
  if (records % kBatch == 0 && (records >= kFullBatch || !background_.IsBusy())) HandOver();
}

void TdxWriter::CollectLabels(const LabelTable& labels) {
  while (collected_labels_ < labels.Count()) {
    batch_.new_labels.Add(labels.Text(++collected_labels_));
  }
}

// The caller fills the next batch while this one is inserted.
void TdxWriter::HandOver() {
  background_.Wait();
  std::swap(batch_, waiting_);
  batch_.Clear();
  const RecordBatch::Part& symbol = waiting_.parts.back();
  batch_.parts.push_back({symbol.symbol, symbol.dimension});
  is_large_ = true;
  background_.Start([this] { InsertWaiting(); });
}

void TdxWriter::InsertWaiting() {
  if (insert_labels_ == nullptr) MakeFile();
  if (waiting_.new_labels.RowCount() > 0) insert_labels_->Run();
  const std::span<const std::int32_t> labels = waiting_.labels;
  const std::span<const double> values = waiting_.values;
  std::size_t label = 0;
  std::size_t value = 0;
  for (const RecordBatch::Part& part : waiting_.parts) {
    if (part.symbol != last_table_) MakeTable(part);
    const std::size_t count = part.records * part.dimension;
    records_ = {part.dimension, labels.subspan(label, count), values.subspan(value, part.records)};
    if (part.records > 0) insert_records_->Run();
    label += count;
    value += part.records;
  }
}

void TdxWriter::MakeTable(const RecordBatch::Part& part) {
  const int dimension = static_cast<int>(part.dimension);
  database_.Execute(TdxDataTableDefinition(part.symbol, dimension));
  std::string columns;
  for (int k = 1; k <= dimension; ++k) columns += TdxLabelColumn(k) + ", ";
  insert_records_ = std::make_unique<Statement>(
      database_, "INSERT OR FAIL INTO " + TdxDataTable(part.symbol) + "(" + columns +
                     "value) SELECT " + columns + "value FROM tdx_new_records");
  last_table_ = part.symbol;
}

void TdxWriter::WriteSymbols(const std::vector<TdxSymbolInfo>& symbols) {
  const std::vector<std::string> views = TdxViewNames(symbols);
  Statement insert(database_, "INSERT INTO tdx_symbol VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
  // A view is a text in the schema. To have SQLite compile each one before it stores the text would
  // take longer than all else that a small file needs.
  database_.Execute("PRAGMA writable_schema = ON");
  Statement add_view(database_, "INSERT INTO sqlite_schema VALUES('view', ?1, ?1, 0, ?2)");
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    const TdxSymbolInfo& symbol = symbols[i];
    insert.Bind(1, static_cast<std::int64_t>(i + 1)).Bind(2, symbol.name).Bind(3, symbol.text);
    insert.Bind(4, std::int64_t{symbol.dimension}).Bind(5, std::int64_t{symbol.type});
    insert.Bind(6, std::int64_t{symbol.user_info}).Bind(7, symbol.records).Bind(8, views[i]);
    insert.Run();
    add_view.Bind(1, views[i]).Bind(2, TdxViewDefinition(views[i], i + 1, symbol.dimension)).Run();
  }
}

void TdxWriter::Finish(const std::vector<TdxSymbolInfo>& symbols, const LabelTable& labels) {
  background_.Wait();
  CollectLabels(labels);
  std::swap(batch_, waiting_);
  InsertWaiting();
  insert_labels_.reset();
  insert_records_.reset();
  WriteSymbols(symbols);
  database_.Execute("COMMIT");
  database_.Close();
}

}  // namespace host
