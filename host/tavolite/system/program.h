// The running program itself and its command line.
//
// One implementation per system: program_posix.cpp, program_windows.cpp.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host {

// The path of the running program's own file. Throws std::system_error.
std::filesystem::path OwnProgram();

// "linfit" with the suffix that programs have on this system.
std::filesystem::path ProgramFileName(const std::string& name);

// The command line in UTF-8, the program's name first.
std::vector<std::string> Utf8Arguments(int argc, char** argv);

// Makes a console of this process take UTF-8, and standard input come as it is.
void UseUtf8Streams();

}  // namespace host
