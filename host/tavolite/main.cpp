// The command `tavolite`.

#include <iostream>

#include "tavolite/command/command_line.h"
#include "tavolite/show/show_command.h"
#include "tavolite/solve/solve_command.h"
#include "tavolite/system/interrupt.h"
#include "tavolite/system/program.h"

namespace {

int Run(std::vector<std::string> words) {
  words.erase(words.begin());
  const auto asked = host::ParseCommandLine(std::move(words), std::cout, std::cerr);
  if (const auto* show = std::get_if<host::ShowOptions>(&asked)) {
    return host::RunShow(*show, std::cout, std::cerr);
  }
  if (const auto* solve = std::get_if<host::SolveOptions>(&asked)) {
    return host::RunSolve(*solve, std::cout, std::cerr);
  }
  return std::get<int>(asked);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    host::EndOnInterrupt();
    host::UseUtf8Console();
    return Run(host::Utf8Arguments(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "tavolite: " << error.what() << '\n';
  }
  return host::kUsageError;
}
