#include "driver/output.h"

#include <cstdio>
#include <cstdlib>

namespace linfit {

void WriteLine(SolverRun& run, std::string_view text, int level) {
  if (level < 1) {
    run.tev.tevStat(run.environment, text);
    return;
  }
  run.tev.tevStatC(run.environment, text);
  if (level >= 2) run.tev.tevLog(run.environment, text);
}

void WriteStatAndLog(SolverRun& run, std::string_view text) {
  WriteLine(run, text, 2);
}

void FatalStop(SolverRun& run, std::string_view text) {
  WriteStatAndLog(run, text);
  FreeAndStop(run);
}

void FreeAndStop(SolverRun& run) {
  if (run.model != nullptr) run.tmo.tmoXFree(run.model);
  if (run.environment != nullptr) run.tev.tevXFree(run.environment);
  Stop();
}

void Stop() {
  std::fflush(stdout);
  std::exit(EXIT_SUCCESS);
}

}  // namespace linfit
