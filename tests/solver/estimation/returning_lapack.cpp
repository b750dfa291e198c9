// A LAPACK whose handler of illegal arguments returns: DGELS says what is wrong and does nothing.
#include <cstddef>

extern "C" void dgels_(const char*, const int* m, const int* n, const int*, double*, const int*,
                       double*, const int*, double*, const int*, int* info, std::size_t) {
  *info = *m < 0 ? -2 : *m < *n ? -8 : 0;
}
