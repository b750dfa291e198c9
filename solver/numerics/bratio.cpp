#include "numerics/bratio.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "numerics/bratio_asymptotic.h"
#include "numerics/bratio_series.h"
#include "numerics/elementary_single.h"

namespace linfit {

namespace {

using single::Complement;
using single::kEpsilon;

// Parameters as the methods see them: a with x and b with y, perhaps exchanged.
struct Arguments {
  float a, b, x, y;
  float lambda = 0.0f;  // (a + b) y - b, when both parameters are above 1
  bool exchanged = false;

  void Exchange() {
    std::swap(a, b);
    std::swap(x, y);
    exchanged = !exchanged;
  }
};

struct Ratio {
  float w, w1;
};
Ratio FromW(float w) {
  return {w, Complement(w)};
}
Ratio FromW1(float w1) {
  return {Complement(w1), w1};
}

enum class Method {
  kNegligibleB,
  kNegligibleA,
  kPowerSeries,
  kComplementPowerSeries,
  kLargeB,
  kStepsAndLargeB,
  kStepsDown,
  kContinuedFraction,
  kLargeParameters,
};

constexpr int kSteps = 20;
constexpr float kExpansionTolerance = 15.0f * kEpsilon;
constexpr float kLargeParameterTolerance = 100.0f * kEpsilon;

// min(a, b) <= 1.
Method ChooseForSmallParameter(Arguments& k) {
  if (k.x > 0.5f) {
    k.Exchange();
  }
  if (k.b < std::min(kEpsilon, kEpsilon * k.a)) {
    return Method::kNegligibleB;
  }
  if (k.a < std::min(kEpsilon, kEpsilon * k.b) && k.b * k.x <= 1.0f) {
    return Method::kNegligibleA;
  }
  if (std::max(k.a, k.b) > 1.0f) {
    if (k.b <= 1.0f) {
      return Method::kPowerSeries;
    }
    if (k.x >= 0.3f) {
      return Method::kComplementPowerSeries;
    }
    if (k.x < 0.1f && std::pow(k.x * k.b, k.a) <= 0.7f) {
      return Method::kPowerSeries;
    }
    return k.b > 15.0f ? Method::kLargeB : Method::kStepsAndLargeB;
  }
  if (k.a >= std::min(0.2f, k.b) || std::pow(k.x, k.a) <= 0.9f) {
    return Method::kPowerSeries;
  }
  return k.x >= 0.3f ? Method::kComplementPowerSeries : Method::kStepsAndLargeB;
}

// min(a, b) > 1.
Method ChooseForLargeParameters(Arguments& k) {
  k.lambda = k.a > k.b ? (k.a + k.b) * k.y - k.b : k.a - (k.a + k.b) * k.x;
  if (!(k.lambda >= 0.0f)) {
    k.Exchange();
    k.lambda = std::fabs(k.lambda);
  }
  if (k.b < 40.0f) {
    return k.b * k.x <= 0.7f ? Method::kPowerSeries : Method::kStepsDown;
  }
  const float low = k.a > k.b ? k.b : k.a;
  const bool fraction = low <= 100.0f || k.lambda > 0.03f * low;
  return fraction ? Method::kContinuedFraction : Method::kLargeParameters;
}

// b brought down to between 0 and 1, or to 1, and what remains by the power series or the expansion
// for large a.
float StepsDown(const Arguments& k) {
  float a = k.a;
  int n = static_cast<int>(k.b);
  float b = k.b - static_cast<float>(n);
  if (b == 0.0f) {
    n = n - 1;
    b = 1.0f;
  }
  float w = single::StepDifference(b, a, k.y, k.x, n);
  if (k.x <= 0.7f) {
    return w + single::PowerSeries(a, b, k.x);
  }
  if (a <= 15.0f) {
    w = w + single::StepDifference(a, b, k.x, k.y, kSteps);
    a = a + static_cast<float>(kSteps);
  }
  single::AddLargeAExpansion(a, b, k.x, k.y, w, kExpansionTolerance);
  return w;
}

// The complement, by the expansion for large b; b is first raised by `steps`.
float LargeB(const Arguments& k, int steps) {
  float w1 = 0.0f;
  float b = k.b;
  if (steps > 0) {
    w1 = single::StepDifference(b, k.a, k.y, k.x, steps);
    b = b + static_cast<float>(steps);
  }
  single::AddLargeAExpansion(b, k.a, k.y, k.x, w1, kExpansionTolerance);
  return w1;
}

Ratio Evaluate(Method method, const Arguments& k) {
  switch (method) {
    case Method::kNegligibleB:
      return FromW(single::NegligibleBSeries(k.a, k.b, k.x));
    case Method::kNegligibleA:
      return FromW1(single::NegligibleASeries(k.a, k.b, k.x));
    case Method::kPowerSeries:
      return FromW(single::PowerSeries(k.a, k.b, k.x));
    case Method::kComplementPowerSeries:
      return FromW1(single::PowerSeries(k.b, k.a, k.y));
    case Method::kLargeB:
      return FromW1(LargeB(k, 0));
    case Method::kStepsAndLargeB:
      return FromW1(LargeB(k, kSteps));
    case Method::kStepsDown:
      return FromW(StepsDown(k));
    case Method::kContinuedFraction:
      return FromW(single::ContinuedFraction(k.a, k.b, k.x, k.y, k.lambda, kExpansionTolerance));
    case Method::kLargeParameters:
      break;
  }
  return FromW(single::LargeParameterExpansion(k.a, k.b, k.lambda, kLargeParameterTolerance));
}

int CheckArguments(float a, float b, float x, float y) {
  if (a < 0.0f || b < 0.0f) {
    return 1;
  }
  if (a == 0.0f && b == 0.0f) {
    return 2;
  }
  if (x < 0.0f || x > 1.0f) {
    return 3;
  }
  if (y < 0.0f || y > 1.0f) {
    return 4;
  }
  if (std::fabs(((x + y) - 0.5f) - 0.5f) > 3.0f * kEpsilon) {
    return 5;
  }
  if (x == 0.0f && a == 0.0f) {
    return 6;
  }
  // The end x = 0 is looked at before y = 0.
  return x != 0.0f && y == 0.0f && b == 0.0f ? 7 : 0;
}

Ratio RatioOf(float a, float b, float x, float y) {
  if (x == 0.0f) {
    return {0.0f, 1.0f};
  }
  if (y == 0.0f || a == 0.0f) {
    return {1.0f, 0.0f};
  }
  if (b == 0.0f) {
    return {0.0f, 1.0f};
  }
  if (std::max(a, b) < 1e-3f * kEpsilon) {
    return {b / (a + b), a / (a + b)};
  }
  Arguments k{a, b, x, y};
  const bool small = std::min(a, b) <= 1.0f;
  const Method method = small ? ChooseForSmallParameter(k) : ChooseForLargeParameters(k);
  Ratio ratio = Evaluate(method, k);
  if (k.exchanged) {
    std::swap(ratio.w, ratio.w1);
  }
  return ratio;
}

}  // namespace

void BRATIO(float a, float b, float x, float y, float& w, float& w1, int& ierr) {
  w = 0.0f;
  w1 = 0.0f;
  ierr = 0;
  if (std::isnan(a) || std::isnan(b) || std::isnan(x) || std::isnan(y)) {
    w = w1 = std::numeric_limits<float>::quiet_NaN();
    return;
  }
  ierr = CheckArguments(a, b, x, y);
  if (ierr == 0) {
    const Ratio ratio = RatioOf(a, b, x, y);
    w = ratio.w;
    w1 = ratio.w1;
  }
}

}  // namespace linfit
