// Evaluation of polynomials by Horner's rule.
#pragma once

#include <cstddef>

namespace linfit {

// Coefficients from the highest power down to the constant; one multiplication and one addition a
// step, each rounded in T.
template <class T, std::size_t n>
constexpr T Horner(const T (&coefficients)[n], T t) {
  T value = coefficients[0];
  for (std::size_t i = 1; i < n; ++i) {
    value = value * t + coefficients[i];
  }
  return value;
}

}  // namespace linfit
