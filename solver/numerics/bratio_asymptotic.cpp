#include "numerics/bratio_asymptotic.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "numerics/elementary_single.h"
#include "numerics/gamma_single.h"

namespace linfit::single {

namespace {

GammaRatio FromP(float p) {
  return {p, Complement(p)};
}
GammaRatio FromQ(float q) {
  return {Complement(q), q};
}

// x < 1.1.
GammaRatio GammaRatioTaylor(float a, float x, float tolerance) {
  float n = 3.0f;
  float c = x;
  float sum = x / (a + 3.0f);
  const float stop = (0.1f * tolerance) / (a + 1.0f);
  float t = 0.0f;
  do {
    n = n + 1.0f;
    c = -(c * (x / n));
    t = c / (a + n);
    sum = sum + t;
  } while (std::fabs(t) > stop);
  const float j = (a * x) * ((sum / 6.0f - 0.5f / (a + 2.0f)) * x + 1.0f / (a + 1.0f));

  const float z = a * std::log(x);
  const float h = ReciprocalGammaLessOne(a);
  const float g = 1.0f + h;
  const bool q_first = x >= 0.25f ? a < x / 2.59f : z > -0.13394f;
  if (!q_first) {
    return FromP((std::exp(z) * g) * Complement(j));
  }
  const float l = ExpMinusOne(z);
  const float v = PlusOne(l);
  const float q = (v * j - l) * g - h;
  return q < 0.0f ? GammaRatio{1.0f, 0.0f} : FromQ(q);
}

// x >= 1.1.
GammaRatio GammaRatioFraction(float a, float x, float r, float tolerance) {
  float a_odd = 1.0f;
  float a_even = 1.0f;
  float b_odd = x;
  float b_even = x + (1.0f - a);
  float c = 1.0f;
  float odd = 0.0f;
  float even = 0.0f;
  do {
    a_odd = x * a_even + c * a_odd;
    b_odd = x * b_even + c * b_odd;
    odd = a_odd / b_odd;
    c = c + 1.0f;
    const float q = c - a;
    a_even = a_odd + q * a_even;
    b_even = b_odd + q * b_even;
    even = a_even / b_even;
  } while (std::fabs(even - odd) >= tolerance * even);
  return FromQ(r * even);
}

constexpr int kLargeATerms = 30;
constexpr int kLargeParameterOrder = 20;  // even

// Coefficients of the expansion for large parameters, all with the published indices from 1.
struct LargeParameterCoefficients {
  using Row = std::array<float, kLargeParameterOrder + 2>;
  Row a{};
  Row b{};
  Row c{};
  Row d{};

  // c[i] and d[i] from a[1..i].
  void Extend(int i) {
    const float r = -(0.5f * static_cast<float>(i + 1));
    At(b, 1) = r * At(a, 1);
    for (int m = 2; m <= i; ++m) {
      float sum = 0.0f;
      for (int j = 1; j < m; ++j) {
        const float weight = static_cast<float>(j) * r - static_cast<float>(m - j);
        sum = sum + (weight * At(a, j)) * At(b, m - j);
      }
      At(b, m) = r * At(a, m) + sum / static_cast<float>(m);
    }
    At(c, i) = At(b, i) / static_cast<float>(i + 1);
    float sum = 0.0f;
    for (int j = 1; j < i; ++j) {
      sum = sum + At(d, i - j) * At(c, j);
    }
    At(d, i) = -(sum + At(c, i));
  }

