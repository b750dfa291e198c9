#include "tavolite/command/command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <limits>
#include <system_error>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"
#include "tavolite/command/solve_check.h"
#include "tavolite/command/usage_error.h"
#include "tavolite/command/version.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// Words are UTF-8 on every system, which CLI11 would not make a path of.
CLI::Option* AddPath(CLI::App& app, const char* name, fs::path& path, const char* help) {
  return app.add_option_function<std::string>(
      name,
      [&path, name](const std::string& text) {
        if (text.empty()) throw InputError(std::string(name) + ": the name is empty");
        path = FromUtf8(text);
      },
      help);
}

// An option that takes one of some words, each of which stands for a value.
template <class Value, class Target>
void AddChoice(CLI::App& app, const char* name, Target& target,
               const std::vector<std::pair<std::string, Value>>& choices, const char* help) {
  std::vector<std::string> words;
  for (const auto& [word, value] : choices) words.push_back(word);
  app.add_option_function<std::string>(
         name,
         [&target, choices](const std::string& text) {
           for (const auto& [word, value] : choices) {
             if (word == text) target = value;
           }
         },
         help)
      ->check(CLI::IsMember(words));
}

std::int64_t ParseCount(const char* option, const std::string& text) {
  std::int64_t count = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (code == std::errc::result_out_of_range) {
    throw InputError(std::string(option) + ": " + Excerpt(text) + " is beyond " +
                     std::to_string(std::numeric_limits<std::int64_t>::max()));
  }
  if (code != std::errc() || end != text.data() + text.size() || count < 0) {
    throw InputError(std::string(option) + ": \"" + Excerpt(text) +
                     "\" is not a whole number from 0 up");
  }
  return count;
}

double ParseLevel(const std::string& text) {
  double level = 0.0;
  std::string_view digits(text);
  if (digits.ends_with('%')) digits.remove_suffix(1);
  const char* const end = digits.data() + digits.size();
  const auto [rest, code] = std::from_chars(digits.data(), end, level);
  if (code != std::errc() || rest != end || !(level >= 1.0 && level < 100.0)) {
    throw InputError("--level: \"" + Excerpt(text) +
                     "\" is not a level in percent, like 95, from 1 to below 100");
  }
  return level;
}

char ParseSeparator(const std::string& text) {
  if (text == "tab" || text == "\\t" || text == "\t") return '\t';
  constexpr std::string_view kAllowed = ",;|:!#$%&*/<=>?@\\^_`{}~'()[]";
  if (text.size() != 1 || kAllowed.find(text[0]) == std::string_view::npos) {
    throw InputError("--separator: \"" + Excerpt(text) +
                     "\" is not a separator; one like , ; | or the word tab is");
  }
  return text[0];
}

void AddTableOptions(CLI::App& solve, TableOptions& table) {
  const auto add_list = [&](const char* name, std::vector<std::string>& list, const char* help) {
    solve.add_option(name, list, help)
        ->allow_extra_args(false)
        ->type_name("COLUMN,...")
        ->group("Tables");
  };
  solve.add_option("--response", table.response, "The dependent column")
      ->type_name("COLUMN")
      ->group("Tables");
  add_list("--regressors", table.regressors,
           "The independent columns (default: all that are nothing else)");
  add_list("--drop", table.drop, "Columns to leave out");
  add_list("--label", table.labels, "Columns that name the rows (default: the row's number)");
  add_list("--factor", table.factors,
           "Columns of levels: one coefficient for each level but the first");
  CLI::Option* always = solve
                            .add_flag_callback(
                                "--intercept", [&table] { table.intercept = Intercept::kAlways; },
                                "Add an intercept in any case")
                            ->group("Tables");
  solve
      .add_flag_callback(
          "--no-intercept", [&table] { table.intercept = Intercept::kNever; }, "Add none")
      ->group("Tables")
      ->excludes(always);
  solve
      .add_option_function<std::string>(
          "--separator",
          [&table](const std::string& text) { table.separator = ParseSeparator(text); },
          "What separates fields: one character, or tab (default: by the suffix)")
      ->group("Tables");
  solve.add_option("--query", table.query, "The query that gives the table, for SQLite files")
      ->type_name("SQL")
      ->group("Tables");
}

