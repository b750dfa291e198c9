// What the fuzz targets share. A target is one function that must neither crash nor hang on any
// bytes and checks what it can; libFuzzer feeds it, or replay_main.cpp with the files of its
// corpus.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// The input, taken apart from the front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  // Zero when nothing is left.
  std::uint8_t Byte() {
    if (rest_.empty()) {
      return 0;
    }
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }
  std::string_view Text(std::size_t size) {
    const std::string_view text = rest_.substr(0, size);
    rest_.remove_prefix(text.size());
    return text;
  }
  [[nodiscard]] std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

inline void Check(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
  }
}

// A file of this process, in the directory for temporary files.
inline std::filesystem::path ScratchFile(const std::string& name) {
  static const std::string kProcess = std::to_string(std::random_device()());
  return std::filesystem::temp_directory_path() / ("fuzz" + kProcess + name);
}

inline void WriteBytes(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Unlike the library's own, this one goes on behind libFuzzer's timer.
inline void CopyFile(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::ifstream in(from, std::ios::binary);
  WriteBytes(to, std::string(std::istreambuf_iterator<char>(in), {}));
}

}  // namespace fuzz
