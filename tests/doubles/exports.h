// The entries that every scripted library has, and the proof that its functions have the C types
// that the solver calls them with.
#pragma once

#include <type_traits>

#include "tests/doubles/script.h"

#define DOUBLES_ENTRIES(object, prefix, check_prefix)                                            \
  DOUBLES_EXPORT void prefix##XCreate(void** handle) {                                           \
    doubles::Create(object, #prefix "XCreate", handle);                                          \
  }                                                                                              \
  DOUBLES_EXPORT void prefix##XFree(void** handle) {                                             \
    doubles::Free(object, #prefix "XFree", handle);                                              \
  }                                                                                              \
  DOUBLES_EXPORT int C##check_prefix##XCheck(const char* name, int arguments, const int* codes,  \
                                             char*) {                                            \
    return doubles::Check("C" #check_prefix "XCheck", name, arguments, codes);                   \
  }                                                                                              \
  DOUBLES_EXPORT int C##check_prefix##XAPIVersion(int version, char* message, int* compatible) { \
    return doubles::Version("C" #check_prefix "XAPIVersion", version, message, compatible);      \
  }

// For the solver's lists of functions.
#define DOUBLES_SAME_TYPE(name, ...) \
  static_assert(std::is_same_v<decltype(&::name), linfit::Abi<__VA_ARGS__>::c_function>)
