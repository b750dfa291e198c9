// The audit library.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

struct Pal : Library {
  Pal();

  bool palXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int palXFree(Handle& handle) { return Free(handle); }
  bool palGetReady(std::span<char> message) { return GetReady({}, message); }
  bool palGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(palSetAuditLine, void(std::string_view line));
  LINFIT_ENTRY(palGetAuditLine, ShortResult());
};

}  // namespace linfit
