// Names of rows and columns as model files have them, taken apart into a symbol and its labels.
//
//   coeff                 a symbol without labels
//   coeff[a,'it''s',1]    MathProg: labels are bare or in single quotes, a quote inside is doubled
//   coeff(a,b) coeff[a,b] MPS and LP files, quotes as above where there are any
//   coeff_1_2             MPS and LP files on request: trailing groups of digits are labels
#pragma once

#include <string_view>

#include "instance/names.h"

namespace host {

enum class NameStyle { kMathProg, kBrackets, kBracketsOrUnderscores };

// Throws InputError, with the name in the text, when the name was cut, has more than kMaxLabels
// labels, or a symbol or label that is empty or longer than kMaxNameLength bytes. A name of an MPS
// or LP file that does not have the form of a symbol with labels is a symbol as a whole.
ElementName ParseName(std::string_view name, NameStyle style);

}  // namespace host
