#include "tdxdclib/tdx_database.h"

#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "tdx/tdx_schema.h"
#include "tdxdclib/row_source.h"

namespace host {

namespace {

constexpr std::size_t kBatchRecords = 8192;

// The file is new and its name temporary: nothing is there to roll back to, and what a crash of the
// machine leaves of it is never looked at.
constexpr const char* kSettings =
    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
    "PRAGMA cache_size = -8192; PRAGMA encoding = 'UTF-8';";

constexpr const char* kTables =
    "CREATE TABLE tdx_file(schema_version INTEGER NOT NULL, producer TEXT NOT NULL,"
    " library_version TEXT NOT NULL, created TEXT NOT NULL);"
    "CREATE TABLE tdx_symbol(number INTEGER PRIMARY KEY, name TEXT NOT NULL, text TEXT NOT NULL,"
    " dimension INTEGER NOT NULL, type INTEGER NOT NULL, user_info INTEGER NOT NULL,"
    " records INTEGER NOT NULL, view TEXT NOT NULL);"
    "CREATE TABLE tdx_label(number INTEGER PRIMARY KEY, label TEXT NOT NULL);";

const sqlite3_module kRecordModule = RowSource<RecordRows>::Module();
const sqlite3_module kLabelModule = RowSource<LabelRows>::Module();

std::string DataTable(std::size_t symbol) {
  return "tdx_data_" + std::to_string(symbol);
}

std::string LabelColumn(int k) {
  return "label" + std::to_string(k);
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted.append(c == '"' ? 2 : 1, c);
  }
  return quoted + '"';
}

// As SQL compares names.
std::string Folded(std::string name) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

// The symbols' names serve as the names of their views, but for those that SQLite or the format
// keep for themselves: these get underscores behind, until nothing else has the name.
std::vector<std::string> ViewNames(const std::vector<TdxSymbol>& symbols) {
  std::set<std::string> taken;
  for (const TdxSymbol& symbol : symbols) taken.insert(Folded(symbol.name));
  std::vector<std::string> views;
  for (const TdxSymbol& symbol : symbols) {
    std::string view = symbol.name;
    const std::string folded = Folded(view);
    if (folded.starts_with("tdx_") || folded.starts_with("sqlite_")) {
      view.insert(0, "symbol_");
      while (!taken.insert(Folded(view)).second) view += '_';
    }
    views.push_back(view);
  }
  return views;
}

// CROSS JOIN keeps the records in the outer loop, so that they come in their order without a sort.
std::string ViewDefinition(const std::string& view, std::size_t symbol, int dimension) {
  std::string columns;
  std::string joins;
  for (int k = 1; k <= dimension; ++k) {
    const std::string label = LabelColumn(k);
    columns += label + ".label AS dim" + std::to_string(k) + ", ";
    joins += " CROSS JOIN tdx_label AS " + label + " ON " + label + ".number = d." + label;
  }
  return "CREATE VIEW " + QuotedName(view) + " AS SELECT " + columns + "d.value AS value FROM " +
         DataTable(symbol) + " AS d" + joins + " ORDER BY d.record";
}

}  // namespace

TdxDatabase::TdxDatabase(const std::filesystem::path& file, const std::string& producer,
                         const std::string& library_version)
    : database_(file, Database::Mode::kCreate) {
  database_.Execute(kSettings);
  database_.Execute("PRAGMA application_id = " + std::to_string(kTdxApplicationId) +
                    "; PRAGMA user_version = " + std::to_string(kTdxSchemaVersion));
  sqlite3* connection = database_.Connection();
  database_.Check(AddRowSource(connection, "tdx_new_records", kRecordModule, record_source_));
  database_.Check(AddRowSource(connection, "tdx_new_labels", kLabelModule, label_source_));
  database_.Execute("BEGIN");
  database_.Execute(kTables);
  Statement(database_,
            "INSERT INTO tdx_file VALUES(?, ?, ?, strftime('%Y-%m-%dT%H:%M:%SZ', 'now'))")
      .Bind(1, std::int64_t{kTdxSchemaVersion})
      .Bind(2, producer)
      .Bind(3, library_version)
      .Run();
  // SQLite numbers the rows of an empty table from 1 on; doing so is faster than being told.
  insert_labels_ = std::make_unique<Statement>(
      database_, "INSERT INTO tdx_label(label) SELECT label FROM tdx_new_labels");
}

