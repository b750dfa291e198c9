// The solver: one process, one model, one pass.
#include <cstdio>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "driver/arguments.h"
#include "driver/estimation_steps.h"
#include "driver/model_check.h"
#include "driver/options.h"
#include "driver/output.h"
#include "driver/solution_return.h"
#include "driver/solver_run.h"
#include "driver/start_up.h"
#include "driver/write_results_file.h"

namespace linfit {
namespace {

// Each step reads what earlier ones wrote into `run`. None returns after a failure.
void Run(SolverRun& run, std::string_view argument) {
  SetControlFilePath(run, argument);
  CreateAudit(run);
  AnswerAuditQuery(run);
  CreateEnvironment(run);
  InitializeEnvironment(run);
  CreateModel(run);
  RegisterEnvironment(run);
  LoadModel(run);
  SetModelConventions(run);
  WriteAuditLine(run);
  WriteBanner(run);
  WriteHelpText(run);
  ReadDimensions(run);
  SetInfinitySentinels(run);
  ReadOptionFileFlag(run);
  ReadObjective(run);
  TakeDictionary(run);

  ReadOptions(run);
  CheckAndExtract(run);
  Estimate(run);
  PrintReport(run);
  WriteResultsFile(run);
  ReturnSolution(run);
}

// Wherever memory runs out, the run ends with one text; before there is a model to free it goes to
// standard output, like every other text of that time. Nothing here needs memory.
[[noreturn]] void StopWithoutMemory(std::optional<SolverRun>& run) {
  constexpr std::string_view kText = "Could not allocate memory";
  if (run && run->model != nullptr) FatalStop(*run, kText);
  std::printf("*** %s\n", kText.data());
  Stop();
}

}  // namespace
}  // namespace linfit

int main(int argc, char** argv) {
  std::optional<linfit::SolverRun> run;
  bool enough_memory = true;
  try {
    run.emplace();
    linfit::Run(*run, linfit::FirstArgument(argc, argv));
  } catch (const std::bad_alloc&) {
    enough_memory = false;
  } catch (const std::length_error&) {
    enough_memory = false;
  }
  // Outside the handlers, so that the exceptions are gone when the process ends.
  if (!enough_memory) linfit::StopWithoutMemory(run);
  linfit::Stop();
}
