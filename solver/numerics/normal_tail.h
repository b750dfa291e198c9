// Tail area of the standard normal distribution in double precision.
//
// I. D. Hill: Algorithm AS 66, The normal integral, Appl. Statist. 22 (1973) 424-427, with the
// constants as published there.
#pragma once

namespace linfit {

// P(Z > z) for `upper`, else P(Z <= z).
[[nodiscard]] double NormalTail(double z, bool upper);

}  // namespace linfit
