#include "tests/faults/judge.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace faults {
namespace {

namespace fs = std::filesystem;

int AppendRow(void* text, int count, char** values, char**) {
  for (int k = 0; k < count; ++k)
    *static_cast<std::string*>(text) += std::string(values[k] ? values[k] : "-") + "|";
  *static_cast<std::string*>(text) += '\n';
  return 0;
}

std::set<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::set<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.insert(line);
  return lines;
}

}  // namespace

std::string ReadText(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string ResultsText(const fs::path& file) {
  if (!fs::exists(file)) return "";
  sqlite3* database = nullptr;
  std::string text;
  const auto query = [&](const std::string& sql) {
    return sqlite3_exec(database, sql.c_str(), AppendRow, &text, nullptr) == SQLITE_OK;
  };
  bool good =
      sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
      query("pragma integrity_check; select name, dimension from tdx_symbol order by 1");
  constexpr std::array kSymbols{"estimate", "se",    "tval", "pval", "fitted", "resid",  "covar",
                                "rss",      "sigma", "r2",   "df",   "resvar", "confint"};
  for (const char* symbol : kSymbols)
    good = good && query("select * from \"" + std::string(symbol) + "\"");
  if (!good) text = "damaged: " + std::string(sqlite3_errmsg(database));
  sqlite3_close(database);
  return text;
}

bool IsPartOf(const std::string& text, const std::string& whole, const std::string& err) {
  if (err.find("tavolite: warning: ") == std::string::npos) return text == whole;
  const std::set<std::string> lines = Lines(whole);
  return std::ranges::all_of(Lines(text), [&](const std::string& line) {
    return line.empty() || line.starts_with("Warning: ") || lines.contains(line);
  });
}

std::string Verdict::Leftover() const {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
    std::string name = fs::relative(entry.path(), directory).string();
    if (name.starts_with("temporary/") || name.find(".tmp") != std::string::npos ||
        name.find(".tdx-") != std::string::npos) {
      return name;
    }
  }
  return "";
}

std::string Verdict::Fault() const {
  if (outcome.timed_out) return "did not end";
  if (outcome.status >= 128 && outcome.status != 130 && !killed)
    return "ended by signal " + std::to_string(outcome.status - 128);
  const std::string results = ResultsText(directory / "linfit.tdx");
  if (results != expected.results && results != expected.before) {
    return "the results file is neither the old nor the new one: " + results.substr(0, 80);
  }
  if (!may_leave_files) {
    if (const std::string name = Leftover(); !name.empty()) return "left behind: " + name;
  }
  if (outcome.status == 0) {
    if (!IsPartOf(out, expected.out, err)) return "status 0, but the output differs";
    if (results != expected.results) return "status 0, but the results file is the old one";
    if (!IsPartOf(ReadText(directory / "out.lst"), expected.listing, err))
      return "status 0, but the listing differs";
  } else if (outcome.status < 128 && err.empty()) {
    return "status " + std::to_string(outcome.status) + " without a message";
  }
  return "";
}

}  // namespace faults
