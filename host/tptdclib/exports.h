// The functions that the library exports, in the C types of the interface. Short strings stand in
// buffers of 256 bytes.
#pragma once

#include "base/library_entries.h"

HOST_EXPORT void XCreate(void** handle);
HOST_EXPORT void XFree(void** handle);
HOST_EXPORT int CXCheck(const char* name, int arguments, const int* codes, char* message);
HOST_EXPORT int CXAPIVersion(int version, char* message, int* compatibility);
// The library loads nothing itself: the path is kept and given back, in a buffer of 256 bytes.
HOST_EXPORT void CoptSetLoadPath(const char* directory);
HOST_EXPORT void CoptGetLoadPath(char* directory);

// Results of the two that read are 0 on success. Messages are counted from 1.
#define TPTDCLIB_FUNCTIONS(ENTRY)                                                \
  ENTRY(optReadDefinition, 3, 11)                                                \
  ENTRY(optReadParameterFile, 3, 11)                                             \
  ENTRY(optEchoSet, 0, 3)                                                        \
  ENTRY(optMessageCount, 3)                                                      \
  /* number; text, kind: 1 echoed line, 2 warning, 3 error, 0 no such message */ \
  ENTRY(optGetMessage, 0, 3, 12, 4)                                              \
  ENTRY(optGetIntStr, 3, 11)                                                     \
  ENTRY(optGetStrStr, 12, 11)
TPTDCLIB_FUNCTIONS(HOST_DECLARE)
