#include "regression/large_array.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace linfit {
namespace {

#ifdef MADV_POPULATE_WRITE
void RequestPages(void* place, std::size_t bytes) {
  constexpr std::size_t kLarge = std::size_t{1} << 20;
  constexpr std::size_t kPage = 4096;
  if (bytes < kLarge) return;
  const std::size_t before_page = (kPage - reinterpret_cast<std::uintptr_t>(place) % kPage) % kPage;
  // An older system refuses it, and brings the pages one by one.
  madvise(static_cast<char*>(place) + before_page, (bytes - before_page) / kPage * kPage,
          MADV_POPULATE_WRITE);
}
#else
void RequestPages(void*, std::size_t) {}
#endif

}  // namespace

void* AllocateZeros(std::size_t bytes) {
  void* const place = std::calloc(bytes, 1);
  if (place == nullptr) throw std::bad_alloc();
  RequestPages(place, bytes);
  return place;
}

void FreeZeros(void* place) {
  std::free(place);
}

}  // namespace linfit
