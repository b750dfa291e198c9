// The confidence levels of the intervals and the quantile that belongs to each.
#pragma once

#include <array>

#include "numerics/error_monitor.h"

namespace linfit {

struct ConfidenceLevel {
  double level;
  const char* label;
};

inline constexpr std::array<ConfidenceLevel, 4> kConfidenceLevels{{
    {0.90, "90%"},
    {0.95, "95%"},
    {0.975, "97.5%"},
    {0.99, "99%"},
}};

// The lower-tail t quantile of a two-sided interval, STUDIN((1 - level) * 0.5, df, ...):
// negative, so that the ends of the interval are estimate + se * t and estimate - se * t.
double ConfidenceQuantile(double level, int df, int& ifault, ErrorMonitor& monitor);

}  // namespace linfit
