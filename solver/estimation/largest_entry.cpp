#include "estimation/largest_entry.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace linfit {
namespace {

// In the order of magnitude; behind infinity come the undefined values. The sign is shifted out.
std::uint64_t Rank(double value) {
  return std::bit_cast<std::uint64_t>(value) << 1;
}

}  // namespace

double LargestMagnitude(std::span<const double> values) {
  // Four maxima side by side: the comparisons of one would have to wait for one another.
  std::array<std::uint64_t, 4> largest{};
  std::size_t i = 0;
  for (; i + largest.size() <= values.size(); i += largest.size()) {
    for (std::size_t k = 0; k < largest.size(); ++k) {
      largest[k] = std::max(largest[k], Rank(values[i + k]));
    }
  }
  for (; i < values.size(); ++i) largest[0] = std::max(largest[0], Rank(values[i]));
  return std::bit_cast<double>(*std::max_element(largest.begin(), largest.end()) >> 1);
}

}  // namespace linfit
