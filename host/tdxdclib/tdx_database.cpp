#include "host/tdxdclib/tdx_database.h"

#include <set>
#include <string_view>

#include "host/common/tdx_schema.h"

namespace host {

namespace {

constexpr std::size_t kBatchRecords = 8192;
constexpr int kMaxDimension = 20;

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

// All labels in the order of their numbers.
struct LabelRows {
  static std::string Declaration() { return "CREATE TABLE x(label)"; }

  const LabelTable* labels;

  [[nodiscard]] std::size_t RowCount() const { return static_cast<std::size_t>(labels->Count()); }
  void Result(sqlite3_context* context, std::size_t row, int) const {
    const std::string_view text = labels->Text(static_cast<std::int32_t>(row) + 1);
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }
};

const sqlite3_module kBatchModule = RowSource<RecordBatch>::Module();
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

// One table serves symbols of every dimension.
std::string RecordBatch::Declaration() {
  std::string columns = "value";
  for (int k = 1; k <= kMaxDimension; ++k) columns += ", " + LabelColumn(k);
  return "CREATE TABLE x(" + columns + ")";
}

void RecordBatch::Result(sqlite3_context* context, std::size_t row, int column) const {
  if (column == 0) {
    sqlite3_result_double(context, values[row]);  // an undefined value becomes NULL
  } else {
    const std::size_t first = row * static_cast<std::size_t>(dimension);
    sqlite3_result_int(context, labels[first + static_cast<std::size_t>(column) - 1]);
  }
}

TdxDatabase::TdxDatabase(const std::filesystem::path& file, const std::string& producer,
                         const std::string& library_version)
    : database_(file, Database::Mode::kCreate) {
  database_.Execute(kSettings);
  database_.Execute("PRAGMA application_id = " + std::to_string(kTdxApplicationId) +
                    "; PRAGMA user_version = " + std::to_string(kTdxSchemaVersion));
  database_.Check(AddRowSource(database_.Connection(), "tdx_batch", kBatchModule, batch_));
  database_.Execute("BEGIN");
  database_.Execute(kTables);
  Statement(database_,
            "INSERT INTO tdx_file VALUES(?, ?, ?, strftime('%Y-%m-%dT%H:%M:%SZ', 'now'))")
      .Bind(1, std::int64_t{kTdxSchemaVersion})
      .Bind(2, producer)
      .Bind(3, library_version)
      .Run();
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
  insert_ = std::make_unique<Statement>(
      database_,
      "INSERT INTO " + table + "(" + columns + "value) SELECT " + columns + "value FROM tdx_batch");
  batch_.dimension = dimension;
}

void TdxDatabase::AddRecord(std::span<const std::int32_t> labels, double value) {
  batch_.labels.insert(batch_.labels.end(), labels.begin(), labels.end());
  batch_.values.push_back(value);
  if (batch_.values.size() == kBatchRecords) FlushBatch();
}

void TdxDatabase::FlushBatch() {
  if (!batch_.values.empty()) insert_->Run();
  batch_.labels.clear();
  batch_.values.clear();
}

void TdxDatabase::EndSymbol() {
  FlushBatch();
  insert_.reset();
}

void TdxDatabase::WriteLabels(const LabelTable& labels) {
  LabelRows rows{&labels};
  database_.Check(AddRowSource(database_.Connection(), "tdx_label_batch", kLabelModule, rows));
  // SQLite numbers the rows of an empty table from 1 on; doing so is faster than being told.
  database_.Execute("INSERT INTO tdx_label(label) SELECT label FROM tdx_label_batch");
  database_.Check(
      sqlite3_create_module(database_.Connection(), "tdx_label_batch", nullptr, nullptr));
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
  WriteLabels(labels);
  WriteSymbols(symbols);
  database_.Execute("COMMIT");
  database_.Close();
}

}  // namespace host
