#include <dlfcn.h>

#include "binding/module.h"

namespace linfit {

std::string_view ModuleSuffix() {
  return ".so";
}

char DirectorySeparator() {
  return '/';
}

bool IsDirectorySeparator(char character) {
  return character == '/';
}

ModuleHandle LoadModule(const std::string& file_name) {
  return dlopen(file_name.c_str(), RTLD_NOW | RTLD_LOCAL);
}

std::string ModuleFailure() {
  const char* text = dlerror();
  return text == nullptr ? "" : text;
}

EntryPoint FindExport(ModuleHandle module, const std::string& name) {
  return reinterpret_cast<EntryPoint>(dlsym(module, name.c_str()));
}

void UnloadModule(ModuleHandle module) {
  dlclose(module);
}

}  // namespace linfit
