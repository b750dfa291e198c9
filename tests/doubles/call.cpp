#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/doubles/script.h"

namespace doubles {

namespace {

// Loading and unloading of the module itself.
struct ModuleLife {
  ModuleLife() = default;
  ModuleLife(const ModuleLife&) = delete;
  ModuleLife& operator=(const ModuleLife&) = delete;
  ~ModuleLife() {
    if (trace_loading) Trace("unload " LINFIT_DOUBLE_NAME);
  }
  bool trace_loading = false;
};
ModuleLife module_life;

constexpr std::size_t kShortStringLength = 255;

}  // namespace

void Trace(const std::string& line) {
  const char* name = std::getenv("LINFIT_TEST_TRACE");
  if (name == nullptr || *name == '\0') return;
  std::FILE* file = std::fopen(name, "ab");
  if (file == nullptr) {
    std::fprintf(stderr, "LINFIT_TEST_TRACE: can't append to %s\n", name);
    std::abort();
  }
  std::fprintf(file, "%s\n", line.c_str());
  std::fclose(file);
}

void TraceLoading(const std::string& line) {
  if (CurrentScript().trace_loading) Trace(line);
}

void RequireLive(const ObjectKind& kind, const void* handle, const char* function) {
  if (handle == &kind && kind.live > 0) return;
  std::fprintf(stderr, "%s: the handle is not a live %s\n", function, kind.name);
  std::abort();
}

void Create(ObjectKind& kind, const char* entry, void** handle) {
  Trace(entry);
  const Answer* answer = FindAnswer(entry, "");
  if (answer != nullptr && answer->null) {
    *handle = nullptr;
    return;
  }
  ++kind.live;
  *handle = &kind;
}

void Free(ObjectKind& kind, const char* entry, void** handle) {
  Trace(entry);
  RequireLive(kind, *handle, entry);
  --kind.live;
  *handle = nullptr;
}

int Check(const char* entry, const char* name, int arguments, const int* codes) {
  std::string line = std::string(entry) + " " + Shown(std::string(name)) + " " + Shown(arguments);
  for (int k = 0; k <= arguments; ++k) line.append(" ").append(Shown(codes[k]));
  TraceLoading(line);
  return CurrentScript().refused.count(name) == 0;
}

int Version(const char* entry, int interface_version, char* message, int* compatibility) {
  ReadScript();
  if (CurrentScript().trace_loading && !module_life.trace_loading) {
    Trace("load " LINFIT_DOUBLE_NAME);
    module_life.trace_loading = true;
  }
  TraceLoading(std::string(entry) + " " + Shown(interface_version));
  const Answer* answer = FindAnswer(entry, Shown(interface_version));
  *compatibility = 0;
  if (answer != nullptr && answer->text) {
    std::snprintf(message, 256, "%s", answer->text->c_str());
  }
  return answer != nullptr && answer->number ? static_cast<int>(*answer->number) : 1;
}

std::string Shown(int value) {
  return std::to_string(value);
}

std::string Shown(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string Shown(const std::string& text) {
  std::string shown = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      shown += '\\';
      shown += character;
    } else if (byte < ' ' || byte > '~') {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(byte));
      shown += escape;
    } else {
      shown += character;
    }
  }
  return shown + "\"";
}

std::string FromShort(const char* short_string) {
  return {short_string + 1, static_cast<unsigned char>(*short_string)};
}

void ToShort(const std::string& text, char* buffer) {
  const std::size_t length = std::min(text.size(), kShortStringLength);
  buffer[0] = static_cast<char>(static_cast<unsigned char>(length));
  std::copy_n(text.begin(), length, buffer + 1);
}

Call::Call(const ObjectKind& kind, const void* handle, const char* function,
           const std::vector<std::string>& arguments)
    : answer_((CountCall(function), FindAnswer(function, arguments.empty() ? "" : arguments[0]))) {
  RequireLive(kind, handle, function);
  std::string line = function;
  for (const std::string& argument : arguments) line.append(" ").append(argument);
  Trace(line);
}

int Call::Int(int otherwise) const {
  return answer_ != nullptr && answer_->number ? static_cast<int>(*answer_->number) : otherwise;
}

double Call::Real(double otherwise) const {
  return answer_ != nullptr && answer_->number ? *answer_->number : otherwise;
}

const Call& Call::Give(char* buffer, const std::string& otherwise) const {
  ToShort(answer_ != nullptr && answer_->text ? *answer_->text : otherwise, buffer);
  return *this;
}

}  // namespace doubles
