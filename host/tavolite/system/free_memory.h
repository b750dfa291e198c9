// Memory that the process has freed, for the use of others.
#pragma once

#include <cstdlib>  // defines __GLIBC__

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace host {

// The C library keeps freed memory for the process. Where it can, this gives it back to the system,
// which pays before the process waits for one that needs much.
inline void GiveBackFreeMemory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

}  // namespace host
