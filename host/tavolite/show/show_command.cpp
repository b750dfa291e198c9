#include "tavolite/show/show_command.h"

#include <exception>
#include <ostream>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/failure.h"
#include "tavolite/report/report_page.h"
#include "tavolite/show/show_overview.h"
#include "tavolite/show/show_symbol.h"
#include "tavolite/system/terminal.h"
#include "tdx/tdx_reader.h"

namespace host {

namespace {

constexpr int kBadInput = 2;
constexpr std::size_t kUsualWidth = 80;

std::size_t WidthFor(const ShowOptions& options) {
  if (options.width > 0) return options.width;
  const std::size_t width = options.output.empty() ? TerminalWidth() : 0;
  return width > 0 ? width : kUsualWidth;
}

std::string OverviewText(const ShowOptions& options, TdxReader& reader) {
  std::string text;
  if (options.format == ShowFormat::kHtml) return ReportPage(reader);
  const Overview overview = ReadOverview(reader, options.limit);
  if (options.format == ShowFormat::kCsv) {
    PrintOverviewCsv(reader, options.csv_cells, text);
  } else if (options.format == ShowFormat::kJson) {
    PrintOverviewJson(reader, overview, text);
  } else {
    PrintOverviewTable(reader, overview, WidthFor(options), text);
  }
  return text;
}

std::string SymbolText(const ShowOptions& options, TdxReader& reader) {
  std::string text;
  const TdxSymbolInfo& symbol = reader.Get(options.symbol);
  const TdxRecords records = reader.Read(symbol, options.limit);
  if (options.format == ShowFormat::kCsv) {
    PrintSymbolCsv(records, options.csv_cells, text);
  } else if (options.format == ShowFormat::kJson) {
    PrintSymbolJson(symbol, records, text);
  } else {
    const bool whole = static_cast<std::int64_t>(records.values.size()) == symbol.records;
    PrintSymbolTable(symbol, records, whole, WidthFor(options), text);
  }
  return text;
}

}  // namespace

int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err) {
  try {
    // Everything is read before anything is written: a damaged file leaves no half output.
    if (options.format == ShowFormat::kHtml && (!options.symbol.empty() || options.limit >= 0)) {
      throw InputError("a page shows a whole fit: leave the symbol and --limit out");
    }
    TdxReader reader(options.file);
    const std::string text =
        options.symbol.empty() ? OverviewText(options, reader) : SymbolText(options, reader);
    if (options.output.empty()) {
      out << text << std::flush;
    } else {
      WriteText(options.output, text);
    }
    return 0;
  } catch (const std::exception& failure) {
    PrintFailure(failure, err);
    return kBadInput;
  }
}

}  // namespace host
