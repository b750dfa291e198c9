#include "base/temporary_file.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <functional>
#include <random>
#include <string_view>
#include <system_error>

namespace host {

namespace {

namespace fs = std::filesystem;

// Of a process elsewhere, in another container or on another machine that shares the directory,
// nothing shows but the age of its file.
constexpr std::chrono::hours kAbandonedAge{24};

std::string Hex(std::uint32_t number) {
  std::array<char, 8> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
  return {digits.data(), end};
}

const std::string& HostDigits() {
  static const std::string digits =
      Hex(static_cast<std::uint32_t>(std::hash<std::string>{}(ProcessSpace())));
  return digits;
}

std::string FileName(const fs::path& file) {
  const std::u8string name = file.filename().u8string();
  return {name.begin(), name.end()};
}

struct Owner {
  int process = 0;  // 0: the name is not that of a temporary file
  bool is_here = false;
};

Owner OwnerOf(std::string_view name, std::string_view prefix) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  if (!name.starts_with(prefix)) return {};
  name.remove_prefix(prefix.size());
  int process = 0;
  const auto [rest, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  name.remove_prefix(static_cast<std::size_t>(rest - name.data()));
  const std::size_t second = name.find('-', 1);
  if (error != std::errc() || process <= 0 || !name.starts_with('-') ||
      second == std::string_view::npos || second + 1 == name.size() ||
      name.find_first_not_of(kDigits, second + 1) != std::string_view::npos) {
    return {};
  }
  return {process, name.substr(1, second - 1) == HostDigits()};
}

fs::path Directory(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

// Removes the temporary files of `target` for which `is_abandoned` holds. Nothing here matters
// enough to report: what can't be removed stays.
template <class IsAbandoned>
void RemoveFiles(const fs::path& target, IsAbandoned is_abandoned) {
  fs::path prefix = target.filename();
  prefix += ".tmp-";
  for (const fs::path& file : FilesIn(Directory(target), prefix)) {
    const Owner owner = OwnerOf(FileName(file), FileName(prefix));
    std::error_code ignored;
    if (owner.process > 0 && is_abandoned(owner, file)) fs::remove(file, ignored);
  }
}

void RemoveAbandoned(const fs::path& target) {
  const auto oldest = fs::file_time_type::clock::now() - kAbandonedAge;
  RemoveFiles(target, [&](const Owner& owner, const fs::path& file) {
    if (owner.is_here) return !ProcessExists(owner.process);
    std::error_code failed;
    const auto written = fs::last_write_time(file, failed);
    return !failed && written < oldest;
  });
}

}  // namespace

fs::path MakeTemporaryName(const fs::path& target) {
  RemoveAbandoned(target);
  std::random_device random;
  fs::path name = target;
  name += ".tmp-" + std::to_string(CurrentProcessNumber()) + "-" + HostDigits() + "-" +
          Hex(random()) + Hex(random());
  return name;
}

fs::path CreateTemporaryFile(const fs::path& target) {
  fs::path file = MakeTemporaryName(target);
  CreateNew(file, target);
  return file;
}

void RemoveTemporaryFiles(const fs::path& target, int number) {
  RemoveFiles(target, [&](const Owner& owner, const fs::path& /*file*/) {
    return owner.is_here && owner.process == number;
  });
}

}  // namespace host
