#include "tests/chain/solve.h"

#include "base/database.h"

namespace chain {

using testing_support::FromUtf8;
using testing_support::Lines;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::WriteFile;

std::filesystem::path Binary(const std::string& name) {
  return FromUtf8(std::string(LINFIT_BINARY_DIR) + "/" + name + LINFIT_PROGRAM_SUFFIX);
}

std::string Solve::Report(const std::string& listing) const {
  std::string report;
  bool inside = false;
  for (const std::string& line : Lines(ReadFile(directory / listing))) {
    inside = inside || line.starts_with("        Parameter");
    if (inside) {
      report += line + "\n";
    }
    if (line.starts_with("F statistic:")) {
      break;
    }
  }
  return report;
}

Values Solve::Symbol(const std::string& name) const {
  host::Database file(directory / "linfit.tdx", host::Database::Mode::kRead);
  host::Statement dimension(file, "select dimension from tdx_symbol where name = ?");
  dimension.Bind(1, name);
  if (!dimension.Step()) {
    return {};
  }
  const int keys = static_cast<int>(dimension.Int(0));
  host::Statement records(file, "select * from \"" + name + "\"");
  Values values;
  while (records.Step()) {
    std::string key;
    for (int k = 0; k < keys; ++k) {
      key += (k == 0 ? "" : "|") + std::string(records.Text(k));
    }
    values[key] = records.Real(keys);
  }
  return values;
}

void SolveModel(const DataSet& set, Solve& solve) {
  std::filesystem::copy_file(DataFile(set), solve.directory / (set.name + ".csv"));
  WriteFile(solve.directory / (set.name + ".mod"), MathProgModel(set));
  WriteFile(solve.directory / "linfit.opt", SolverOptions(set));
  solve.result =
      RunProgram(Binary("tavolite"), {"solve", set.name + ".mod", "--options", "linfit.opt"},
                 {.directory = solve.directory.Path(), .environment = {}});
}

void SolveTable(const DataSet& set, Solve& solve) {
  const std::string table = set.name + ".csv";
  if (set.degree > 0) {
    WriteFile(solve.directory / table, TableWithPowers(set));
  } else {
    std::filesystem::copy_file(DataFile(set), solve.directory / table);
  }
  std::vector<std::string> arguments{"solve", table, "--response", set.response};
  std::string labels;
  for (const std::string& label : set.labels) {
    labels += (labels.empty() ? "" : ",") + label;
  }
  if (!labels.empty()) {
    arguments.insert(arguments.end(), {"--label", labels});
  }
  if (!set.intercept) {
    arguments.emplace_back("--no-intercept");
  }
  solve.result = RunProgram(Binary("tavolite"), arguments,
                            {.directory = solve.directory.Path(), .environment = {}});
}

}  // namespace chain
