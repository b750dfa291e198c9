#include "numerics/confidence.h"

#include "numerics/studin.h"

namespace linfit {

double ConfidenceQuantile(double level, int df, int& ifault, ErrorMonitor& monitor) {
  return STUDIN((1.0 - level) * 0.5, df, ifault, monitor);
}

}  // namespace linfit
