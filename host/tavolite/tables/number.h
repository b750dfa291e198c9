// Numbers in tables: decimal, with blanks around them and a sign before them.
#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace host {

enum class NumberKind {
  kNumber,    // finite; what is too small for a double is zero
  kMissing,   // empty, NA or nan
  kInfinite,  // written as inf or infinity
  kTooLarge,  // beyond the range of a double
  kText,      // anything else
};

struct ParsedNumber {
  NumberKind kind = NumberKind::kText;
  double value = 0.0;
};

// Takes the whole of `text`. The value is the double nearest to the decimal number.
ParsedNumber ParseNumber(std::string_view text);

namespace detail {

inline constexpr std::array<double, 23> kPowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline constexpr std::array<std::uint64_t, 9> kWholePowersOfTen{
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

// Eight digits as bytes 0 to 9, the first in the lowest byte, as a number: pairs, then fours, then
// eight are joined within one word.
inline std::uint64_t JoinDigits(std::uint64_t word) {
  word = word * 10 + (word >> 8U);
  constexpr std::uint64_t kPairs = 0x000000FF000000FFU;
  return (((word & kPairs) * (100 + (1000000ULL << 32U))) +
          (((word >> 16U) & kPairs) * (1 + (10000ULL << 32U)))) >>
         32U;
}

// How many of the eight characters are digits, counted from the lowest byte. A carry out of a
// character that is no digit reaches only those above it.
inline int CountDigits(std::uint64_t word) {
  const std::uint64_t others =
      ((word + 0x4646464646464646U) | (word - 0x3030303030303030U)) & 0x8080808080808080U;
  return std::countr_zero(others) / 8;
}

// Adds the digits at `p` to the end of `number` (modulo 2^64) and returns where they end. Up to
// eight are taken at once, however many there are: a loop would be mispredicted at the end of most
// numbers.
inline const char* ReadDigits(const char* p, const char* end, std::uint64_t& number) {
  if constexpr (std::endian::native == std::endian::little) {
    while (end - p >= 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, p, sizeof word);
      const int count = CountDigits(word);
      if (count == 0) {
        return p;
      }
      const std::uint64_t digits = (word - 0x3030303030303030U)
                                   << (64U - 8U * static_cast<unsigned>(count));
      number = number * kWholePowersOfTen[static_cast<std::size_t>(count)] + JoinDigits(digits);
      p += count;
      if (count < 8) {
        return p;
      }
    }
  }
  for (; p != end && *p >= '0' && *p <= '9'; ++p) {
    number = number * 10U + static_cast<std::uint64_t>(*p - '0');
  }
  return p;
}

// The exponent behind a mantissa; stays at `p` when there is none. Huge ones are cut, the sign
// kept.
inline const char* ReadExponent(const char* p, const char* end, long& exponent) {
  const char* q = p;
  if (q == end || (*q | 0x20) != 'e') {
    return p;
  }
  ++q;
  const bool negative = q != end && *q == '-';
  if (q != end && (*q == '-' || *q == '+')) {
    ++q;
  }
  long magnitude = 0;
  const char* digits = q;
  for (; q != end && *q >= '0' && *q <= '9'; ++q) {
    magnitude = magnitude < 100000 ? magnitude * 10 + (*q - '0') : magnitude;
  }
  if (q == digits) {
    return p;
  }
  exponent += negative ? -magnitude : magnitude;
  return q;
}

}  // namespace detail

// Reads the longest number at `p` and returns where it ends; null when none is there or it does not
// fit a double. Exact where the digits and the power of ten both are doubles, since then one
// operation rounds once (W. D. Clinger, How to read floating point numbers accurately, PLDI 1990);
// otherwise the standard library rounds.
inline const char* ScanNumber(const char* p, const char* end, double& value) {
  const bool negative = p != end && *p == '-';
  if (p != end && (*p == '-' || *p == '+')) {
    ++p;
  }
  const char* const start = p;
  std::uint64_t mantissa = 0;
  p = detail::ReadDigits(p, end, mantissa);
  std::ptrdiff_t digits = p - start;
  long exponent = 0;
  if (p != end && *p == '.') {
    const char* const fraction = p + 1;
    p = detail::ReadDigits(fraction, end, mantissa);
    digits += p - fraction;
    exponent = static_cast<long>(fraction - p);
  }
  if (digits == 0) {
    return nullptr;
  }
  p = detail::ReadExponent(p, end, exponent);
  constexpr std::uint64_t kExactIntegers = 1ULL << 53U;
  double magnitude = 0.0;
  if (digits <= 19 && mantissa <= kExactIntegers && exponent >= -22 && exponent <= 22) {
    magnitude = static_cast<double>(mantissa);
    magnitude = exponent < 0 ? magnitude / detail::kPowersOfTen[static_cast<std::size_t>(-exponent)]
                             : magnitude * detail::kPowersOfTen[static_cast<std::size_t>(exponent)];
  } else {
    const auto [last, code] = std::from_chars(start, p, magnitude);
    if (code != std::errc() || last != p || magnitude > 1.7976931348623157e308) {
      return nullptr;
    }
  }
  value = negative ? -magnitude : magnitude;
  return p;
}

}  // namespace host
