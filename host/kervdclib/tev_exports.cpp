// The environment's entries.
#include <cstdio>

#include "base/short_string.h"
#include "base/text.h"
#include "kervdclib/environment.h"
#include "kervdclib/exports.h"

using host::Environment;
using host::EnvironmentObject;
using host::Guarded;
using host::ShortStringText;

namespace {

Environment& Of(void* handle) {
  return **static_cast<EnvironmentObject*>(handle);
}

// The directory with a separator at its end, as names are appended to it directly.
std::string SystemDirectory(const Environment& environment) {
  return environment.IsInitialized()
             ? host::Utf8(environment.Control().system_directory / std::filesystem::path())
             : std::string();
}

}  // namespace

void tevXCreate(void** handle) {
  *handle = Guarded<void*>(nullptr, [] {
    return static_cast<void*>(new EnvironmentObject(std::make_shared<Environment>()));
  });
}

void tevXCreateD(void** handle, const char* /*directory*/) {
  tevXCreate(handle);
}

void tevXFree(void** handle) {
  host::FreeObject<EnvironmentObject>(handle);
}

int tevInitEnvironmentLegacy(void* handle, const char* control_file) {
  return Guarded(1, [&] {
    try {
      const std::string_view name = ShortStringText(control_file);
      if (name.empty()) {
        throw host::FileError("no control file is named");
      }
      Of(handle).Initialize(host::FromUtf8(name));
      return 0;
    } catch (const std::exception& error) {
      std::fprintf(stderr, "kervdclib64: %s\n", error.what());
      return 1;
    }
  });
}

void tevLog(void* handle, const char* line) {
  Guarded([&] { Of(handle).Log(ShortStringText(line)); });
}

void tevLogStat(void* handle, const char* line) {
  Guarded([&] {
    Of(handle).Log(ShortStringText(line));
    Of(handle).StatOwnLine(ShortStringText(line));
  });
}

void tevStat(void* handle, const char* line) {
  Guarded([&] { Of(handle).Stat(ShortStringText(line)); });
}

void tevStatC(void* handle, const char* line) {
  Guarded([&] { Of(handle).StatOwnLine(ShortStringText(line)); });
}

void tevStatAudit(void* handle, const char* line) {
  Guarded([&] { Of(handle).StatOwnLine(ShortStringText(line)); });
}

void tevStatCon(void* handle) {
  Guarded([&] { Of(handle).BeginBlock(); });
}

void tevStatCoff(void* handle) {
  Guarded([&] { Of(handle).EndBlock(); });
}

void tevStatPChar(void* handle, const char* text) {
  Guarded([&] { Of(handle).StatPiece(text); });
}

void tevGetStrOpt(void* handle, const char* name, char* value) {
  value[0] = '\0';
  Guarded([&] {
    constexpr std::string_view kSystemDirectory = "namesysdir";
    if (host::LowerCase(ShortStringText(name)) == kSystemDirectory) {
      host::ToShortString(SystemDirectory(Of(handle)), value);
    }
  });
}

double tevTimeDiff(void* handle) {
  return Guarded(0.0, [&] { return Of(handle).TimeDiff(); });
}
