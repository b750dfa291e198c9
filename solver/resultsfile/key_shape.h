// How the records of the results file are keyed: by the labels of the elements' common symbol, or
// by one flat key each. Decided once for the coefficients and once for the observations.
#pragma once

#include <cstdint>
#include <string>

#include "regression/labelled_name.h"
#include "regression/outcome.h"

namespace linfit {

enum class KeyMode : std::int32_t {
  kUndecided = 0,
  kStructured = 1,  // keys are the labels of the element's own symbol
  kFlat = 2,        // one key, the element's flat key
};

struct KeyShape {
  KeyMode key_mode = KeyMode::kUndecided;
  std::int32_t key_dimension = 0;          // key positions that one element contributes
  std::int32_t common_dimension = -1;      // -1 while none is seen and after a difference
  std::int32_t common_symbol_number = -1;  // -1 while none is seen and after a difference
  std::string common_symbol_name;          // of the first element that isn't the intercept
  std::int32_t intercept_column = -1;  // coefficients only: one-based, the last with dimension -1
};

// Decides the shape of the coefficients' keys. `shape` comes with its initial values. Structured
// keys need one symbol with 1 to 10 labels (`covar` has each coefficient's keys twice); an added
// intercept then gets that symbol, with "Intercept" for every label. Otherwise every record gets a
// flat key: its symbol name when all coefficients are scalars, else "x" and its number;
// "Intercept" for an added intercept that the scan came to.
void AnalyseCoefficientKeys(NameTable& names, KeyShape& shape);

// The same for the observations: structured keys need one symbol with labels, and the flat keys
// are "r" and the number. Fails when a dimension is -1, which no row has.
[[nodiscard]] Failure AnalyseObservationKeys(NameTable& names, KeyShape& shape);

}  // namespace linfit
