// Text files: UTF-8 everywhere, lines end in "\n" or "\r\n".
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// A file that can't be read, written or understood; the text names the file and, where there is
// one, the line.
struct FileError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A file that is there, but that the system doesn't let be read.
struct UnreadableFile : FileError {
  using FileError::FileError;
};

inline void Require(bool condition, const char* fault) {
  if (!condition) throw FileError(fault);
}

// UTF-8 on every system. FromUtf8 throws FileError where the system can't have such a path.
std::string Utf8(const std::filesystem::path& path);
std::filesystem::path FromUtf8(std::string_view text);

// The lines of a text file without their ends; a byte-order mark in front is left out. Throws
// FileError when the file can't be read or holds a zero byte.
std::vector<std::string> ReadLines(const std::filesystem::path& file);

// Writes the whole file in binary mode. Throws FileError, whose text begins with the file's name.
void WriteText(const std::filesystem::path& file, std::string_view text);

// "file(line): text", the form of every message about a line; lines are counted from 1.
std::string AtLine(const std::filesystem::path& file, std::size_t line, std::string_view text);

}  // namespace host
