#include "tavolite/system/program.h"

namespace host {

std::filesystem::path OwnProgram() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

std::filesystem::path ProgramFileName(const std::string& name) {
  return name;
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
  return {argv, argv + argc};
}

void UseUtf8Streams() {}

}  // namespace host
