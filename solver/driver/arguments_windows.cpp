#include <windows.h>
// windows.h comes before the headers that need it.
#include <shellapi.h>

#include <memory>

#include "driver/arguments.h"

namespace linfit {
namespace {

std::string ToUtf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (size < 1) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.pop_back();  // the terminating zero counts
  return text;
}

}  // namespace

// The arguments of main have lost what the system's code page doesn't hold; the wide command line
// has everything. Theirs are better than none when it can't be split.
std::string FirstArgument(int argc, char** argv) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> arguments(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  if (arguments == nullptr) return argc > 1 ? argv[1] : "";
  return count > 1 ? ToUtf8(arguments.get()[1]) : "";
}

}  // namespace linfit
