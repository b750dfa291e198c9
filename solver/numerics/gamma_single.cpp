#include "numerics/gamma_single.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numerics/elementary_single.h"
#include "numerics/polynomial.h"

namespace linfit::single {

namespace {

// 1 / Gamma(t + 1) - 1 = t P(t) / Q(t) for 0 < t <= 0.5.
constexpr float kReciprocalNumerator[] = {
    .589597428611429E-03f,  -.514889771323592E-02f, .766968181649490E-02f, .597275330452234E-01f,
    -.230975380857675E+00f, -.409078193005776E+00f, .577215664901533E+00f};
constexpr float kReciprocalDenominator[] = {.423244297896961E-02f, .261132021441447E-01f,
                                            .158451672430138E+00f, .427569613095214E+00f, 1.0f};
// 1 / Gamma(t + 1) - 1 = t (1 + P(t) / Q(t)) for -0.5 <= t < 0.
constexpr float kReciprocalLeftNumerator[] = {
    -.132674909766242E-03f, .266505979058923E-03f,  .223047661158249E-02f,
    -.118290993445146E-01f, .930357293360349E-03f,  .118378989872749E+00f,
    -.244757765222226E+00f, -.771330383816272E+00f, -.422784335098468E+00f};
constexpr float kReciprocalLeftDenominator[] = {.559398236957378E-01f, .273076135303957E+00f, 1.0f};

// log Gamma(1 + a) = -a P(a) / Q(a), a < 0.6.
constexpr float kLogGammaNumerator[] = {
    -.271935708322958E-02f, -.673562214325671E-01f, -.402055799310489E+00f, -.780427615533591E+00f,
    -.168860593646662E+00f, .844203922187225E+00f,  .577215664901533E+00f};
constexpr float kLogGammaDenominator[] = {.667465618796164E-03f,
                                          .325038868253937E-01f,
                                          .361951990101499E+00f,
                                          .156875193295039E+01f,
                                          .312755088914843E+01f,
                                          .288743195473681E+01f,
                                          1.0f};
// log Gamma(2 + x) = x P(x) / Q(x), x = a - 1, a >= 0.6.
constexpr float kLogGammaRightNumerator[] = {.497958207639485E-03f, .170502484022650E-01f,
                                             .156513060486551E+00f, .565221050691933E+00f,
                                             .848044614534529E+00f, .422784335098467E+00f};
constexpr float kLogGammaRightDenominator[] = {.116165475989616E-03f, .713309612391000E-02f,
                                               .101552187439830E+00f, .548042109832463E+00f,
                                               .124313399877507E+01f, 1.0f};

// Remainder of Stirling's formula: sum of c_k / a^(2k + 1).
constexpr float kStirling0 = .833333333333333E-01f;
constexpr float kStirling1 = -.277777777760991E-02f;
constexpr float kStirling2 = .793650666825390E-03f;
constexpr float kStirling3 = -.595202931351870E-03f;
constexpr float kStirling4 = .837308034031215E-03f;
constexpr float kStirling5 = -.165322962780713E-02f;
constexpr float kStirling[] = {kStirling5, kStirling4, kStirling3,
                               kStirling2, kStirling1, kStirling0};

constexpr float kHalfLogTwoPiLessHalf = 0.418938533204673f;  // (log(2 pi) - 1) / 2
constexpr float kHalfLogTwoPi = 0.918938533204673f;

// Digamma: a rational function times the distance from the zero on [0.5, 3], and the asymptotic
// form in 1 / x^2 beyond.
constexpr float kPsiNumerator[] = {
    .895385022981970E-02f, .477762828042627E+01f, .142441585084029E+03f, .118645200713425E+04f,
    .363351846806499E+04f, .413810161269013E+04f, .130560269827897E+04f};
constexpr float kPsiDenominator[] = {1.0f,
                                     .448452573429826E+02f,
                                     .520752771467162E+03f,
                                     .221000799247830E+04f,
                                     .364127349079381E+04f,
                                     .190831076596300E+04f,
                                     .691091682714533E-05f};
constexpr float kPsiFarNumerator[] = {-.212940445131011E+01f, -.701677227766759E+01f,
                                      -.448616543918019E+01f, -.648157123766197E+00f, 0.0f};
constexpr float kPsiFarDenominator[] = {1.0f, .322703493791143E+02f, .892920700481861E+02f,
                                        .546117738103215E+02f, .777788548522962E+01f};
constexpr double kPsiZero = 1.461632144968362341262659542325721325;
constexpr float kPsiLargest = 1.0f / kEpsilon;
constexpr float kQuarterPi = .785398163397448f;

// R(b) - R(a + b) for Stirling's remainder R, with x = b / (a + b) and c = a / (a + b).
float StirlingDifference(float x, float c, float b) {
  const float x2 = x * x;
  const float s3 = 1.0f + (x + x2);
  const float s5 = 1.0f + (x + x2 * s3);
  const float s7 = 1.0f + (x + x2 * s5);
  const float s9 = 1.0f + (x + x2 * s7);
  const float s11 = 1.0f + (x + x2 * s9);
  const float inverse = 1.0f / b;
  const float terms[] = {kStirling5 * s11, kStirling4 * s9, kStirling3 * s7,
                         kStirling2 * s5,  kStirling1 * s3, kStirling0};
  return Horner(terms, inverse * inverse) * (c / b);
}

// R(a) for a >= 8.
float StirlingRemainder(float a) {
  const float inverse = 1.0f / a;
  return Horner(kStirling, inverse * inverse) / a;
}

// value - first - second, the smaller one first.
float SubtractSmallerFirst(float value, float first, float second) {
  return first <= second ? (value - first) - second : (value - second) - first;
}

// log B(a, b) for 1 <= a <= 2 < b < 8: brings b down to between 1 and 2. `w` is the logarithm of
// the factor by which a has been brought down before.
float LogBetaReducingB(float a, float b, float w) {
  const int n = static_cast<int>(b - 1.0f);
  float z = 1.0f;
  for (int i = 0; i < n; ++i) {
    b = b - 1.0f;
    z = z * (b / (a + b));
  }
  return (w + std::log(z)) + (LogGamma(a) + (LogGamma(b) - LogGammaOfSum(a, b)));
}

// log B(a, b) for 2 < a < 8, a <= b: brings a down to between 1 and 2.
float LogBetaReducingA(float a, float b) {
  const int n = static_cast<int>(a - 1.0f);
  float w = 1.0f;
  if (b > 1000.0f) {
    for (int i = 0; i < n; ++i) {
      a = a - 1.0f;
      w = w * (a / (1.0f + a / b));
    }
    return (std::log(w) - static_cast<float>(n) * std::log(b)) +
           (LogGamma(a) + LogGammaQuotient(a, b));
  }
  for (int i = 0; i < n; ++i) {
    a = a - 1.0f;
    const float h = a / b;
    w = w * (h / (1.0f + h));
  }
  w = std::log(w);
  if (b >= 8.0f) {
    return (w + LogGamma(a)) + LogGammaQuotient(a, b);
  }
  return LogBetaReducingB(a, b, w);
}

// log B(a, b) for 8 <= a <= b.
float LogBetaLarge(float a, float b) {
  const float w = StirlingCorrection(a, b);
  const float h = a / b;
  const float c = h / (1.0f + h);
  const float u = -((a - 0.5f) * std::log(c));
  const float v = b * LogOnePlus(h);
  return SubtractSmallerFirst((-(0.5f * std::log(b)) + kHalfLogTwoPi) + w, u, v);
}

// pi cot(pi x) with the sign of the reflection formula, 1e-9 < |x|, x < 0.5. False where it can't
// be computed.
bool ReflectionTerm(float x, float& term) {
  float w = -x;
  float sign = kQuarterPi;
  if (!(w > 0.0f)) {
    w = -w;
    sign = -sign;
  }
  if (w >= kPsiLargest) {
    return false;
  }
  w = w - static_cast<float>(static_cast<int>(w));
  const int quarter = static_cast<int>(w * 4.0f);
  w = 4.0f * (w - static_cast<float>(quarter) * 0.25f);
  if (quarter % 2 != 0) {
    w = 1.0f - w;
  }
  const float z = kQuarterPi * w;
  if ((quarter / 2) % 2 != 0) {
    sign = -sign;
  }
  if (((quarter + 1) / 2) % 2 != 0) {
    term = sign * ((std::sin(z) / std::cos(z)) * 4.0f);
    return true;
  }
  if (z == 0.0f) {
    return false;
  }
  term = sign * ((std::cos(z) / std::sin(z)) * 4.0f);
  return true;
}

}  // namespace

float ReciprocalGammaLessOne(float a) {
  const float d = a - 0.5f;
  const float t = d > 0.0f ? d - 0.5f : a;
  if (t == 0.0f) {
    return 0.0f;
  }
  if (t > 0.0f) {
    const float w = Horner(kReciprocalNumerator, t) / Horner(kReciprocalDenominator, t);
    return d > 0.0f ? (t / a) * LessOne(w) : a * w;
  }
  const float w = Horner(kReciprocalLeftNumerator, t) / Horner(kReciprocalLeftDenominator, t);
  return d > 0.0f ? (t * w) / a : a * PlusOne(w);
}

float LogGammaOnePlus(float a) {
  if (a < 0.6f) {
    return -(a * (Horner(kLogGammaNumerator, a) / Horner(kLogGammaDenominator, a)));
  }
  const float x = LessOne(a);
  return x * (Horner(kLogGammaRightNumerator, x) / Horner(kLogGammaRightDenominator, x));
}

float LogGamma(float a) {
  if (a <= 0.8f) {
    return LogGammaOnePlus(a) - std::log(a);
  }
  if (a <= 2.25f) {
    return LogGammaOnePlus(LessOne(a));
  }
  if (a < 10.0f) {
    const int n = static_cast<int>(a - 1.25f);
    float t = a;
    float w = 1.0f;
    for (int i = 0; i < n; ++i) {
      t = t - 1.0f;
      w = t * w;
    }
    return LogGammaOnePlus(t - 1.0f) + std::log(w);
  }
  return (kHalfLogTwoPiLessHalf + StirlingRemainder(a)) + (a - 0.5f) * (std::log(a) - 1.0f);
}

float LogGammaOfSum(float a, float b) {
  const double sum = static_cast<double>(a) + static_cast<double>(b);
  const auto x = static_cast<float>(sum - 2.0);  // the sum in double
  if (x <= 0.25f) {
    return LogGammaOnePlus(1.0f + x);
  }
  if (x <= 1.25f) {
    return LogGammaOnePlus(x) + LogOnePlus(x);
  }
  return LogGammaOnePlus(x - 1.0f) + std::log(x * (1.0f + x));
}

float LogGammaQuotient(float a, float b) {
  float c = 0.0f;
  float x = 0.0f;
  float d = 0.0f;
  if (a > b) {
    const float h = b / a;
    c = 1.0f / (1.0f + h);
    x = h / (1.0f + h);
    d = a + (b - 0.5f);
  } else {
    const float h = a / b;
    c = h / (1.0f + h);
    x = 1.0f / (1.0f + h);
    d = b + (a - 0.5f);
  }
  const float w = StirlingDifference(x, c, b);
  const float u = d * LogOnePlus(a / b);
  const float v = a * (std::log(b) - 1.0f);
  return SubtractSmallerFirst(w, u, v);
}

float StirlingCorrection(float a, float b) {
  const float low = std::min(a, b);
  const float high = std::max(a, b);
  const float h = low / high;
  const float c = h / (1.0f + h);
  const float x = 1.0f / (1.0f + h);
  return StirlingRemainder(low) + StirlingDifference(x, c, high);
}

float LogBeta(float a, float b) {
  if (a > b) {
    std::swap(a, b);
  }
  if (a >= 8.0f) {
    return LogBetaLarge(a, b);
  }
  if (a > 2.0f) {
    return LogBetaReducingA(a, b);
  }
  if (b >= 8.0f) {
    return LogGamma(a) + LogGammaQuotient(a, b);
  }
  if (a < 1.0f) {
    return LogGamma(a) + (LogGamma(b) - LogGamma(a + b));
  }
  if (b <= 2.0f) {
    return (LogGamma(a) + LogGamma(b)) - LogGammaOfSum(a, b);
  }
  return LogBetaReducingB(a, b, 0.0f);
}

float Digamma(float x) {
  float term = 0.0f;
  if (x < 0.5f) {
    if (x == 0.0f) {
      return 0.0f;
    }
    if (std::fabs(x) <= 1e-9f) {
      term = -1.0f / x;
    } else if (!ReflectionTerm(x, term)) {
      return 0.0f;
    }
    x = 1.0f - x;
  }
  if (x <= 3.0f) {
    const float quotient = Horner(kPsiNumerator, x) / Horner(kPsiDenominator, x);
    return quotient * static_cast<float>(static_cast<double>(x) - kPsiZero) + term;
  }
  if (x < kPsiLargest) {
    const float w = 1.0f / (x * x);
    const float quotient = Horner(kPsiFarNumerator, w) / Horner(kPsiFarDenominator, w);
    term = (quotient - 0.5f / x) + term;
  }
  return term + std::log(x);
}

}  // namespace linfit::single
