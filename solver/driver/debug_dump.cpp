#include "driver/debug_dump.h"

#include <string>

#include "text/real_text.h"

namespace linfit {
namespace {

constexpr std::size_t kValuesPerLine = 5;

// One call per value, so that no piece is longer than a library takes, however many there are.
void WriteValue(SolverRun& run, double value, bool ends_line) {
  const std::string field = RealField(value, 15, 7);
  if (ends_line) {
    run.tev.tevStat(run.environment, field);
  } else {
    run.tev.tevStatPChar(run.environment, field);
  }
}

}  // namespace

void WriteDebugDump(SolverRun& run) {
  const std::vector<double>& y = run.data.ResponseVector;
  const auto& a = run.data.DesignMatrix;
  const std::size_t n = y.size();
  run.tev.tevStatCon(run.environment);
  run.tev.tevStat(run.environment, "MATRIX A:");
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = i; k < a.size(); k += n) WriteValue(run, a[k], k + n >= a.size());
  }
  run.tev.tevStat(run.environment, "VECTOR RHS:");
  for (std::size_t i = 0; i < n; ++i) WriteValue(run, y[i], (i + 1) % kValuesPerLine == 0);
  if (n % kValuesPerLine != 0) run.tev.tevStat(run.environment, "");
  run.tev.tevStatCoff(run.environment);
}

}  // namespace linfit
