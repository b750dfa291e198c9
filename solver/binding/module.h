// Shared libraries as the operating system gives them. One source per system implements this.
#pragma once

#include <string>
#include <string_view>

namespace linfit {

using ModuleHandle = void*;
// Some function; it is cast to its real type before it is called.
using EntryPoint = void (*)();

std::string_view ModuleSuffix();            // ".dll", ".so"
char DirectorySeparator();                  // the one that is put in
bool IsDirectorySeparator(char character);  // any that is accepted

// Loads a library with the system's own search; null when that fails.
ModuleHandle LoadModule(const std::string& file_name);
// Why the last LoadModule failed.
std::string ModuleFailure();
// The address of an exported name, spelled exactly so; null when there is none.
EntryPoint FindExport(ModuleHandle module, const std::string& name);
void UnloadModule(ModuleHandle module);

}  // namespace linfit
