// A vector for matrices that may be large: its memory comes as zeros, and with all of its pages.
#pragma once

#include <cstddef>
#include <vector>

namespace linfit {

// `bytes` of zeros; throws std::bad_alloc. The system is asked for all pages of a large piece at
// once, which takes half the time of one request for each page when it is first touched.
void* AllocateZeros(std::size_t bytes);
void FreeZeros(void* place);

// Elements without a value of their own are zero and aren't written once more.
template <class T>
struct ZeroAllocator {
  using value_type = T;
  T* allocate(std::size_t count) { return static_cast<T*>(AllocateZeros(count * sizeof(T))); }
  void deallocate(T* place, std::size_t) { FreeZeros(place); }
  void construct(T*) {}
  template <class Value>
  void construct(T* place, const Value& value) {
    *place = value;
  }
  bool operator==(const ZeroAllocator&) const = default;
};

// It may shrink; elements that it grows by are zero only in fresh memory.
using LargeArray = std::vector<double, ZeroAllocator<double>>;

}  // namespace linfit
