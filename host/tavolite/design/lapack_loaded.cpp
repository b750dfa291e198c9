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
  void* const library = dlopen("liblapack.so.3", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw std::runtime_error(dlerror());
  library_ = {library, [](void* loaded) { dlclose(loaded); }};
  dgeqrf_ = Symbol<Dgeqrf>(library, "dgeqrf_");
  dgeqp3_ = Symbol<Dgeqp3>(library, "dgeqp3_");
}

}  // namespace host
