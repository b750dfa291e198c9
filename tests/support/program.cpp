#include "tests/support/program.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "tests/support/process.h"

namespace testing_support {

namespace {

std::string WithoutCarriageReturns(std::string text) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      continue;
    }
    text[kept++] = text[i];
  }
  text.resize(kept);
  return text;
}

}  // namespace

ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments, const RunOptions& options) {
  // Output goes through files: a pipe would be held open by whatever the program leaves behind.
  const TemporaryDirectory scratch;
  ProgramResult result;
  result.exit_code = RunProcess(program, arguments, options, scratch / "out", scratch / "err");
  result.out = ReadFile(scratch / "out");
  result.err = ReadFile(scratch / "err");
  return result;
}

TemporaryDirectory::TemporaryDirectory(const std::string& hint) {
  // A name that nobody has; process numbers come again soon on Windows.
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() /
            FromUtf8("linfit-test-" + std::to_string(random()) + hint);
  } while (!std::filesystem::create_directory(path_));
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TemporaryDirectory::operator/(const std::string& name) const {
  return path_ / FromUtf8(name);
}

std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw std::runtime_error("can't read " + Utf8(file));
  }
  std::ostringstream text;
  text << stream.rdbuf();
  return WithoutCarriageReturns(std::move(text).str());
}

void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  if (!stream.flush()) {
    throw std::runtime_error("can't write " + Utf8(file));
  }
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path FromUtf8(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

}  // namespace testing_support
