// Stands in for the solver in tests of the command. The environment variable FAKE_SOLVER tells what
// it does: "solve" (also when unset) returns a solution, "refuse" ends without one, "crash" aborts,
// "options" solves without its options.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>

#include "base/control_file.h"
#include "instance/instance.h"
#include "instance/instance_reader.h"

namespace {

host::SolutionPart Part(std::size_t count, double first) {
  host::SolutionPart part;
  for (std::size_t i = 0; i < count; ++i) {
    part.level.push_back(first + static_cast<double>(i) / 8);
    part.marginal.push_back(i == 0 ? std::numeric_limits<double>::quiet_NaN() : 0.1);
  }
  part.basis.resize(count);
  part.status.resize(count);
  return part;
}

void Solve(const host::ControlFile& control) {
  host::Solution solution;
  {
    const host::InstanceReader instance(control.instance);
    solution.rows = Part(static_cast<std::size_t>(instance.Data().row_count), -1.0);
    solution.columns = Part(instance.Data().columns.size(), 100.0);
  }
  solution.model_status = 1;
  solution.solve_status = 1;
  solution.head_and_tail[5] = 0.1;
  host::WriteSolution(solution, control.instance);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 3;
  const char* mode_variable = std::getenv("FAKE_SOLVER");
  const std::string mode = mode_variable == nullptr ? "solve" : mode_variable;
  const host::ControlFile control = host::ReadControlFile(host::FromUtf8(argv[1]));
  std::ofstream(control.status_file, std::ios::binary) << "status of the fake solver\n";
  std::cout << "log of the fake solver\n" << std::flush;
  if (mode == "crash") std::abort();
  if (mode == "refuse") {
    std::cout << "this model is refused\n\n";
    return 0;
  }
  if (mode == "options") std::cout << "Could not load option library.\n";
  std::cout << "TDX file: some results.tdx\n";
  Solve(control);
}
