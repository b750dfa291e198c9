// A results-file library with the one fault that a compile definition names. It offers one
// function, tdxClose, and writes a trace line when it is unloaded.
#include <cstdio>
#include <cstring>

#include "tests/doubles/script.h"

namespace {

struct ModuleLife {
  ModuleLife() = default;
  ModuleLife(const ModuleLife&) = delete;
  ModuleLife& operator=(const ModuleLife&) = delete;
  ~ModuleLife() { doubles::Trace("unload"); }
};
ModuleLife module_life;
}  // namespace

#ifdef SPELLINGS
// Each function is exported under one spelling and all those that come later in the search; it
// gives the place of the spelling under which it was found.
#define CREATE xcreate_
#define FREE XFREE_
#define CHECK CXCheck_
#define VERSION cxapiversion
#define OFFERED(name) (std::strlen(name) > 0)
#define PLACE(spelling, place)         \
  DOUBLES_EXPORT int spelling(void*) { \
    return place;                      \
  }
PLACE(tdxClose, 1)
PLACE(tdxclose_, 2)
PLACE(TDXCLOSE_, 3)
PLACE(tdxClose_, 4)
PLACE(tdxclose, 5)
PLACE(TDXCLOSE, 6)
PLACE(tdxgetlasterror_, 2)
PLACE(TDXGETLASTERROR_, 3)
PLACE(tdxGetLastError_, 4)
PLACE(tdxgetlasterror, 5)
PLACE(TDXGETLASTERROR, 6)
PLACE(TDXERRORCOUNT_, 3)
PLACE(tdxErrorCount_, 4)
PLACE(tdxerrorcount, 5)
PLACE(TDXERRORCOUNT, 6)
PLACE(tdxDataWriteDone_, 4)
PLACE(tdxdatawritedone, 5)
PLACE(TDXDATAWRITEDONE, 6)
PLACE(tdxcurrentdim, 5)
PLACE(TDXCURRENTDIM, 6)
PLACE(TDXGETDLLVERSION, 6)
PLACE(TDXOPENWRITE, 6)
PLACE(TDXDATAWRITESTRSTART, 6)
PLACE(TDXDATAWRITESTR, 6)
PLACE(TDXERRORSTR, 6)
#else
#define CREATE XCreate
#define FREE XFree
#define CHECK CXCheck
#define VERSION CXAPIVersion
#define OFFERED(name) (std::strcmp(name, "tdxClose") == 0)
#ifndef LACKS_FUNCTION
DOUBLES_EXPORT int tdxClose(void*) {
  return 1;
}
#endif
#endif

#ifndef LACKS_CREATE
DOUBLES_EXPORT void CREATE(void** handle) {
  *handle = &module_life;
}
#endif
#ifndef LACKS_FREE
DOUBLES_EXPORT void FREE(void** handle) {
  *handle = nullptr;
}
#endif
DOUBLES_EXPORT int CHECK(const char* name, int, const int*, char*) {
  return OFFERED(name) ? 1 : 0;
}
DOUBLES_EXPORT int VERSION(int, char* message, [[maybe_unused]] int* compatibility) {
#ifdef LONG_REFUSAL
  std::memset(message, 'x', 255);  // all that a message buffer holds
  message[255] = '\0';
  return 0;
#else
  *message = '\0';
  return 1;
#endif
}
