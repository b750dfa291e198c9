#include "tavolite/design/lapack.h"

extern "C" {
void dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
             const int* lwork, int* info);
void dgeqp3_(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau,
             double* work, const int* lwork, int* info);
}

namespace host {

void Lapack::Load() {
  dgeqrf_ = &::dgeqrf_;
  dgeqp3_ = &::dgeqp3_;
}

}  // namespace host
