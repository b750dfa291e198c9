// The environment library: control file, status file, log, timing, system directory.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

struct Tev : Library {
  Tev();

  bool tevXCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tevXFree(Handle& handle) { return Free(handle); }
  bool tevGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tevGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(tevInitEnvironmentLegacy, int(std::string_view control_file));
  LINFIT_ENTRY(tevLog, void(std::string_view line));
  LINFIT_ENTRY(tevLogStat, void(std::string_view line));
  LINFIT_ENTRY(tevStat, void(std::string_view line));
  LINFIT_ENTRY(tevStatC, void(std::string_view line));
  LINFIT_ENTRY(tevStatAudit, void(std::string_view audit_line));
  LINFIT_ENTRY(tevStatCon, void());
  LINFIT_ENTRY(tevStatCoff, void());
  LINFIT_ENTRY(tevStatPChar, void(LongText text));
  LINFIT_ENTRY(tevGetStrOpt, ShortResult(std::string_view option));
  LINFIT_ENTRY(tevTimeDiff, double());
};

}  // namespace linfit
