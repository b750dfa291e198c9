#include "numerics/elementary_single.h"

#include <cmath>

#include "numerics/polynomial.h"

namespace linfit::single {

namespace {

// exp(x) - 1 = x P(x) / Q(x), |x| <= 0.15.
constexpr float kExpNumerator[] = {.238082361044469E-01f, .914041914819518E-09f, 1.0f};
constexpr float kExpDenominator[] = {.595130811860248E-03f, -.119041179760821E-01f,
                                     .107141568980644E+00f, -.499999999085958E+00f, 1.0f};

// log(1 + a) = 2 t P(t^2) / Q(t^2) with t = a / (a + 2), |a| <= 0.375.
constexpr float kLogNumerator[] = {-.178874546012214E-01f, .405303492862024E+00f,
                                   -.129418923021993E+01f, 1.0f};
constexpr float kLogDenominator[] = {-.845104217945565E-01f, .747811014037616E+00f,
                                     -.162752256355323E+01f, 1.0f};

// x - log(1 + x), -0.39 <= x <= 0.57: a rational function of t^2 with t = h / (h + 2), where h is x
// moved to the middle of its interval, and the values at -0.3 and 1/3 from which it is moved.
constexpr float kXLogNumerator[] = {.620886815375787E-02f, -.224696413112536E+00f,
                                    .333333333333333E+00f};
constexpr float kXLogDenominator[] = {.354508718369557E+00f, -.127408923933623E+01f, 1.0f};
constexpr float kXLogLeft = .566749439387324E-01f;
constexpr float kXLogRight = .456512608815524E-01f;

constexpr float kOneOverSqrtPi = .564189583547756f;

// |x| <= 0.5, in x^2; the constant 1 of the numerator is added by itself.
constexpr float kErfNearNumerator[] = {.771058495001320E-04f, -.133733772997339E-02f,
                                       .323076579225834E-01f, .479137145607681E-01f,
                                       .128379167095513E+00f};
constexpr float kErfNearDenominator[] = {.301048631703895E-02f, .538971687740286E-01f,
                                         .375795757275549E+00f, 1.0f};
// 0.5 < |x| <= 4, in |x|.
constexpr float kErfMiddleNumerator[] = {
    -1.36864857382717E-07f, 5.64195517478974E-01f, 7.21175825088309E+00f, 4.31622272220567E+01f,
    1.52989285046940E+02f,  3.39320816734344E+02f, 4.51918953711873E+02f, 3.00459261020162E+02f};
constexpr float kErfMiddleDenominator[] = {
    1.00000000000000E+00f, 1.27827273196294E+01f, 7.70001529352295E+01f, 2.77585444743988E+02f,
    6.38980264465631E+02f, 9.31354094850610E+02f, 7.90950925327898E+02f, 3.00459260956983E+02f};
// |x| > 4, in 1 / x^2.
constexpr float kErfFarNumerator[] = {2.10144126479064E+00f, 2.62370141675169E+01f,
                                      2.13688200555087E+01f, 4.65807828718470E+00f,
                                      2.82094791773523E-01f};
constexpr float kErfFarDenominator[] = {9.41537750555460E+01f, 1.87114811799590E+02f,
                                        9.90191814623914E+01f, 1.80124575948747E+01f, 1.0f};

// erf(x) / x for |x| <= 0.5.
float NearErfQuotient(float t) {
  return (Horner(kErfNearNumerator, t) + 1.0f) / Horner(kErfNearDenominator, t);
}

// exp(x^2) erfc(ax) with ax = |x| > 0.5.
float ScaledErfcTail(float x, float ax) {
  if (ax <= 4.0f) {
    return Horner(kErfMiddleNumerator, ax) / Horner(kErfMiddleDenominator, ax);
  }
  const float inverse = 1.0f / x;
  const float t = inverse * inverse;
  const float top = Horner(kErfFarNumerator, t);
  const float bottom = Horner(kErfFarDenominator, t);
  return (kOneOverSqrtPi - (t * top) / bottom) / ax;
}

}  // namespace

float ExpSum(int mu, float x) {
  const float sum = static_cast<float>(mu) + x;
  const bool opposite_positive = x > 0.0f && mu <= 0 && sum >= 0.0f;
  const bool opposite_negative = x <= 0.0f && mu >= 0 && sum <= 0.0f;
  if (opposite_positive || opposite_negative) {
    return std::exp(sum);
  }
  return std::exp(static_cast<float>(mu)) * std::exp(x);
}

float ExpMinusOne(float x) {
  if (std::fabs(x) <= 0.15f) {
    return x * (Horner(kExpNumerator, x) / Horner(kExpDenominator, x));
  }
  const float w = std::exp(x);
  return x > 0.0f ? w * Complement(1.0f / w) : LessOne(w);
}

float LogOnePlus(float a) {
  if (std::fabs(a) > 0.375f) {
    return std::log(static_cast<float>(1.0 + static_cast<double>(a)));  // the sum in double
  }
  const float t = a / (a + 2.0f);
  const float t2 = t * t;
  const float w = Horner(kLogNumerator, t2) / Horner(kLogDenominator, t2);
  return (2.0f * t) * w;
}

float XMinusLogOnePlus(float x) {
  if (x < -0.39f || x > 0.57f) {
    return x - std::log(PlusOne(x));
  }
  float h = x;
  float offset = 0.0f;
  if (x < -0.18f) {
    h = static_cast<float>(static_cast<double>(x) + 0.3) / 0.7f;  // the sum in double
    offset = kXLogLeft - h * 0.3f;
  } else if (x > 0.18f) {
    h = static_cast<float>(0.75 * static_cast<double>(x) - 0.25);  // in double
    offset = kXLogRight + h / 3.0f;
  }
  const float r = h / (h + 2.0f);
  const float t = r * r;
  const float w = Horner(kXLogNumerator, t) / Horner(kXLogDenominator, t);
  return (2.0f * t) * (1.0f / (1.0f - r) - r * w) + offset;
}

float Erf(float x) {
  const float ax = std::fabs(x);
  if (ax <= 0.5f) {
    return x * NearErfQuotient(x * x);
  }
  if (ax >= 5.8f) {
    return std::copysign(1.0f, x);
  }
  const float x2 = x * x;
  float value = 0.0f;
  if (ax <= 4.0f) {
    const float top = Horner(kErfMiddleNumerator, ax);
    value = Complement((std::exp(-x2) * top) / Horner(kErfMiddleDenominator, ax));
  } else {
    const float t = 1.0f / x2;
    const float top = Horner(kErfFarNumerator, t);
    const float bottom = Horner(kErfFarDenominator, t);
    value = Complement(std::exp(-x2) * ((kOneOverSqrtPi - top / (x2 * bottom)) / ax));
  }
  return x < 0.0f ? -value : value;
}

float Erfc(float x) {
  const float ax = std::fabs(x);
  if (ax <= 0.5f) {
    return Complement(x * NearErfQuotient(x * x));
  }
  if (x <= -5.6f) {
    return 2.0f;
  }
  if (x > 100.0f || (ax > 4.0f && x * x > -kExpMin)) {
    return 0.0f;
  }
  const float tail = ScaledErfcTail(x, ax);
  const double square = static_cast<double>(x) * static_cast<double>(x);  // kept in double
  const auto t = static_cast<float>(square);
  const auto rest = static_cast<float>(square - static_cast<double>(t));
  const float value = (Complement(rest) * std::exp(-t)) * tail;
  return x < 0.0f ? 2.0f - value : value;
}

float ScaledErfc(float x) {
  const float ax = std::fabs(x);
  if (ax <= 0.5f) {
    const float t = x * x;
    return std::exp(t) * Complement(x * NearErfQuotient(t));
  }
  if (x <= -5.6f) {
    return 2.0f * std::exp(x * x);
  }
  const float tail = ScaledErfcTail(x, ax);
  return x < 0.0f ? 2.0f * std::exp(x * x) - tail : tail;
}

}  // namespace linfit::single
