#include "tavolite/solve/front_end.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/tables/table_model.h"

namespace host {
namespace {

struct FormatEntry {
  const char* name;
  const char* suffix;  // nullptr: only by name
  ModelFormat format;
};

constexpr std::array kFormats{
    FormatEntry{"mod", ".mod", ModelFormat::kMathProg},
    FormatEntry{"mps", ".mps", ModelFormat::kMps},
    FormatEntry{"free-mps", ".fmps", ModelFormat::kFreeMps},
    FormatEntry{"fixed-mps", nullptr, ModelFormat::kFixedMps},
    FormatEntry{"lp", ".lp", ModelFormat::kLp},
};

constexpr std::array<const char*, 3> kTableFormats{"csv", "tsv", "sqlite"};

struct TableSuffix {
  const char* suffix;
  const char* format;
};

constexpr std::array kTableSuffixes{
    TableSuffix{".csv", "csv"},       TableSuffix{".tsv", "tsv"},
    TableSuffix{".tab", "tsv"},       TableSuffix{".db", "sqlite"},
    TableSuffix{".sqlite", "sqlite"}, TableSuffix{".sqlite3", "sqlite"}};

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

ModelFormat ChooseFormat(const FrontEndOptions& options) {
  const std::string suffix = LowerCase(Utf8(options.model.extension()));
  std::string suffixes;
  for (const FormatEntry& entry : kFormats) {
    const bool by_suffix =
        options.format.empty() && entry.suffix != nullptr && suffix == entry.suffix;
    if (by_suffix || options.format == entry.name) return entry.format;
    if (entry.suffix != nullptr) suffixes += std::string(" ") + entry.suffix;
  }
  for (const TableSuffix& entry : kTableSuffixes) suffixes += std::string(" ") + entry.suffix;
  throw InputError(Utf8(options.model) + ": the suffix does not tell the format (known are" +
                   suffixes + "): give it with --format");
}

// Empty for files that hold a model.
std::string TableFormat(const FrontEndOptions& options) {
  if (!options.format.empty()) {
    const auto known = std::find(kTableFormats.begin(), kTableFormats.end(), options.format);
    return known == kTableFormats.end() ? "" : *known;
  }
  const std::string suffix = LowerCase(Utf8(options.model.extension()));
  for (const TableSuffix& entry : kTableSuffixes) {
    if (suffix == entry.suffix) return entry.format;
  }
  return options.query.empty() ? "" : "sqlite";
}

FrontEndResult ReadTable(const FrontEndOptions& options, const std::string& format) {
  if (!options.data.empty() || options.data_side || options.split_underscores) {
    throw InputError("--data, --data-side and --split-underscores are not for tables");
  }
  if (format == "sqlite" && options.query.empty()) {
    throw InputError(Utf8(options.model) + ": an SQLite file needs --query");
  }
  if (format != "sqlite" && !options.query.empty()) {
    throw InputError("--query is for SQLite files only");
  }
  TableOptions table = options.table;
  if (table.separator == '\0') table.separator = format == "tsv" ? '\t' : ',';
  TableModel read = ReadTableModel(options.model, options.query, table);
  FrontEndResult result;
  result.model = std::move(read.model);
  result.notes.notes = std::move(read.notes);
  result.option_file = std::move(read.option_file);
  return result;
}

void RefuseTableOptions(const FrontEndOptions& options) {
  const TableOptions& table = options.table;
  if (!table.response.empty() || !table.regressors.empty() || !table.drop.empty() ||
      !table.labels.empty() || !table.factors.empty() || !options.query.empty() ||
      table.separator != '\0' || table.intercept != Intercept::kAutomatic) {
    throw InputError(Utf8(options.model) + ": this is a model; the options for tables don't apply");
  }
}

}  // namespace

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const FormatEntry& entry : kFormats) names.emplace_back(entry.name);
  names.insert(names.end(), kTableFormats.begin(), kTableFormats.end());
  return names;
}

FrontEndResult ReadModel(const FrontEndOptions& options, const std::filesystem::path& scratch) {
  if (const std::string table = TableFormat(options); !table.empty()) {
    return ReadTable(options, table);
  }
  const ModelFormat format = ChooseFormat(options);
  RefuseTableOptions(options);
  const bool is_mathprog = format == ModelFormat::kMathProg;
  if (!options.data.empty() && !is_mathprog) throw InputError("--data is for MathProg models only");
  if (options.split_underscores && is_mathprog) {
    throw InputError("--split-underscores is for MPS and LP models only");
  }
  ModelSource source;
  source.model = options.model;
  source.data = options.data;
  source.scratch = scratch;
  source.format = format;
  source.data_side = options.data_side;
  source.split_underscores = options.split_underscores;
  FrontEndResult result;
  result.model = ReadGlpkModel(source, result.notes);
  return result;
}

}  // namespace host
