#include "driver/estimation_steps.h"

#include <string>

#include "driver/output.h"
#include "estimation/least_squares.h"
#include "estimation/report.h"
#include "estimation/statistics.h"
#include "numerics/distributions.h"

namespace linfit {

void Estimate(SolverRun& run) {
  const LineSink to_status_file = [&run](std::string_view line) { WriteLine(run, line, 0); };
  Failure failure = SolveLeastSquares(run.data, run.result, to_status_file);
  if (!failure) failure = ComputeStatistics(run.data, run.result, to_status_file);
  if (failure) FatalStop(run, *failure);
}

void PrintReport(SolverRun& run) {
  for (const std::string& line : ReportLines(run.data, run.result)) WriteStatAndLog(run, line);
  // No line when no special function was needed.
  const std::string line = DiagnosticLine(run.result.f_cdf);
  if (!line.empty()) WriteLine(run, line, 0);
  WriteStatAndLog(run, FTestLine(run.data, run.result));
}

}  // namespace linfit
