// The option library: option definitions and option files.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

struct Opt : Library {
  Opt();

  bool optCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int optFree(Handle& handle) { return Free(handle); }
  bool optGetReady(std::span<char> message) { return GetReady({}, message); }
  bool optGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(optReadDefinition, int(std::string_view file_name));
  LINFIT_ENTRY(optEchoSet, void(int flag));
  LINFIT_ENTRY(optReadParameterFile, int(std::string_view file_name));
  LINFIT_ENTRY(optMessageCount, int());
  LINFIT_ENTRY(optGetMessage, void(int number, ShortOut text, int& kind));
  LINFIT_ENTRY(optGetIntStr, int(std::string_view key));
  LINFIT_ENTRY(optGetStrStr, ShortResult(std::string_view key));
};

}  // namespace linfit
