// The routines of LAPACK that the command calls.
//
// One implementation per kind of build: lapack_linked.cpp has the library linked in;
// lapack_loaded.cpp loads the system's when it is needed, since that takes longer than a small
// solve.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace host {

class Lapack {
 public:
  // Throws std::runtime_error when the library can't be loaded, std::bad_alloc when there is no
  // memory for its buffers.
  Lapack();

  // DGEQRF: QR of the `rows` x `columns` matrix `a`, column-major with the leading dimension `ld`.
  // R stands in its upper triangle, the reflections below.
  void FactorQr(std::size_t rows, std::size_t columns, double* a, std::size_t ld);
  // DGEQP3: the same with column pivoting, of a square matrix. Column k of R is column result[k],
  // counted from 0, of `a` as it was.
  std::vector<std::size_t> FactorPivoted(std::size_t size, double* a);

 private:
  using Dgeqrf = void (*)(const int* m, const int* n, double* a, const int* lda, double* tau,
                          double* work, const int* lwork, int* info);
  using Dgeqp3 = void (*)(const int* m, const int* n, double* a, const int* lda, int* jpvt,
                          double* tau, double* work, const int* lwork, int* info);
  void Load();

  std::shared_ptr<void> library_;  // unloaded, it gives back its buffers, which the solver needs
  Dgeqrf dgeqrf_ = nullptr;
  Dgeqp3 dgeqp3_ = nullptr;
};

}  // namespace host
