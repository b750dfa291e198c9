#include <windows.h>
// windows.h comes before the headers that need it.
#include <shellapi.h>

#include "driver/arguments.h"

namespace linfit {

// The arguments of main have lost what the system's code page doesn't hold; the wide command line
// has everything.
std::string FirstArgument(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::string argument;
  if (arguments != nullptr && count > 1) {
    const wchar_t* const wide = arguments[1];
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (size > 1) {  // the terminating zero counts
      argument.resize(static_cast<std::size_t>(size));
      WideCharToMultiByte(CP_UTF8, 0, wide, -1, argument.data(), size, nullptr, nullptr);
      argument.pop_back();
    }
  }
  LocalFree(arguments);
  return argument;
}

}  // namespace linfit
