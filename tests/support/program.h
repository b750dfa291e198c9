// Running programs and handling files, for the tests, on Linux and on Windows.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace testing_support {

struct ProgramResult {
  int exit_code = -1;  // 128 + the signal's number when a signal ended the program (Linux)
  std::string out;     // standard output, "\r\n" made "\n"
  std::string err;     // standard error, likewise
};

struct RunOptions {
  std::filesystem::path directory;                 // working directory; empty: the caller's
  std::map<std::string, std::string> environment;  // set on top of the caller's
};

// Runs a program to its end without standard input. Arguments are handed over as they are.
ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments, const RunOptions& options = {});

// Sets an environment variable of the running program, for libraries that it loads.
void SetVariable(const std::string& name, const std::string& value);

// A directory of its own below the system's temporary directory, removed with all it holds at the
// end.
class TemporaryDirectory {
 public:
  // `hint` is part of its name: a blank or an umlaut, say.
  explicit TemporaryDirectory(const std::string& hint = "");
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

// Whole files; reading makes "\r\n" into "\n". Both throw std::runtime_error with the file's name.
std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& text);

std::vector<std::string> Lines(const std::string& text);
// UTF-8, on every system.
std::string Utf8(const std::filesystem::path& path);
std::filesystem::path FromUtf8(const std::string& text);

}  // namespace testing_support
