#include "tavolite/solve/solver_options.h"

#include <limits>
#include <optional>
#include <string_view>

#include "base/excerpt.h"
#include "base/input_error.h"
#include "base/text.h"
#include "base/text_file.h"
#include "tavolite/solve/solve_files.h"
#include "tptdclib/option_table.h"

namespace host {
namespace {

constexpr const char* kConstantTerm = "ADD_CONSTANT_TERM";
constexpr const char* kResultsFile = "TDX_FILE_NAME";
constexpr const char* kMaxn = "MAXN";
constexpr const char* kMaxp = "MAXP";
constexpr std::size_t kLongestResultsFile = 255;
constexpr std::int32_t kNoLimit = std::numeric_limits<std::int32_t>::max();

struct Range {
  const char* key;
  std::int32_t least;
  std::int32_t most;
};

constexpr Range kRanges[] = {{kConstantTerm, 0, 2},
                             {"DEBUG_LEVEL", 0, kNoLimit},
                             {kMaxn, 1, kNoLimit},
                             {kMaxp, 1, kNoLimit}};

// The first fault, which the option table may have cut into several messages.
std::string FirstFault(const OptionTable& table) {
  constexpr std::string_view kMark = "*** ";
  std::string fault;
  for (const OptionTable::Message& message : table.Messages()) {
    if (message.kind != OptionTable::MessageKind::kError) continue;
    const bool begins = message.text.starts_with(kMark);
    if (begins && !fault.empty()) break;
    fault += std::string_view(message.text).substr(begins ? kMark.size() : 0);
  }
  return fault;
}

void CheckRanges(OptionTable& table, const std::filesystem::path& file) {
  for (const auto& [key, least, most] : kRanges) {
    const std::size_t line = table.LineOf(key);
    if (line == 0) continue;
    const std::int32_t value = table.Integer(key);
    if (value >= least && value <= most) continue;
    const std::string range = most == kNoLimit
                                  ? std::to_string(least) + " or more"
                                  : std::to_string(least) + " to " + std::to_string(most);
    throw InputError(AtLine(
        file, line, std::string(key) + " is " + std::to_string(value) + ", which is not " + range));
  }
}

// The solver drops blanks at the end of a name, and takes no longer one.
void CheckResultsName(const std::string& name, const std::string& where) {
  const char* fault = name.empty() || StrippedEnd(name).size() < name.size()
                          ? "is empty or ends with a blank"
                      : name.size() > kLongestResultsFile               ? "is longer than 255 bytes"
                      : name.find_first_of("\r\n") != std::string::npos ? "holds a line end"
                                                                        : nullptr;
  if (fault != nullptr) {
    throw InputError(where + ": the name of the results file, \"" + Excerpt(name) + "\", " + fault);
  }
}

std::string InQuotes(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "''" : std::string(1, c);
  return quoted + '\'';
}

std::string ReadText(const std::filesystem::path& file) {
  std::string text;
  for (const std::string& line : ReadLines(file)) text += line + '\n';
  return text;
}

void TakeUserFile(OptionTable& table, const std::filesystem::path& file, SolverOptions& taken) {
  if (!table.ReadParameterFile(file)) throw InputError(FirstFault(table));
  CheckRanges(table, file);
  taken.user_lines = ReadText(file);
  const auto take = [&](const char* key, std::int32_t& value, bool& is_ours) {
    is_ours = table.LineOf(key) == 0;
    if (!is_ours) value = table.Integer(key);
  };
  take(kConstantTerm, taken.constant_term, taken.chooses_constant_term);
  take(kMaxn, taken.maxn, taken.chooses_maxn);
  take(kMaxp, taken.maxp, taken.chooses_maxp);
  if (table.LineOf(kResultsFile) == 0) return;
  taken.results_file = table.Text(kResultsFile);
  CheckResultsName(taken.results_file, AtLine(file, table.LineOf(kResultsFile), kResultsFile));
}

[[noreturn]] void RefuseContradiction(const std::string& option, const OptionTable& table,
                                      const char* key, const std::filesystem::path& file) {
  throw InputError(option + " and " + key + " in line " + std::to_string(table.LineOf(key)) +
                   " of " + Utf8(file) + " contradict each other: leave one of them out");
}

void TakeIntercept(const SolveOptions& options, const OptionTable& table, SolverOptions& taken) {
  if (options.table.intercept == Intercept::kAutomatic) return;
  const bool always = options.table.intercept == Intercept::kAlways;
  const std::int32_t wanted = always ? 1 : 0;
  if (!taken.chooses_constant_term && taken.constant_term != wanted) {
    RefuseContradiction(always ? "--intercept" : "--no-intercept", table, kConstantTerm,
                        options.option_file);
  }
  taken.constant_term = wanted;
}

void TakeResultsFile(const SolveOptions& options, const OptionTable& table, SolverOptions& taken) {
  if (options.results.empty()) return;
  const std::string name = Utf8(options.results);
  CheckResultsName(name, "--results");
  if (table.LineOf(kResultsFile) == 0) {
    taken.added_lines = std::string(kResultsFile) + ' ' + InQuotes(name) + '\n';
  } else if (taken.results_file != name) {
    RefuseContradiction("--results", table, kResultsFile, options.option_file);
  }
  taken.results_file = name;
}

}  // namespace

SolverOptions ReadSolverOptions(const SolveOptions& options, const std::filesystem::path& system) {
  OptionTable table;
  if (!table.ReadDefinition(system / kDefinitionFile)) {
    throw InputError("the definitions of the solver's options can't be read: " + FirstFault(table));
  }
  SolverOptions taken;
  if (!options.option_file.empty()) TakeUserFile(table, options.option_file, taken);
  TakeIntercept(options, table, taken);
  TakeResultsFile(options, table, taken);
  return taken;
}

void FitToModel(std::size_t observations, std::size_t coefficients, bool is_table,
                SolverOptions& options) {
  std::string lines;
  const auto add = [&](const char* key, std::int32_t value) {
    lines += std::string(key) + ' ' + std::to_string(value) + '\n';
  };
  const auto raise = [&](const char* key, std::size_t needed, std::int32_t& limit) {
    if (!is_table && needed <= static_cast<std::size_t>(limit)) return;
    limit = static_cast<std::int32_t>(needed);
    add(key, limit);
  };
  if (is_table && options.chooses_constant_term) add(kConstantTerm, options.constant_term);
  // The solver wants room for an intercept, also where it will not add one.
  const std::size_t columns = coefficients + (options.constant_term > 0 ? 1 : 0);
  if (options.chooses_maxn) raise(kMaxn, observations, options.maxn);
  if (options.chooses_maxp) raise(kMaxp, columns, options.maxp);
  lines += options.added_lines;
  if (lines.empty()) return;
  options.added_lines = (options.user_lines.empty() ? "* Written" : "* Added") +
                        std::string(" by tavolite to fit the ") + (is_table ? "table" : "model") +
                        '\n' + lines;
}

Intercept InterceptOf(const SolverOptions& options) {
  constexpr Intercept kOf[] = {Intercept::kNever, Intercept::kAlways, Intercept::kAutomatic};
  return kOf[options.constant_term];
}

}  // namespace host
