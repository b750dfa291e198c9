// The command `tavolite`.

#include <iostream>
#include <system_error>

#include "tavolite/command/command_line.h"
#include "tavolite/command/failure.h"
#include "tavolite/show/show_command.h"
#include "tavolite/solve/solve_command.h"
#include "tavolite/system/interrupt.h"
#include "tavolite/system/program.h"
#include "tavolite/system/standard_output.h"

namespace {

constexpr int kOutputFailed = 4;

int Run(std::vector<std::string> words) {
  if (!words.empty()) words.erase(words.begin());
  host::StandardOutput output;
  std::ostream out(&output);
  const auto asked = host::ParseCommandLine(words, out, std::cerr);
  const auto* solve = std::get_if<host::SolveOptions>(&asked);
  const auto* show = std::get_if<host::ShowOptions>(&asked);
  const int status = solve != nullptr  ? host::RunSolve(*solve, out, std::cerr)
                     : show != nullptr ? host::RunShow(*show, out, std::cerr)
                                       : std::get<int>(asked);
  const int reason = output.End();
  if (reason == 0) return status;
  std::cerr << "tavolite: standard output can't be written: "
            << std::generic_category().message(reason);
  if (solve != nullptr && status == 0) std::cerr << "; listing and results file are whole";
  std::cerr << '\n';
  return status == 0 ? kOutputFailed : status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    host::EndOnInterrupt();
    host::UseUtf8Streams();
    return Run(host::Utf8Arguments(argc, argv));
  } catch (const std::exception& failure) {
    host::PrintFailure(failure, std::cerr);
  }
  return host::kUsageError;
}
