// Regularised incomplete beta function ratio in single precision.
//
// A. R. DiDonato, A. H. Morris: Algorithm 708, Significant digit computation of the incomplete
// beta function ratios, ACM Trans. Math. Softw. 18 (1992) 360-373.
//
// The results are defined to the last bit: every operation is one rounded `float` operation in the
// published order. Contraction to fused multiply-add or flush-to-zero would change them.
#pragma once

namespace linfit {

// w = I_x(a, b) and w1 = 1 - w for a, b >= 0, not both 0, and x + y = 1 with x, y in [0, 1].
// ierr: 0 no error, else w = w1 = 0 and
//   1 a or b negative, 2 a = b = 0, 3 x outside [0, 1], 4 y outside [0, 1], 5 x + y is not 1,
//   6 x = a = 0, 7 y = b = 0.
// An undefined argument gives undefined w and w1 with ierr 0.
void BRATIO(float a, float b, float x, float y, float& w, float& w1, int& ierr);

}  // namespace linfit
