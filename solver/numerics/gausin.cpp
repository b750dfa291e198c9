#include "numerics/gausin.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "numerics/polynomial.h"
#include "text/columns.h"
#include "text/real_text.h"

namespace linfit {

namespace {

// All constants are of single precision and used in double: that fixes the last digits. The
// assertions pin the widened values.

// The quantile less t, t = sqrt(-2 log q).
constexpr double kStartNumerator[] = {7.45551f, 450.636f, 1271.059f};
constexpr double kStartDenominator[] = {1.0, 110.4212f, 750.365f, 500.756f};
static_assert(kStartNumerator[0] == 7.455510139465332);
static_assert(kStartNumerator[1] == 450.635986328125);
static_assert(kStartNumerator[2] == 1271.0589599609375);
static_assert(kStartDenominator[1] == 110.42120361328125);
static_assert(kStartDenominator[2] == 750.364990234375);
static_assert(kStartDenominator[3] == 500.7560119628906);

// erf(z) / z in z^2, z < 0.5.
constexpr double kNearNumerator[] = {-9.7970465E-2f, 3.6767877f};
constexpr double kNearDenominator[] = {1.0, 3.2584593f};
static_assert(kNearNumerator[0] == -0.09797046333551407);
static_assert(kNearNumerator[1] == 3.6767876148223877);
static_assert(kNearDenominator[1] == 3.2584593296051025);

// exp(z^2) erfc(z) in z, 0.5 <= z < 4.
constexpr double kMiddleNumerator[] = {4.3187787E-5f, 5.6316962E-1f, 3.0317993f, 6.8650185f,
                                       7.3738883f};
constexpr double kMiddleDenominator[] = {1.0, 5.3542168f, 12.795530f, 15.184908f, 7.3739609f};
static_assert(kMiddleNumerator[0] == 4.3187785195186734e-05);
static_assert(kMiddleNumerator[1] == 0.5631695985794067);
static_assert(kMiddleNumerator[2] == 3.03179931640625);
static_assert(kMiddleNumerator[3] == 6.865018367767334);
static_assert(kMiddleNumerator[4] == 7.3738884925842285);
static_assert(kMiddleDenominator[1] == 5.354216575622559);
static_assert(kMiddleDenominator[2] == 12.795530319213867);
static_assert(kMiddleDenominator[3] == 15.184907913208008);
static_assert(kMiddleDenominator[4] == 7.373960971832275);

// z exp(z^2) erfc(z) in 1 / z^2, z >= 4.
constexpr double kFarNumerator[] = {-9.6821036E-2f, -1.2436854E-1f};
constexpr double kFarDenominator[] = {1.0, 4.4091706E-1f};
constexpr double kOneOverSqrtPi = 0.56418958f;
static_assert(kFarNumerator[0] == -0.09682103246450424);
static_assert(kFarNumerator[1] == -0.12436854094266891);
static_assert(kFarDenominator[1] == 0.44091707468032837);
static_assert(kOneOverSqrtPi == 0.5641895532608032);

constexpr double kSqrtTwoPi = 2.50662827f;
constexpr double kOneOverSqrtTwo =
    1.0 / double{1.41421356f};  // the quotient is of double precision
static_assert(kSqrtTwoPi == 2.5066282749176025);
static_assert(kOneOverSqrtTwo == 0.7071067932881648);

double NormalCdf(double x) {
  const double z = std::fabs(x) * kOneOverSqrtTwo;
  const double z2 = z * z;
  if (z < 0.5) {
    const double erf = z * Horner(kNearNumerator, z2) / Horner(kNearDenominator, z2);
    return x > 0.0 ? 0.5 + 0.5 * erf : 0.5 * (1.0 - erf);
  }
  double erfc = 0.0;
  if (z < 4.0) {
    erfc = std::exp(-z2) * Horner(kMiddleNumerator, z) / Horner(kMiddleDenominator, z);
  } else {
    const double r = 1.0 / z2;
    const double rest = (r * Horner(kFarNumerator, r)) / Horner(kFarDenominator, r);
    erfc = std::exp(-z2) * (kOneOverSqrtPi + rest) / z;
  }
  return x > 0.0 ? 0.5 + 0.5 * (1.0 - erfc) : 0.5 * erfc;
}

// Right-justified in 15 columns: one digit before the point, five after it, and an exponent whose
// letter gives way to a third digit.
std::string ExponentField(double value) {
  std::string text = ExponentForm(value, 5);
  const std::size_t letter = text.find('E');
  if (letter != std::string::npos && text.size() - letter > std::string_view("E+00").size()) {
    text.erase(letter, 1);
  }
  return RightJustified(text, 15);
}

}  // namespace

double GAUSIN(double p, ErrorMonitor& monitor) {
  if (p <= 0.0 || p >= 1.0) {
    ReportError(monitor, "GAUSIN", "G105.1", "ARGUMENT P =" + ExponentField(p) + " NOT IN RANGE");
    return 0.0;
  }
  if (p == 0.5) {
    return 0.0;
  }
  const double t = std::sqrt(-2.0 * std::log(std::min(p, 1.0 - p)));
  double x = t - Horner(kStartNumerator, t) / Horner(kStartDenominator, t);
  if (p < 0.5) {
    x = -x;
  }
  return x + kSqrtTwoPi * std::exp(x * x / 2.0) * (p - NormalCdf(x));
}

}  // namespace linfit