CLI::App* AddSolve(CLI::App& app, SolveOptions& options, std::optional<InputFormat>& format) {
  CLI::App* solve = app.add_subcommand("solve", "Estimate a regression and return its solution");
  AddPath(*solve, "MODEL", options.input, "The file of the model or table; - is standard input")
      ->required();
  AddChoice(*solve, "--format", format, InputFormats(),
            "Format of the model (default: by its suffix)");
  AddPath(*solve, "--data", options.data, "Data file of a MathProg model");
  AddChoice<std::optional<DataSide>>(
      *solve, "--data-side", options.data_side,
      {{"auto", std::nullopt}, {"left", DataSide::kLeft}, {"right", DataSide::kRight}},
      "Side of the equality sign on which the data stand (default: auto, read off MathProg "
      "models, right in MPS and LP models)");
  solve->add_flag("--split-underscores", options.split_underscores,
                  "In MPS and LP models, take numbers behind underscores as labels: b_1 is b(1)");
  AddPath(*solve, "--options", options.option_file, "The solver's option file");
  AddPath(*solve, "--solver", options.solver, "The solver (default: linfit beside tavolite)");
  AddPath(*solve, "--results", options.results,
          "Where the results file goes (default: linfit.tdx, here)");
  AddPath(*solve, "--listing", options.listing,
          "Where the listing goes (default: the model's name with .lst, here)");
  AddPath(*solve, "--report", options.report,
          "Write a page with tables and figures of the fit to this file (HTML)");
  AddPath(*solve, "--work", options.work, "Directory for the scratch files");
  solve->add_flag("--keep", options.keep, "Keep the scratch files and say where they are");
  AddPath(*solve, "--timing", options.timing, "Write the seconds of each step to this file");
  solve->add_flag("--quiet", options.quiet, "Print warnings and errors only");
  AddTableOptions(*solve, options.table);
  return solve;
}

CLI::App* AddShow(CLI::App& app, ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Print a results file");
  AddPath(*show, "FILE", options.file, "The results file")->required();
  show->add_option_function<std::string>(
      "SYMBOL",
      [&options](const std::string& text) {
        if (text.empty()) throw InputError("the symbol's name is empty");
        options.symbol = text;
      },
      "Print this symbol (default: an overview)");
  CLI::Option* coefficients = show->add_flag_callback(
      "--coefficients", [&options] { options.part = ShowPart::kCoefficients; },
      "Print a regression's coefficients: a row each, with confidence limits");
  show->add_flag_callback(
          "--fit", [&options] { options.part = ShowPart::kFit; },
          "Print a regression's statistics: R-squared, F and the like")
      ->excludes(coefficients);
  show->add_option_function<std::string>(
          "--level", [&options](const std::string& text) { options.level = ParseLevel(text); },
          "Level of the coefficients' limits in percent (default: 95)")
      ->type_name("PERCENT")
      ->needs(coefficients);
  AddChoice<ShowFormat>(*show, "--format", options.format,
                        {{"table", ShowFormat::kTable},
                         {"csv", ShowFormat::kCsv},
                         {"json", ShowFormat::kJson},
                         {"html", ShowFormat::kHtml}},
                        "Format of the output (default: table)");
  show->add_flag_callback(
      "--raw-cells", [&options] { options.csv_cells = CsvCells::kRaw; },
      "In CSV, write texts that spreadsheets would run as formulas as they are");
  show->add_option_function<std::string>(
          "--limit",
          [&options](const std::string& text) { options.limit = ParseCount("--limit", text); },
          "Print the first N records only")
      ->type_name("N");
  AddPath(*show, "--output", options.output, "Write to this file")->type_name("FILE");
  return show;
}

}  // namespace

std::variant<int, SolveOptions, ShowOptions> ParseCommandLine(const std::vector<std::string>& words,
                                                              std::ostream& out,
                                                              std::ostream& err) {
  CLI::App app("Linear least-squares regression from model files and tables", "tavolite");
  app.allow_windows_style_options(false);  // "/data/a.mod" is a path
  app.set_version_flag("--version", kCommandVersion);
  app.require_subcommand(1);
  SolveOptions solve_options;
  std::optional<InputFormat> format;
  AddSolve(app, solve_options, format);
  ShowOptions show_options;
  const CLI::App* show = AddShow(app, show_options);
  try {
    // From the last to the first, as the parser wants them.
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::Success& help) {
    return app.exit(help, out, err);
  } catch (const CLI::ParseError& error) {
    err << "tavolite: " << UsageError(app, error, words) << '\n';
    return kUsageError;
  }
  if (show->parsed()) return show_options;
  solve_options.format = CheckSolve(solve_options, format);
  return solve_options;
}

}  // namespace host
