#include "tests/doubles/scripted_run.h"

namespace doubles {

using testing_support::RunOptions;
using testing_support::TemporaryDirectory;

std::filesystem::path DoublesDirectory() {
  return testing_support::FromUtf8(LINFIT_DOUBLES_DIRECTORY);
}

ScriptedRun RunScripted(const std::filesystem::path& program, const std::string& script,
                        const std::vector<std::string>& arguments) {
  const TemporaryDirectory directory("scripted run");
  testing_support::WriteFile(directory / "script", script);
  testing_support::WriteFile(directory / "trace", "");
  RunOptions options;
  options.directory = directory.Path();
  options.environment["LINFIT_TEST_SCRIPT"] = testing_support::Utf8(directory / "script");
  options.environment["LINFIT_TEST_TRACE"] = testing_support::Utf8(directory / "trace");
  ScriptedRun run;
  run.program = testing_support::RunProgram(program, arguments, options);
  run.trace = testing_support::Lines(testing_support::ReadFile(directory / "trace"));
  return run;
}

ScriptedRun RunSolver(const std::string& script, const std::vector<std::string>& arguments) {
  return RunScripted(DoublesDirectory() / testing_support::FromUtf8(LINFIT_SCRIPTED_SOLVER), script,
                     arguments);
}

std::vector<std::string> TextsOf(const ScriptedRun& run, const std::string& function) {
  std::vector<std::string> texts;
  const std::string start = function + " \"";
  for (const std::string& line : run.trace) {
    if (line.rfind(start, 0) != 0) continue;
    std::string text;
    for (std::size_t i = start.size(); i + 1 < line.size(); ++i) {
      if (line[i] == '\\' && line[i + 1] != 'x') ++i;
      text += line[i];
    }
    texts.push_back(text);
  }
  return texts;
}

}  // namespace doubles
