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
  const Probability cdf = FCdf(run.result.f_statistic, NumeratorDegrees(run.data), run.result.df);
  // No line when no special function was needed.
  if (const std::string line = DiagnosticLine(cdf); !line.empty()) WriteLine(run, line, 0);
  WriteStatAndLog(run, FTestLine(run.data, run.result, 1.0 - cdf.value));
}

}  // namespace linfit
