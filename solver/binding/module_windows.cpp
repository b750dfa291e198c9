#include <windows.h>

#include "binding/module.h"

namespace linfit {

std::string_view ModuleSuffix() {
  return ".dll";
}

char DirectorySeparator() {
  return '\\';
}

bool IsDirectorySeparator(char character) {
  return character == '\\' || character == '/';
}

// A damaged file is a failure like any other; without this the system would show a dialog that an
// unattended run waits for.
ModuleHandle LoadModule(const std::string& file_name) {
  const UINT mode = GetErrorMode();
  SetErrorMode(mode | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  const ModuleHandle module = LoadLibraryA(file_name.c_str());
  SetErrorMode(mode);
  return module;
}

std::string ModuleFailure() {
  return "Windows error";
}

EntryPoint FindExport(ModuleHandle module, const std::string& name) {
  return reinterpret_cast<EntryPoint>(GetProcAddress(static_cast<HMODULE>(module), name.c_str()));
}

void UnloadModule(ModuleHandle module) {
  FreeLibrary(static_cast<HMODULE>(module));
}

}  // namespace linfit
