// The largest absolute value of an array.
#pragma once

#include <span>

namespace linfit {

// As LAPACK's DLANGE with norm 'M' has it, in a fraction of the time: an undefined value when
// there is one among `values`, infinity when there is an infinite one, 0 for none.
[[nodiscard]] double LargestMagnitude(std::span<const double> values);

}  // namespace linfit
