// Calls a function that the scripted library refuses and says what came back: a program of its own,
// since the call may end the process.
#include <cstdio>
#include <cstring>

#include "binding/tmomf9glu.h"

namespace {

int Ask(int& error_count, std::string_view message) {
  std::printf("callback %d: %.*s\n", error_count, static_cast<int>(message.size()), message.data());
  return error_count > 1 ? 1 : 0;
}

linfit::Tmo tmo;
linfit::Handle model = nullptr;

// Calls another missing function when it is first called.
int CallAnother(int& error_count, std::string_view /*message*/) {
  std::printf("nested %d\n", error_count);
  if (error_count == 1) tmo.tmoNameOptFile(model);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::array<char, 300> message;
  if (!tmo.tmoXCreate(model, message)) return 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "no-exit") == 0) tmo.SetExitIndicator(false);
    if (std::strcmp(argv[i], "no-screen") == 0) tmo.SetScreenIndicator(false);
    if (std::strcmp(argv[i], "exception") == 0) tmo.SetExceptionIndicator(true);
    if (std::strcmp(argv[i], "callback") == 0) tmo.SetErrorCallback(Ask);
    if (std::strcmp(argv[i], "nested") == 0) tmo.SetErrorCallback(CallAnother);
    if (std::strcmp(argv[i], "locking") == 0) tmo.SetLocking(true);
  }
  std::printf("result %g\n", tmo.tmoGetRhsOne(model, 1));
  std::printf("file \"%s\"\n", std::string(linfit::Trimmed(tmo.tmoNameOptFile(model))).c_str());
  std::printf("load %d\n", tmo.tmoLoadDataLegacy(model, message));
  std::printf("text \"%s\"\n", std::string(linfit::Trimmed(message)).c_str());
  std::printf("errors %d\n", tmo.APIErrorCount());
  return 0;
}
