#include <dlfcn.h>

#include <stdexcept>

#include "tavolite/design/lapack.h"

namespace host {

namespace {

template <class Function>
Function Symbol(void* library, const char* name) {
  void* const symbol = dlsym(library, name);
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function>(symbol);
}

}  // namespace

void Lapack::Load() {
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
