// Makes what the solver alone needs for one solve of a random regression: the instance (N
// observations, P coefficients with the intercept that the solver adds), a control file and an
// option file.
//
// usage: make_instance N P DIRECTORY SYSTEM_DIRECTORY
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "base/control_file.h"
#include "instance/instance.h"

namespace {

void AddName(host::ElementNames& names, std::int32_t symbol, std::int32_t label) {
  names.symbol.push_back(symbol);
  if (label >= 0) {
    names.label.push_back(label);
  }
  names.first.push_back(static_cast<std::int32_t>(names.label.size()));
}

// Columns: rss in the objective row 0, then the regressors, dense in rows 1 to n.
void AddColumns(host::Model& model, std::int32_t n, std::int32_t regressors) {
  model.columns.push_back({std::make_shared<const std::vector<std::int32_t>>(1, 0), {1.0}});
  auto all_rows = std::make_shared<std::vector<std::int32_t>>(n);
  std::iota(all_rows->begin(), all_rows->end(), 1);
  std::uint64_t state = 88172645463325252U;
  const auto random = [&state] {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<double>(state >> 11) * 0x1p-53 - 0.5;
  };
  for (std::int32_t j = 0; j < regressors; ++j) {
    std::vector<double> values(static_cast<std::size_t>(n));
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = random();
      model.rhs[i + 1] += values[i] + random();
    }
    model.columns.push_back({all_rows, std::move(values)});
  }
}

host::Model MakeModel(std::int32_t n, std::int32_t p) {
  host::Model model;
  model.name = "bench";
  model.row_types.assign(static_cast<std::size_t>(n) + 1, host::RowType::kEqual);
  model.row_types[0] = host::RowType::kFree;
  model.rhs.assign(static_cast<std::size_t>(n) + 1, 0.0);
  model.dictionary.symbols = {"objective", "fit", "rss", "coeff"};
  AddColumns(model, n, p - 1);
  for (std::int32_t label = 0; label < std::max(n, p - 1); ++label) {
    model.dictionary.labels.push_back(std::to_string(label + 1));
  }
  AddName(model.row_names, 0, -1);
  for (std::int32_t i = 0; i < n; ++i) {
    AddName(model.row_names, 1, i);
  }
  AddName(model.column_names, 2, -1);
  for (std::int32_t j = 0; j < p - 1; ++j) {
    AddName(model.column_names, 3, j);
  }
  return model;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5 || std::atoi(argv[1]) < 1 || std::atoi(argv[2]) < 2) {
    std::fprintf(stderr, "usage: make_instance N P DIRECTORY SYSTEM_DIRECTORY\n");
    return 2;
  }
  const int n = std::atoi(argv[1]);
  const int p = std::atoi(argv[2]);
  const std::filesystem::path directory = argv[3];
  try {
    host::WriteInstance(MakeModel(n, p), directory / "model.db");
    std::ofstream(directory / "linfit.opt") << "MAXN " << n << "\nMAXP " << p << "\n";
    host::ControlFile control;
    control.instance = directory / "model.db";
    control.status_file = directory / "status.txt";
    control.log = directory / "log.txt";
    control.system_directory = argv[4];
    control.option_file = directory / "linfit.opt";
    control.timing = directory / "timing.txt";
    host::WriteControlFile(control, directory / "control.txt");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_instance: %s\n", error.what());
    return 1;
  }
  return 0;
}
