// The bare linear algebra of one regression, as the measure for everything around it: DGELS and
// DPOTRI on the columns of a table that has been read already (random numbers of the same shape).
//
// usage: bare_solve N P      prints the seconds of the two calls, in that order
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern "C" {
void dgels_(const char* trans, const int* m, const int* n, const int* nrhs, double* a,
            const int* lda, double* b, const int* ldb, double* work, const int* lwork, int* info,
            std::size_t trans_length);
void dpotri_(const char* uplo, const int* n, double* a, const int* lda, int* info,
             std::size_t uplo_length);
}

namespace {

double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::vector<double> RandomNumbers(std::size_t count) {
  std::vector<double> numbers(count);
  std::uint64_t state = 88172645463325252U;
  for (double& number : numbers) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    number = static_cast<double>(state >> 11) * 0x1p-53 - 0.5;
  }
  return numbers;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bare_solve N P\n");
    return 2;
  }
  const int n = std::atoi(argv[1]);
  const int p = std::atoi(argv[2]);
  if (p < 1 || n < p) {
    std::fprintf(stderr, "bare_solve: needs N >= P >= 1\n");
    return 2;
  }
  std::vector<double> a = RandomNumbers(static_cast<std::size_t>(n) * static_cast<std::size_t>(p));
  std::vector<double> b = RandomNumbers(static_cast<std::size_t>(n));
  const int one = 1;
  const int query = -1;
  int info = 0;
  double size = 0.0;
  dgels_("N", &n, &p, &one, a.data(), &n, b.data(), &n, &size, &query, &info, 1);
  std::vector<double> work(static_cast<std::size_t>(size));
  const int lwork = static_cast<int>(size);

  const double start = Seconds();
  dgels_("N", &n, &p, &one, a.data(), &n, b.data(), &n, work.data(), &lwork, &info, 1);
  const double solved = Seconds();
  dpotri_("U", &p, a.data(), &n, &info, 1);
  std::printf("%.6f %.6f\n", solved - start, Seconds() - solved);
  return info == 0 ? 0 : 1;
}
