#include "numerics/studin.h"

#include <cmath>
#include <cstdlib>

#include "numerics/gausin.h"

namespace linfit {

namespace {

// Constants of single precision, used in double: that fixes the last digits. The assertions pin the
// widened values.
constexpr double kHalfPi = 1.5707963268f;
constexpr double kC0 = 96.36f;
constexpr double kSmallY0 = 0.822f;
constexpr double kSmallY1 = 0.089f;
constexpr double kTwentieth = 0.05f;  // of the choice of branch and of the large-y branch
constexpr double kLargeC0 = 0.3f;
constexpr double kLargeC1 = 0.6f;
constexpr double kLargeY2 = 0.4f;
constexpr double kLargeY1 = 6.3f;
constexpr double kQuadraticUpTo = 0.002f;
static_assert(kHalfPi == 1.5707963705062866);
static_assert(kC0 == 96.36000061035156);
static_assert(kSmallY0 == 0.8220000267028809);
static_assert(kSmallY1 == 0.08900000154972076);
static_assert(kTwentieth == 0.05000000074505806);
static_assert(kLargeC0 == 0.30000001192092896);
static_assert(kLargeC1 == 0.6000000238418579);
static_assert(kLargeY2 == 0.4000000059604645);
static_assert(kLargeY1 == 6.300000190734863);
static_assert(kQuadraticUpTo == 0.0020000000949949026);

// The absolute quantile for n >= 3 degrees of freedom, two_tailed = P(|T| > t).
double HillQuantile(double two_tailed, double n, ErrorMonitor& monitor) {
  const double a = 1.0 / (n - 0.5);
  const double b = 48.0 / (a * a);
  double c = ((20700.0 * a / b - 98.0) * a - 16.0) * a + kC0;
  const double d = ((94.5 / (b + c) - 3.0) / b + 1.0) * std::sqrt(a * kHalfPi) * n;
  double y = std::pow(d * two_tailed, 2.0 / n);
  if (y > kTwentieth + a) {
    const double x = GAUSIN(0.5 * two_tailed, monitor);  // the lower quantile: not positive
    y = x * x;
    if (n < 5.0) {
      c = c + kLargeC0 * (n - 4.5) * (x + kLargeC1);
    }
    c = (((kTwentieth * d * x - 5.0) * x - 7.0) * x - 2.0) * x + b + c;
    y = (((((kLargeY2 * y + kLargeY1) * y + 36.0) * y + 94.5) / c - y - 3.0) / b + 1.0) * x;
    y = a * (y * y);
    y = y > kQuadraticUpTo ? std::exp(y) - 1.0 : 0.5 * y * y + y;
  } else {
    const double inner = (n + 6.0) / (n * y) - kSmallY0 - kSmallY1 * d;
    y = ((1.0 / (inner * (n + 2.0) * 3.0) + 0.5 / (n + 4.0)) * y - 1.0) * (n + 1.0) / (n + 2.0) +
        1.0 / y;
  }
  return std::sqrt(n * y);
}

}  // namespace

double STUDIN(double p, int df, int& ifault, ErrorMonitor& monitor) {
  if (df < 1) {
    ifault = 1;
    return 0.0;
  }
  const bool lower = p < 0.5;
  const double sign = lower ? -1.0 : 1.0;
  const double two_tailed = lower ? 2.0 * p : 2.0 * (1.0 - p);
  if (two_tailed <= 0.0 || two_tailed > 1.0) {
    ifault = 2;
    return 0.0;
  }
  ifault = 0;
  if (df == 1) {
    const double c = std::cos(two_tailed * kHalfPi);
    return sign * c / std::sqrt(1.0 - c * c);
  }
  if (df == 2) {
    return sign * std::sqrt(2.0 / (two_tailed * (2.0 - two_tailed)) - 2.0);
  }
  return sign * HillQuantile(two_tailed, static_cast<double>(df), monitor);
}

std::string_view StudinFailureText(int ifault) {
  switch (ifault) {
    case 1:
      return "df incorrect in call to STUDIN";
    case 2:
      return "p incorrect in call to STUDIN";
    default:
      return {};
  }
}

double UpperStudentQuantile(double p, int df, ErrorMonitor& monitor,
                            const std::function<void(std::string_view message)>& stop) {
  int ifault = 0;
  const double quantile = STUDIN(p, df, ifault, monitor);
  if (ifault != 0) {
    stop(StudinFailureText(ifault));
    std::abort();
  }
  return -quantile;
}

}  // namespace linfit