void TdxDatabase::StartSymbol(std::size_t number, int dimension) {
  const std::string table = DataTable(number);
  std::string definitions;
  std::string columns;
  for (int k = 1; k <= dimension; ++k) {
    definitions += LabelColumn(k) + " INTEGER NOT NULL, ";
    columns += LabelColumn(k) + ", ";
  }
  database_.Execute("CREATE TABLE " + table + "(record INTEGER PRIMARY KEY, " + definitions +
                    "value REAL)");
  insert_records_ = std::make_unique<Statement>(database_, "INSERT INTO " + table + "(" + columns +
                                                               "value) SELECT " + columns +
                                                               "value FROM tdx_new_records");
  record_source_.dimension = dimension;
}

void TdxDatabase::AddRecord(std::span<const std::int32_t> key, double value,
                            const LabelTable& labels) {
  if (labels.Count() != collected_labels_) CollectLabels(labels);
  batch_.records.Add(key, value);
  if (batch_.records.RowCount() == kBatchRecords) HandOver();
}

void TdxDatabase::CollectLabels(const LabelTable& labels) {
  while (collected_labels_ < labels.Count()) {
    batch_.new_labels.Add(labels.Text(++collected_labels_));
  }
}

// The first full batch of a symbol starts the thread.
void TdxDatabase::HandOver() {
  if (thread_ == nullptr) {
    try {
      thread_ = std::make_unique<BatchThread>([this](RecordBatch& batch) { Insert(batch); });
    } catch (const std::system_error&) {  // there is no thread to be had
      Insert(batch_);
      batch_.Clear();
      return;
    }
  }
  if (!thread_->Take(batch_)) thread_->Finish();
}

void TdxDatabase::Insert(RecordBatch& batch) {
  std::swap(batch.new_labels, label_source_);
  if (label_source_.RowCount() > 0) insert_labels_->Run();
  std::swap(batch.records.labels, record_source_.labels);
  std::swap(batch.records.values, record_source_.values);
  if (record_source_.RowCount() > 0) insert_records_->Run();
}

void TdxDatabase::EndSymbol() {
  if (thread_ != nullptr) {
    thread_->Finish();
    thread_.reset();
  }
  Insert(batch_);
  batch_.Clear();
  insert_records_.reset();
}

void TdxDatabase::WriteSymbols(const std::vector<TdxSymbol>& symbols) {
  const std::vector<std::string> views = ViewNames(symbols);
  Statement insert(database_, "INSERT INTO tdx_symbol VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    const TdxSymbol& symbol = symbols[i];
    insert.Bind(1, static_cast<std::int64_t>(i + 1)).Bind(2, symbol.name).Bind(3, symbol.text);
    insert.Bind(4, std::int64_t{symbol.dimension}).Bind(5, std::int64_t{symbol.type});
    insert.Bind(6, std::int64_t{symbol.user_info}).Bind(7, symbol.record_count).Bind(8, views[i]);
    insert.Run();
    database_.Execute(ViewDefinition(views[i], i + 1, symbol.dimension));
  }
}

void TdxDatabase::Finish(const std::vector<TdxSymbol>& symbols, const LabelTable& labels) {
  CollectLabels(labels);
  Insert(batch_);
  insert_labels_.reset();
  WriteSymbols(symbols);
  database_.Execute("COMMIT");
  database_.Close();
}

}  // namespace host
