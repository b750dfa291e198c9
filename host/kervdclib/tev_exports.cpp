// The environment's entries.
#include <cstdio>
#include <cstdlib>
#include <new>

#include "base/end_process.h"
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

// Runs `body` with the environment; a failure ends the process with a line in its files.
template <class Body>
auto With(void* handle, Body body) noexcept {
  Environment& environment = Of(handle);
  return host::OrEnd([&] { return body(environment); },
                     [&](std::string_view line) { environment.LastLine(line); });
}

// The directory with a separator at its end, as names are appended to it directly.
std::string SystemDirectory(const Environment& environment) {
  return environment.IsInitialized()
             ? host::Utf8(environment.Control().system_directory / std::filesystem::path())
             : std::string();
}

void CheckControlPath(std::string_view name) {
  if (name.empty()) throw host::FileError("no control file is named");
  std::error_code error;
  if (name.size() == host::kShortStringLength &&
      !std::filesystem::exists(host::FromUtf8(name), error)) {
    throw host::FileError("there is no control file " + std::string(name) +
                          ": of a longer path only these 255 bytes arrive; use a shorter one");
  }
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
  const bool done = *handle == nullptr || Of(*handle).End();
  host::FreeObject<EnvironmentObject>(handle);
  // The caller can't be told in any other way that what it has written isn't there.
  if (!done) std::exit(EXIT_FAILURE);
}

int tevInitEnvironmentLegacy(void* handle, const char* control_file) {
  return Guarded(1, [&] {
    try {
      const std::string_view name = ShortStringText(control_file);
      CheckControlPath(name);
      Of(handle).Initialize(host::FromUtf8(name));
      return 0;
    } catch (const std::bad_alloc&) {
      std::fputs("kervdclib64: out of memory\n", stderr);
      return 1;
    } catch (const std::exception& error) {
      std::fprintf(stderr, "kervdclib64: %s\n", error.what());
      return 1;
    }
  });
}

void tevLog(void* handle, const char* line) {
  With(handle, [&](Environment& environment) { environment.Log(ShortStringText(line)); });
}

void tevLogStat(void* handle, const char* line) {
  With(handle, [&](Environment& environment) {
    environment.Log(ShortStringText(line));
    environment.StatOwnLine(ShortStringText(line));
  });
}

void tevStat(void* handle, const char* line) {
  With(handle, [&](Environment& environment) { environment.Stat(ShortStringText(line)); });
}

void tevStatC(void* handle, const char* line) {
  With(handle, [&](Environment& environment) { environment.StatOwnLine(ShortStringText(line)); });
}

void tevStatAudit(void* handle, const char* line) {
  With(handle, [&](Environment& environment) { environment.StatOwnLine(ShortStringText(line)); });
}

void tevStatCon(void* handle) {
  With(handle, [&](Environment& environment) { environment.BeginBlock(); });
}

void tevStatCoff(void* handle) {
  With(handle, [&](Environment& environment) { environment.EndBlock(); });
}

void tevStatPChar(void* handle, const char* text) {
  With(handle, [&](Environment& environment) { environment.StatPiece(text); });
}

void tevGetStrOpt(void* handle, const char* name, char* value) {
  value[0] = '\0';
  With(handle, [&](const Environment& environment) {
    constexpr std::string_view kSystemDirectory = "namesysdir";
    if (host::LowerCase(ShortStringText(name)) == kSystemDirectory) {
      host::ToShortString(SystemDirectory(environment), value);
    }
  });
}

double tevTimeDiff(void* handle) {
  return Of(handle).TimeDiff();
}
