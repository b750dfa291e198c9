// The environment library: control file, status file, log, timing, system directory.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_TEV_FUNCTIONS(entry)                                    \
  entry(tevInitEnvironmentLegacy, int(std::string_view control_file)); \
  entry(tevLog, void(std::string_view line));                          \
  entry(tevLogStat, void(std::string_view line));                      \
  entry(tevStat, void(std::string_view line));                         \
  entry(tevStatC, void(std::string_view line));                        \
  entry(tevStatAudit, void(std::string_view audit_line));              \
  entry(tevStatCon, void());                                           \
  entry(tevStatCoff, void());                                          \
  entry(tevStatPChar, void(LongText text));                            \
  entry(tevGetStrOpt, ShortResult(std::string_view option));           \
  entry(tevTimeDiff, double())

struct Tev : Library {
  Tev();

  bool tevXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tevXFree(Handle& handle) { return Free(handle); }
  bool tevGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tevGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_TEV_FUNCTIONS(LINFIT_ENTRY);
};

}  // namespace linfit
