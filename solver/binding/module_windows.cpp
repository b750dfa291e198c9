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

ModuleHandle LoadModule(const std::string& file_name) {
  return LoadLibraryA(file_name.c_str());
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
