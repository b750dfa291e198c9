#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

#include "tavolite/system/program.h"
// After windows.h, which it needs.
#include <shellapi.h>

#include "tavolite/system/windows_support.h"

namespace host {

std::filesystem::path OwnProgram() {
  std::wstring path(32768, L'\0');
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  if (size == 0) FailWithLastError("own program");
  path.resize(size);
  return path;
}

std::filesystem::path ProgramFileName(const std::string& name) {
  return name + ".exe";
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv, argv + argc};
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(ToUtf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void UseUtf8Streams() {
  _setmode(_fileno(stdin), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
}

}  // namespace host
