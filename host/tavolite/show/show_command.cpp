#include "tavolite/show/show_command.h"

#include <exception>
#include <ostream>

#include "base/text_file.h"
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
  const Overview overview = ReadOverview(reader, options.limit);
  if (options.format == "csv") {
    PrintOverviewCsv(reader, text);
  } else if (options.format == "json") {
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
  if (options.format == "csv") {
    PrintSymbolCsv(records, text);
  } else if (options.format == "json") {
    PrintSymbolJson(symbol, records, text);
  } else {
    const bool whole = static_cast<std::int64_t>(records.values.size()) == symbol.records;
    PrintSymbolTable(symbol, records, whole, WidthFor(options), text);
  }
  return text;
}

}  // namespace

CLI::App* AddShowCommand(CLI::App& app, ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Print a results file");
  show->add_option("FILE", options.file, "The results file")->required();
  show->add_option("SYMBOL", options.symbol, "Print this symbol (default: an overview)");
  show->add_option("--format", options.format, "Format of the output (default: table)")
      ->check(CLI::IsMember({"table", "csv", "json"}));
  show->add_option("--limit", options.limit, "Print the first N records only")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  show->add_option("--output", options.output, "Write to this file")->type_name("FILE");
  return show;
}

int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err) {
  try {
    // Everything is read before anything is written: a damaged file leaves no half output.
    TdxReader reader(FromUtf8(options.file));
    const std::string text =
        options.symbol.empty() ? OverviewText(options, reader) : SymbolText(options, reader);
    if (options.output.empty()) {
      out << text << std::flush;
    } else {
      WriteText(FromUtf8(options.output), text);
    }
    return 0;
  } catch (const std::exception& error) {
    err << "tavolite: " << error.what() << '\n';
    return kBadInput;
  }
}

}  // namespace host
