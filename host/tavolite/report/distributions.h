// Probabilities of Student's t and of F.
#pragma once

namespace host {

// I_x(a, b) for x in [0, 1], a and b above zero, by the continued fraction of Abramowitz & Stegun
// (1964), 26.5.8, evaluated by Lentz's method (1976). `y` is 1 - x, which the caller may know
// better; relative error about 1e-12, and 1e-9 for a + b about 1e6.
double BetaProbability(double a, double b, double x, double y);

// The t with P(|T| < t) = level, 0 < level < 1, for `df` > 0 degrees of freedom; relative error
// about 1e-10. Undefined without degrees of freedom.
double StudentTwoSidedQuantile(double level, double df);

// P(F > f) for f >= 0 with `df1` and `df2` > 0 degrees of freedom (Abramowitz & Stegun, 26.6.2);
// undefined where one is not.
double FUpperTail(double f, double df1, double df2);

}  // namespace host
