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

// 0 on success.
HOST_EXPORT int optReadDefinition(void* handle, const char* file);
HOST_EXPORT int optReadParameterFile(void* handle, const char* file);
HOST_EXPORT void optEchoSet(void* handle, int on);
// Messages are counted from 1. `kind`: 1 echoed line, 2 warning, 3 error, 0 no such message.
HOST_EXPORT int optMessageCount(void* handle);
HOST_EXPORT void optGetMessage(void* handle, int number, char* text, int* kind);
HOST_EXPORT int optGetIntStr(void* handle, const char* key);
HOST_EXPORT void optGetStrStr(void* handle, const char* key, char* value);
