// The audit line: who solves, in which version.
#include <string>

#include "base/end_process.h"
#include "base/short_string.h"
#include "kervdclib/exports.h"

namespace {

struct Audit {
  std::string line;
};

std::string Printed(std::string_view line) {
  constexpr std::string_view kFront = "_TAVO_";
  constexpr std::string_view kBack = "_OVAT_";
  if (line.starts_with(kFront)) {
    line.remove_prefix(kFront.size());
  }
  if (line.ends_with(kBack)) {
    line.remove_suffix(kBack.size());
  }
  return std::string(line);
}

}  // namespace

void palXCreate(void** handle) {
  host::CreateObject<Audit>(handle);
}

void palXFree(void** handle) {
  host::FreeObject<Audit>(handle);
}

void palSetAuditLine(void* handle, const char* line) {
  host::OrEnd("kervdclib64",
              [&] { static_cast<Audit*>(handle)->line = Printed(host::ShortStringText(line)); });
}

void palGetAuditLine(void* handle, char* line) {
  host::ToShortString(static_cast<const Audit*>(handle)->line, line);
}
