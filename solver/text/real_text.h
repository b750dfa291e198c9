// Real numbers as text, the same on every system and in every locale. An exponent's letter is "E".
// Minus zero loses its sign. Infinite and undefined values are "Infinity", "-Infinity" and "NaN".
#pragma once

#include <string>

namespace linfit {

// `value` right-justified in `width` characters, with `digits` digits after the decimal point.
//
//   fixed form     when at least three significant digits show (0, or |value| >= 10^(2 - digits))
//                  and the rounded number fits the width: "      0.00100" to "9999999.99999"
//   exponent form  otherwise, one digit before the point and an exponent of at least two digits:
//                  "  9.99000E-04", "-1.79769E+308"
//
// A width of digits + 8 holds every number; in a narrower field a number may be wider than the
// field.
std::string RealField(double value, int width, int digits);

// In exponent form, with `digits` digits after the point: "1.00000E+300".
std::string ExponentForm(double value, int digits);

// The shortest text that reads back as `value`, after one blank: " 224", " 1.5E-300".
std::string FreeReal(double value);

}  // namespace linfit
