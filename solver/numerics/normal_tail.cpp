#include "numerics/normal_tail.h"

#include <cmath>

namespace linfit {

namespace {

// |z| <= 1.28: z times a continued fraction in z^2 / 2.
constexpr double kA1 = 0.398942280444;
constexpr double kA2 = 0.399903438504;
constexpr double kA3 = 5.75885480458;
constexpr double kA4 = 29.8213557808;
constexpr double kA5 = 2.62433121679;
constexpr double kA6 = 48.6959930692;
constexpr double kA7 = 5.92885724438;
// Beyond: the density times a continued fraction in z.
constexpr double kB1 = 0.398942280385;
constexpr double kB2 = 3.8052e-8;
constexpr double kB3 = 1.00000615302;
constexpr double kB4 = 3.98064794e-4;
constexpr double kB5 = 1.98615381364;
constexpr double kB6 = 0.151679116635;
constexpr double kB7 = 5.29330324926;
constexpr double kB8 = 4.8385912808;
constexpr double kB9 = 15.1508972451;
constexpr double kB10 = 0.742380924027;
constexpr double kB11 = 30.789933034;
constexpr double kB12 = 3.99019417011;

constexpr double kMiddle = 1.28;
constexpr double kLowerTailIsOne = 7.0;     // P(Z <= z) rounds to 1
constexpr double kUpperTailIsZero = 18.66;  // P(Z > z) is below the range of interest

}  // namespace

double NormalTail(double z, bool upper) {
  if (z < 0.0) {
    upper = !upper;
    z = -z;
  }
  double tail = 0.0;
  if (z <= kLowerTailIsOne || (upper && z <= kUpperTailIsZero)) {
    const double y = 0.5 * z * z;
    if (z > kMiddle) {
      const double inner = z + kB8 - kB9 / (z + kB10 + kB11 / (z + kB12));
      tail = kB1 * std::exp(-y) / (z - kB2 + kB3 / (z + kB4 + kB5 / (z - kB6 + kB7 / inner)));
    } else {
      tail = 0.5 - z * (kA1 - kA2 * y / (y + kA3 - kA4 / (y + kA5 + kA6 / (y + kA7))));
    }
  }
  return upper ? tail : 1.0 - tail;
}

}  // namespace linfit
