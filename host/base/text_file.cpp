#include "base/text_file.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace host {

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path FromUtf8(std::string_view text) {
  try {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
  } catch (const std::exception&) {
    throw FileError("not a path: " + std::string(text));
  }
}

namespace {

std::string Failure(const std::filesystem::path& file) {
  return "can't read " + Utf8(file);
}

// Past the stream's own functions, which take an exception for the end of the file.
std::string ReadWhole(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    throw FileError(Failure(file) + ": it is a directory");
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    if (std::filesystem::is_regular_file(file, error)) throw UnreadableFile(Failure(file));
    throw FileError(Failure(file));
  }
  try {
    return {std::istreambuf_iterator<char>(stream), {}};
  } catch (const std::ios_base::failure&) {
    throw UnreadableFile(Failure(file));
  }
}

}  // namespace

std::vector<std::string> ReadLines(const std::filesystem::path& file) {
  const std::string text = ReadWhole(file);
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::size_t start = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  std::vector<std::string> lines;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (line.find('\0') != std::string::npos) {
      throw FileError(AtLine(file, lines.size() + 1, "zero byte; this is not a text file"));
    }
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

void WriteText(const std::filesystem::path& file, std::string_view text) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary);
  stream.write(text.data(), static_cast<std::streamsize>(text.size()));
  stream.close();
  if (!stream) {
    const int reason = errno != 0 ? errno : EIO;
    throw FileError(Utf8(file) + ": can't be written: " + std::generic_category().message(reason));
  }
}

std::string AtLine(const std::filesystem::path& file, std::size_t line, std::string_view text) {
  return Utf8(file) + "(" + std::to_string(line) + "): " + std::string(text);
}

}  // namespace host
