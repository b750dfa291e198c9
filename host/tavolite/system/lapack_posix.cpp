#include <dlfcn.h>

#include <cstddef>
#include <memory>
#include <stdexcept>

#include "tavolite/system/lapack.h"

namespace host {

namespace {

// What an optimised library takes for its buffers. Some try for ever to get them, so that it is
// better to find out before.
constexpr std::size_t kBuffers = std::size_t{64} << 20U;

template <class Function>
Function Symbol(void* library, const char* name) {
  void* const symbol = dlsym(library, name);
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function>(symbol);
}

}  // namespace

void Lapack::Load() {
  {
    const auto buffers = std::make_unique_for_overwrite<std::byte[]>(kBuffers);
    [[maybe_unused]] std::byte* const volatile needed = buffers.get();  // not optimised away
  }
  library_ = dlopen("liblapack.so.3", RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) throw std::runtime_error(dlerror());
  dgeqrf_ = Symbol<Dgeqrf>(library_, "dgeqrf_");
  dgeqp3_ = Symbol<Dgeqp3>(library_, "dgeqp3_");
}

// Unloaded, it gives back the memory of its buffers, which the solver needs.
Lapack::~Lapack() {
  dlclose(library_);
}

}  // namespace host