  static float& At(Row& row, int i) { return row[static_cast<std::size_t>(i)]; }
};

}  // namespace

GammaRatio SmallParameterGammaRatio(float a, float x, float r, float tolerance) {
  if (a * x == 0.0f) {
    return x <= a ? GammaRatio{0.0f, 1.0f} : GammaRatio{1.0f, 0.0f};
  }
  if (a == 0.5f) {
    const float root = std::sqrt(x);
    return x >= 0.25f ? FromQ(Erfc(root)) : FromP(Erf(root));
  }
  return x < 1.1f ? GammaRatioTaylor(a, x, tolerance) : GammaRatioFraction(a, x, r, tolerance);
}

void AddLargeAExpansion(float a, float b, float x, float y, float& w, float tolerance) {
  const float m = LessOne(b);
  const float nu = a + 0.5f * m;
  const float log_x = y > 0.375f ? std::log(x) : LogOnePlus(-y);
  const float z = -(nu * log_x);
  if (b * z == 0.0f) {
    return;
  }
  float r = (b * (1.0f + ReciprocalGammaLessOne(b))) * std::exp(b * std::log(z));
  r = (r * std::exp(a * log_x)) * std::exp((0.5f * m) * log_x);
  const float log_u = LogGammaQuotient(b, a) + b * std::log(nu);
  const float u = r * std::exp(-log_u);
  if (u == 0.0f) {
    return;
  }
  const float q = SmallParameterGammaRatio(b, z, r, tolerance).q;

  const float inverse = 1.0f / nu;
  const float v = 0.25f * (inverse * inverse);
  const float t2 = (0.25f * log_x) * log_x;
  const float l = w / u;
  float j = q / r;
  float sum = j;
  float t = 1.0f;
  float cn = 1.0f;
  float n2 = 0.0f;
  std::array<float, kLargeATerms + 1> c{};  // the published indices, from 1
  std::array<float, kLargeATerms + 1> d{};
  for (std::size_t n = 1; n <= kLargeATerms; ++n) {
    const float g = b + n2;
    j = (((g * (g + 1.0f)) * j) + (((z + g) + 1.0f) * t)) * v;
    n2 = n2 + 2.0f;
    t = t * t2;
    cn = cn / (n2 * (n2 + 1.0f));
    c[n] = cn;
    float s = 0.0f;
    float f = b - static_cast<float>(n);
    for (std::size_t i = 1; i < n; ++i) {
      s = s + (f * c[i]) * d[n - i];
      f = f + b;
    }
    d[n] = m * cn + s / static_cast<float>(n);
    const float h = d[n] * j;
    sum = sum + h;
    if (sum <= 0.0f) {
      return;
    }
    if (std::fabs(h) <= tolerance * (sum + l)) {
      break;
    }
  }
  w = w + u * sum;
}

float LargeParameterExpansion(float a, float b, float lambda, float tolerance) {
  constexpr float kTwoOverSqrtPi = 1.12837916709551f;
  constexpr float kTwoToMinusThreeHalves = 0.353553390593274f;
  const bool a_smaller = a < b;
  const float h = a_smaller ? a / b : b / a;
  const float r0 = 1.0f / (1.0f + h);
  const float r1 = (b - a) / (a_smaller ? b : a);
  const float w0 = 1.0f / std::sqrt((a_smaller ? a : b) * (1.0f + h));

  const float f = a * XMinusLogOnePlus(-lambda / a) + b * XMinusLogOnePlus(lambda / b);
  const float power = std::exp(-f);
  if (power == 0.0f) {
    return 0.0f;
  }
  const float z0 = std::sqrt(f);
  const float z = 0.5f * (z0 / kTwoToMinusThreeHalves);
  const float z2 = f + f;

  LargeParameterCoefficients k;
  k.a[1] = (2.0f / 3.0f) * r1;
  k.c[1] = -(0.5f * k.a[1]);
  k.d[1] = -k.c[1];
  float j0 = (0.5f / kTwoOverSqrtPi) * ScaledErfc(z0);
  float j1 = kTwoToMinusThreeHalves;
  float sum = j0 + (k.d[1] * w0) * j1;
  float s = 1.0f;
  const float h2 = h * h;
  float hn = 1.0f;
  float w = w0;
  float z_even = z;
  float z_odd = z2;
  for (int n = 2; n <= kLargeParameterOrder; n += 2) {
    const auto order = static_cast<float>(n);
    const auto even = static_cast<std::size_t>(n);
    hn = h2 * hn;
    k.a[even] = ((2.0f * r0) * (1.0f + h * hn)) / (order + 2.0f);
    s = s + hn;
    k.a[even + 1] = ((2.0f * r1) * s) / (order + 3.0f);
    k.Extend(n);
    k.Extend(n + 1);

    j0 = kTwoToMinusThreeHalves * z_even + (order - 1.0f) * j0;
    j1 = kTwoToMinusThreeHalves * z_odd + order * j1;
    z_even = z2 * z_even;
    z_odd = z2 * z_odd;
    w = w0 * w;
    const float t0 = (k.d[even] * w) * j0;
    w = w0 * w;
    const float t1 = (k.d[even + 1] * w) * j1;
    sum = sum + (t0 + t1);
    if (std::fabs(t0) + std::fabs(t1) <= tolerance * sum) {
      break;
    }
  }
  const float u = std::exp(-StirlingCorrection(a, b));
  return ((kTwoOverSqrtPi * power) * u) * sum;
}

}  // namespace linfit::single
