// The audit library.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_PAL_FUNCTIONS(entry)                    \
  entry(palSetAuditLine, void(std::string_view line)); \
  entry(palGetAuditLine, ShortResult())

struct Pal : Library {
  Pal();

  bool palXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int palXFree(Handle& handle) { return Free(handle); }
  bool palGetReady(std::span<char> message) { return GetReady({}, message); }
  bool palGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_PAL_FUNCTIONS(LINFIT_ENTRY);
};

}  // namespace linfit
