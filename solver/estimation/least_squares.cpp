#include "estimation/least_squares.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "estimation/largest_entry.h"
#include "text/real_text.h"
#include "text/trimmed.h"

// LAPACK. Character arguments have a hidden length, after all others.
extern "C" {
// Least squares by QR. `work[0]` receives the best workspace size when `lwork` is -1. `info` > 0:
// the factor R has a zero on its diagonal, A isn't of full rank.
void dgels_(const char* trans, const int* m, const int* n, const int* nrhs, double* a,
            const int* lda, double* b, const int* ldb, double* work, const int* lwork, int* info,
            std::size_t trans_length);
// Inverse of U'U from its triangular factor U. `info` > 0: U has a zero on its diagonal.
void dpotri_(const char* uplo, const int* n, double* a, const int* lda, int* info,
             std::size_t uplo_length);
// Constants of double precision; 'S': smallest number whose reciprocal is finite, 'P': precision.
double dlamch_(const char* cmach, std::size_t cmach_length);

// LAPACK's handler of illegal arguments. Vendors' handlers differ: some return to the caller, and
// the texts aren't the same; this one takes their place. It must stand in the source file that
// calls LAPACK (in a file of its own a static library would never hand it to the linker), and be
// visible where LAPACK is a shared library.
[[gnu::visibility("default")]] void xerbla_(const char* routine, const int* argument,
                                            std::size_t routine_length) {
  const std::string_view name = linfit::Trimmed({routine, routine_length});
  std::printf(" ** On entry to %-6.*s parameter number %2d had an illegal value\n",
              static_cast<int>(name.size()), name.data(), *argument);
  std::fflush(stdout);
  std::exit(EXIT_SUCCESS);
}

// The place where LAPACK takes its tuning from; its Users' Guide (section 6.2) wants it adapted to
// the machine. The answers are those of LAPACK's own function for what DGELS and DPOTRI ask, but
// for one: a matrix of 16 to 128 columns isn't factorized column by column, since that reads all of
// a tall one twice for each of its columns; in blocks of 8 it takes two thirds of the time.
//   ispec 1: block size; 2: smallest one of use; 3: number of columns up to which blocks aren't
//   n1, n2: rows and columns of the matrix that DGEQRF factorizes
[[gnu::visibility("default")]] int ilaenv_(const int* ispec, const char* routine, const char*,
                                           const int* n1, const int* n2, const int*, const int*,
                                           std::size_t routine_length, std::size_t) {
  const std::string_view name(routine, routine_length);
  const bool tall = name == "DGEQRF" && *n1 >= 1000 && *n2 >= 16 && *n2 <= 128;
  switch (*ispec) {
    case 1:
      return tall ? 8 : name == "DTRTRI" || name == "DLAUUM" ? 64 : 32;
    case 2:
      return 2;
    case 3:
      return tall ? 0 : 128;
    default:
      return 1;
  }
}

// DGELS asks for the largest magnitude of its matrix to see whether it has to be scaled: the same
// value as LAPACK's own function has, at the speed of the memory. That is the only norm that is
// asked for here.
[[gnu::visibility("default")]] double dlange_(const char* norm, const int* m, const int* n,
                                              const double* a, const int* lda, double*,
                                              std::size_t) {
  if (*norm != 'M') {
    const int argument = 1;
    xerbla_("DLANGE", &argument, 6);
  }
  const auto column_step = static_cast<std::size_t>(*lda);
  const std::size_t rows = linfit::ArraySize(*m);
  double largest = 0.0;
  for (std::size_t j = 0; j < linfit::ArraySize(*n); ++j) {
    const double of_columns[] = {largest, linfit::LargestMagnitude({a + j * column_step, rows})};
    largest = linfit::LargestMagnitude(of_columns);
  }
  return largest;
}
}

namespace linfit {
namespace {

// Halves go away from zero.
int RoundedToInteger(double value) {
  return static_cast<int>(value < 0.0 ? value - 0.5 : value + 0.5);
}

// DGELS rescales a matrix outside this range; such a problem is refused instead.
Failure CheckScaling(const LargeArray& a) {
  const double largest = LargestMagnitude(a);
  const double smallest_safe = dlamch_("S", 1) / dlamch_("P", 1);
  const double largest_safe = 1.0 / smallest_safe;
  const std::string text = "Jacobian very poorly scaled: ";
  if (largest > 0.0 && largest < smallest_safe) {
    return text + "max elem <" + FreeReal(smallest_safe);
  }
  if (largest > largest_safe) return text + "max elem >" + FreeReal(largest_safe);
  if (largest == 0.0) return text + "all elem zero";
  return {};
}

// A BLAS may need a buffer of its own for its first product; OpenBLAS asks for 128 MB of address
// space, and asks again for ever when there isn't as much. So the room has to be there before: it
// is taken and given back, which touches no page of it.
void RequireRoomForBlas() {
  constexpr std::size_t kBuffer = std::size_t{130} << 20;
  char* volatile room = static_cast<char*>(std::malloc(kBuffer));  // volatile: not to be left out
  if (room == nullptr) throw std::bad_alloc();
  std::free(room);
}

// The symmetric p x p matrix whose upper triangle is that of `a` (leading dimension n).
std::vector<double> SymmetricFromUpper(const LargeArray& a, std::size_t n, std::size_t p) {
  std::vector<double> c(p * p);
  for (std::size_t j = 0; j < p; ++j) {
    for (std::size_t i = 0; i <= j; ++i) c[i + j * p] = c[j + i * p] = a[i + j * n];
  }
  return c;
}

}  // namespace

Failure SolveLeastSquares(const RegressionData& data, RegressionResult& result,
                          const LineSink& diagnostic) {
  const int n = data.n;
  const int p = data.p;
  const int one = 1;
  int info = 0;
  LargeArray a(data.DesignMatrix.size());
  std::copy(data.DesignMatrix.begin(), data.DesignMatrix.end(), a.begin());
  std::vector<double> b(data.ResponseVector);

  double best_size = 0.0;
  const int query = -1;
  dgels_("N", &n, &p, &one, a.data(), &n, b.data(), &n, &best_size, &query, &info, 1);
  diagnostic(" DGELS(LAPACK): workspace:" + FreeReal(best_size));
  const int size = RoundedToInteger(best_size);
  std::vector<double> workspace(ArraySize(size));

  if (Failure failure = CheckScaling(a)) return failure;
  RequireRoomForBlas();
  dgels_("N", &n, &p, &one, a.data(), &n, b.data(), &n, workspace.data(), &size, &info, 1);
  diagnostic(" DGELS(LAPACK): info: " + std::to_string(info));
  // DGELS refuses such a shape by itself, since `b` holds n values only; a handler that returns to
  // it leads here.
  if (n < p) return "Should have n>=p";
  result.estimate.assign(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(ArraySize(p)));

  dpotri_("U", &p, a.data(), &n, &info, 1);
  diagnostic(" DPOTRI(LAPACK) : info: " + std::to_string(info));
  result.unscaled_covariance = SymmetricFromUpper(a, ArraySize(n), ArraySize(p));
  return {};
}

}  // namespace linfit
