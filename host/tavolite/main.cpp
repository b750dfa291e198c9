// The command `tavolite`.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "base/text_file.h"
#include "tavolite/command/table_arguments.h"
#include "tavolite/show/show_command.h"
#include "tavolite/solve/solve_command.h"
#include "tavolite/system/program.h"

namespace {

constexpr const char* kVersion = "tavolite 28.2.0";
constexpr int kUsageError = 2;

// Texts of the command line, until all of them are known to be good.
struct SolveArguments {
  std::string model, format, data, data_side, options, work, listing, solver, timing;
  bool split_underscores = false;
  bool keep = false;
  bool quiet = false;
  host::TableArguments table;
};

CLI::App* AddSolve(CLI::App& app, SolveArguments& arguments) {
  CLI::App* solve = app.add_subcommand("solve", "Estimate a regression and return its solution");
  solve->add_option("MODEL", arguments.model, "The model's file")->required();
  solve->add_option("--format", arguments.format, "Format of the model (default: by its suffix)")
      ->check(CLI::IsMember(host::FormatNames()));
  solve->add_option("--data", arguments.data, "Data file of a MathProg model");
  solve
      ->add_option("--data-side", arguments.data_side,
                   "Side of the equality sign on which the data stand (default: left in MathProg "
                   "models, right in MPS and LP models)")
      ->check(CLI::IsMember({"left", "right"}));
  solve->add_flag("--split-underscores", arguments.split_underscores,
                  "In MPS and LP models, take numbers behind underscores as labels: b_1 is b(1)");
  solve->add_option("--options", arguments.options, "The solver's option file");
  solve->add_option("--solver", arguments.solver, "The solver (default: linfit beside tavolite)");
  solve->add_option("--listing", arguments.listing,
                    "Where the listing goes (default: the model's name with .lst, here)");
  solve->add_option("--work", arguments.work, "Directory for the scratch files");
  solve->add_flag("--keep", arguments.keep, "Keep the scratch files and say where they are");
  solve->add_option("--timing", arguments.timing, "Write the seconds of each step to this file");
  solve->add_flag("--quiet", arguments.quiet, "Print warnings and errors only");
  host::AddTableOptions(*solve, arguments.table);
  return solve;
}

host::SolveOptions ToOptions(const SolveArguments& arguments) {
  using host::FromUtf8;
  host::SolveOptions options;
  options.input.model = FromUtf8(arguments.model);
  options.input.format = arguments.format;
  options.input.data = FromUtf8(arguments.data);
  if (!arguments.data_side.empty()) {
    options.input.data_side =
        arguments.data_side == "left" ? host::DataSide::kLeft : host::DataSide::kRight;
  }
  options.input.split_underscores = arguments.split_underscores;
  options.option_file = FromUtf8(arguments.options);
  options.work = FromUtf8(arguments.work);
  options.listing = FromUtf8(arguments.listing);
  options.solver = FromUtf8(arguments.solver);
  options.timing = FromUtf8(arguments.timing);
  options.keep = arguments.keep;
  options.quiet = arguments.quiet;
  SetTableOptions(arguments.table, options.input);
  options.input.table.progress = !arguments.quiet;
  return options;
}

int Run(std::vector<std::string> arguments) {
  CLI::App app("Linear least-squares regression from model files and tables", "tavolite");
  app.allow_windows_style_options(false);  // "/data/a.mod" is a path
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  SolveArguments solve_arguments;
  const CLI::App* solve = AddSolve(app, solve_arguments);
  host::ShowOptions show_options;
  const CLI::App* show = host::AddShowCommand(app, show_options);
  try {
    arguments.erase(arguments.begin());
    std::reverse(arguments.begin(), arguments.end());  // as the parser wants them
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsageError;
  }
  if (show->parsed()) return host::RunShow(show_options, std::cout, std::cerr);
  if (solve->parsed()) return host::RunSolve(ToOptions(solve_arguments), std::cout, std::cerr);
  return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    host::UseUtf8Console();
    return Run(host::Utf8Arguments(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "tavolite: " << error.what() << '\n';
  }
  return kUsageError;
}
