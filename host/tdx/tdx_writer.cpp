#include "tdx/tdx_writer.h"

#include <utility>

#include "base/temporary_file.h"
#include "tdx/row_source.h"

namespace host {

namespace {

constexpr std::size_t kBatchRecords = 8192;

// The file is new and its name temporary: nothing is there to roll back to, and what a crash of the
// machine leaves of it is never looked at.
constexpr const char* kSettings =
    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
    "PRAGMA cache_size = -8192; PRAGMA encoding = 'UTF-8';";

const sqlite3_module kRecordModule = RowSource<RecordRows>::Module();
const sqlite3_module kLabelModule = RowSource<LabelRows>::Module();

}  // namespace

TdxWriter::TdxWriter(const std::filesystem::path& file, const std::string& producer,
                     const std::string& library_version)
    : database_(file, Database::Mode::kCreate) {
  database_.Execute(kSettings);
  database_.Execute("PRAGMA application_id = " + std::to_string(kTdxApplicationId) +
                    "; PRAGMA user_version = " + std::to_string(kTdxSchemaVersion));
  sqlite3* connection = database_.Connection();
  database_.Check(AddRowSource(connection, "tdx_new_records", kRecordModule, waiting_.records));
  database_.Check(AddRowSource(connection, "tdx_new_labels", kLabelModule, waiting_.new_labels));
  database_.Execute("BEGIN");
  database_.Execute(kTdxTables);
  Statement(database_,
            "INSERT INTO tdx_file(schema_version, producer, library_version, created, process)"
            " VALUES(?, ?, ?, strftime('%Y-%m-%dT%H:%M:%SZ', 'now'), ?)")
      .Bind(1, std::int64_t{kTdxSchemaVersion})
      .Bind(2, producer)
      .Bind(3, library_version)
      .Bind(4, std::int64_t{CurrentProcessNumber()})
      .Run();
  // SQLite numbers the rows of an empty table from 1 on; doing so is faster than being told.
  insert_labels_ = std::make_unique<Statement>(
      database_, "INSERT INTO tdx_label(label) SELECT label FROM tdx_new_labels");
}

void TdxWriter::StartSymbol(std::size_t number, int dimension) {
  database_.Execute(TdxDataTableDefinition(number, dimension));
  std::string columns;
  for (int k = 1; k <= dimension; ++k) columns += TdxLabelColumn(k) + ", ";
  insert_records_ = std::make_unique<Statement>(
      database_, "INSERT INTO " + TdxDataTable(number) + "(" + columns + "value) SELECT " +
                     columns + "value FROM tdx_new_records");
  batch_.records.dimension = dimension;
}

void TdxWriter::AddRecord(std::span<const std::int32_t> key, double value,
                          const LabelTable& labels) {
  if (labels.Count() != collected_labels_) CollectLabels(labels);
  batch_.records.Add(key, value);
  if (batch_.records.RowCount() == kBatchRecords) HandOver();
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
  batch_.records.dimension = waiting_.records.dimension;
  background_.Start([this] { InsertWaiting(); });
}

void TdxWriter::InsertWaiting() {
  if (waiting_.new_labels.RowCount() > 0) insert_labels_->Run();
  if (waiting_.records.RowCount() > 0) insert_records_->Run();
}

void TdxWriter::EndSymbol() {
  background_.Wait();
  std::swap(batch_, waiting_);
  batch_.Clear();
  InsertWaiting();
  insert_records_.reset();
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
  CollectLabels(labels);
  std::swap(batch_, waiting_);
  InsertWaiting();
  insert_labels_.reset();
  WriteSymbols(symbols);
  database_.Execute("COMMIT");
  database_.Close();
}

}  // namespace host
