// Distribution functions of the regression tests, on the incomplete beta and gamma ratios.
//
// Each returns its value together with the error indicator of the special function behind it. An
// indicator never changes the value and never stops anything: the caller writes the line that
// DiagnosticLine makes of it to the status file and uses the value as it is. Undefined arguments
// (0/0 in t or F) give an undefined value with indicator 0.
//
// The program needs StudentTwoSidedTail and FCdf; the other three complete the set.
#pragma once

#include <string>

namespace linfit {

// The special function that was called.
enum class ProbabilitySource { kNone, kBratio, kGammad };

struct Probability {
  double value = 0.0;
  ProbabilitySource source = ProbabilitySource::kNone;
  int indicator = 0;  // ierr of BRATIO, ifault of GAMMAD; 0 = no error
};

// Larger degrees of freedom than this go to the gamma ratio in FCdf.
inline constexpr double kLargestBetaDegrees = 400000.0;

// P(|T| > |t|) for Student's t with `df` degrees of freedom. Single precision inside: about seven
// digits for small df, fewer as df grows (df / (t^2 + df) is rounded to single near 1).
[[nodiscard]] Probability StudentTwoSidedTail(double t, double df);
// Half of it: P(T > |t|).
[[nodiscard]] Probability StudentOneSidedTail(double t, double df);
// P(X <= x) for chi-square with k degrees of freedom.
[[nodiscard]] Probability ChiSquareCdf(double x, double k);
// The incomplete gamma ratio P(p, u/v).
[[nodiscard]] Probability GammaRatioOfQuotient(double u, double v, double p);
// P(X <= f) for F with d1 (numerator) and d2 (denominator) degrees of freedom. The largest finite
// double, and no special function called, when one of them is not positive. Beyond
// kLargestBetaDegrees the chi-square limit takes the place of the beta ratio.
[[nodiscard]] Probability FCdf(double f, double d1, double d2);

// " bratio, ierr = N" or " gammad, ifault = N"; empty when no special function was called.
[[nodiscard]] std::string DiagnosticLine(const Probability& probability);

}  // namespace linfit
