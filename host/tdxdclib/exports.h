// The functions that the library exports, in the C types of the interface. Short strings stand in
// buffers of 256 bytes.
#pragma once

#include "base/library_entries.h"

HOST_EXPORT void XCreate(void** handle);
HOST_EXPORT void XFree(void** handle);
HOST_EXPORT int CXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CXAPIVersion(int version, char* message, int* compatibility);
// The library loads nothing itself: the path is kept and given back, in a buffer of 256 bytes.
HOST_EXPORT void CtdxSetLoadPath(const char* directory);
HOST_EXPORT void CtdxGetLoadPath(char* directory);

// Int results are 1 on success and 0 on failure, but for tdxClose, where 0 is success, and the last
// three, which are numbers.
#define TDXDCLIB_FUNCTIONS(ENTRY)                                                                  \
  ENTRY(tdxGetDLLVersion, 3, 12)                                                                   \
  /* file, producer, error number */                                                               \
  ENTRY(tdxOpenWrite, 3, 11, 11, 4)                                                                \
  /* name, explanatory text, dimension, type, user information */                                  \
  ENTRY(tdxDataWriteStrStart, 3, 11, 11, 3, 3, 3)                                                  \
  /* keys: as many short strings as the symbol has dimensions; the first of the 5 values counts */ \
  ENTRY(tdxDataWriteStr, 3, 55, 53)                                                                \
  ENTRY(tdxDataWriteDone, 3)                                                                       \
  ENTRY(tdxClose, 3)                                                                               \
  /* error number, its text */                                                                     \
  ENTRY(tdxErrorStr, 3, 3, 12)                                                                     \
  ENTRY(tdxGetLastError, 3)                                                                        \
  ENTRY(tdxErrorCount, 3)                                                                          \
  ENTRY(tdxCurrentDim, 3)
TDXDCLIB_FUNCTIONS(HOST_DECLARE)
