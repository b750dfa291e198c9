// The option library: option definitions and option files.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_OPT_FUNCTIONS(entry)                                 \
  entry(optReadDefinition, int(std::string_view file_name));        \
  entry(optEchoSet, void(int flag));                                \
  entry(optReadParameterFile, int(std::string_view file_name));     \
  entry(optMessageCount, int());                                    \
  entry(optGetMessage, void(int number, ShortOut text, int& kind)); \
  entry(optGetIntStr, int(std::string_view key));                   \
  entry(optGetStrStr, ShortResult(std::string_view key))

struct Opt : Library {
  Opt();

  bool optCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int optFree(Handle& handle) { return Free(handle); }
  bool optGetReady(std::span<char> message) { return GetReady({}, message); }
  bool optGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_OPT_FUNCTIONS(LINFIT_ENTRY);
};

}  // namespace linfit
