#include "tavolite/show/show_command.h"

#include <exception>
#include <filesystem>
#include <ostream>
#include <system_error>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/temporary_file.h"
#include "base/text_file.h"
#include "tavolite/command/failure.h"
#include "tavolite/report/report_page.h"
#include "tavolite/show/show_fit.h"
#include "tavolite/show/show_overview.h"
#include "tavolite/show/show_symbol.h"
#include "tavolite/system/interrupt.h"
#include "tavolite/system/terminal.h"
#include "tdx/tdx_reader.h"

namespace host {

namespace {

namespace fs = std::filesystem;

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

std::string PartText(const ShowOptions& options, TdxReader& reader, std::ostream& err) {
  if (options.format != ShowFormat::kTable) {
    for (const std::string& warning : reader.Header().run.warnings) {
      WritePrintable(err, "tavolite: warning: " + warning);
      err << '\n';
    }
  }
  return *options.part == ShowPart::kFit ? FitText(options, reader)
                                         : CoefficientsText(options, reader);
}

void CheckRequest(const ShowOptions& options) {
  const bool is_page = options.format == ShowFormat::kHtml;
  if (is_page && (!options.symbol.empty() || options.part || options.limit >= 0)) {
    throw InputError(
        "a page shows a whole fit: leave symbol, --coefficients, --fit and --limit out");
  }
  if (options.part && !options.symbol.empty()) {
    throw InputError("--coefficients and --fit show more than one symbol: leave the symbol out");
  }
  std::error_code none;
  if (!options.output.empty() && fs::equivalent(options.output, options.file, none)) {
    throw InputError("the output would overwrite " + Utf8(options.file) +
                     ": give another --output");
  }
}

// Under the name there is either what was there before or the whole output, unless it is no regular
// file or stands where no other can be made.
void WriteOutput(const fs::path& target, const std::string& text) {
  std::error_code none;
  const bool exists = fs::exists(target, none);
  if (exists && !fs::is_regular_file(target, none)) return WriteText(target, text);
  const fs::path whole = fs::is_symlink(target, none) ? fs::weakly_canonical(target, none) : target;
  const WithoutInterrupt now;
  fs::path file;
  try {
    file = CreateTemporaryFile(whole);
  } catch (const std::system_error& error) {
    if (exists) return WriteText(target, text);
    throw FileError(Utf8(target) + ": can't be written: " + error.code().message());
  }
  try {
    WriteText(file, text);
    MoveOver(file, whole);
  } catch (const FileError& error) {
    fs::remove(file, none);
    throw FileError(Utf8(target) + std::string(error.what()).substr(Utf8(file).size()));
  } catch (...) {
    fs::remove(file, none);
    throw;
  }
}

}  // namespace

int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err) {
  try {
    // Everything is read before anything is written: a damaged file leaves no half output.
    CheckRequest(options);
    TdxReader reader(options.file);
    const std::string text = options.part             ? PartText(options, reader, err)
                             : options.symbol.empty() ? OverviewText(options, reader)
                                                      : SymbolText(options, reader);
    if (options.output.empty()) {
      out << text << std::flush;
    } else {
      WriteOutput(options.output, text);
    }
    return 0;
  } catch (const std::exception& failure) {
    PrintFailure(failure, err);
    return kBadInput;
  }
}

}  // namespace host
