#include "tavolite/design/lapack.h"

#include <algorithm>
#include <memory>

namespace host {

namespace {

// What an optimised library takes for its buffers. Some try for ever to get them, so that it is
// better to find out before.
constexpr std::size_t kBuffers = std::size_t{64} << 20U;

constexpr int kBestSize = -1;  // as `lwork`: work[0] receives the best size

int Int(std::size_t size) {
  return static_cast<int>(size);
}

}  // namespace

Lapack::Lapack() {
  {
    const auto buffers = std::make_unique_for_overwrite<std::byte[]>(kBuffers);
    [[maybe_unused]] std::byte* const volatile needed = buffers.get();  // not optimised away
  }
  Load();
}

void Lapack::FactorQr(std::size_t rows, std::size_t columns, double* a, std::size_t ld) {
  const int m = Int(rows);
  const int n = Int(columns);
  const int lda = Int(ld);
  std::vector<double> tau(std::min(rows, columns));
  std::vector<double> work(1);
  int info = 0;
  dgeqrf_(&m, &n, a, &lda, tau.data(), work.data(), &kBestSize, &info);
  work.resize(static_cast<std::size_t>(work[0]));
  const int size = Int(work.size());
  dgeqrf_(&m, &n, a, &lda, tau.data(), work.data(), &size, &info);
}

std::vector<std::size_t> Lapack::FactorPivoted(std::size_t size, double* a) {
  const int n = Int(size);
  std::vector<int> pivots(size, 0);  // 0: the column may go anywhere
  std::vector<double> tau(size);
  std::vector<double> work(1);
  int info = 0;
  dgeqp3_(&n, &n, a, &n, pivots.data(), tau.data(), work.data(), &kBestSize, &info);
  work.resize(static_cast<std::size_t>(work[0]));
  const int work_size = Int(work.size());
  dgeqp3_(&n, &n, a, &n, pivots.data(), tau.data(), work.data(), &work_size, &info);
  std::vector<std::size_t> order(size);
  std::ranges::transform(pivots, order.begin(),
                         [](int pivot) { return static_cast<std::size_t>(pivot - 1); });
  return order;
}

}  // namespace host
