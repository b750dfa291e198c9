#include "base/temporary_file.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <string>
#include <string_view>
#include <system_error>

namespace host {

namespace {

namespace fs = std::filesystem;

// A file that was touched lately stays: its process may run where we don't see it, in another
// container or on another machine that shares the directory.
constexpr std::chrono::minutes kAbandonedAge{1};

// The process number in "<prefix><process>-<number>"; 0 when the name isn't of that form.
int OwnerOf(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return 0;
  name.remove_prefix(prefix.size());
  int owner = 0;
  const auto [rest, error] = std::from_chars(name.data(), name.data() + name.size(), owner);
  const std::string_view number = name.substr(static_cast<std::size_t>(rest - name.data()));
  const bool fits = error == std::errc() && number.size() > 1 && number[0] == '-' &&
                    number.find_first_not_of("0123456789", 1) == std::string_view::npos;
  return fits ? owner : 0;
}

std::string FileName(const fs::path& file) {
  const std::u8string name = file.filename().u8string();
  return {name.begin(), name.end()};
}

// Nothing here matters enough to report: what can't be removed stays.
void RemoveAbandoned(const fs::path& directory, const std::string& prefix) {
  std::error_code error;
  const auto oldest = fs::file_time_type::clock::now() - kAbandonedAge;
  fs::directory_iterator entry(directory, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const int owner = OwnerOf(FileName(entry->path()), prefix);
    if (owner <= 0 || ProcessExists(owner)) continue;
    std::error_code ignored;
    if (entry->last_write_time(ignored) < oldest && !ignored) fs::remove(entry->path(), ignored);
  }
}

}  // namespace

fs::path MakeTemporaryName(const fs::path& target) {
  static std::atomic<int> number{0};
  const fs::path directory = target.has_parent_path() ? target.parent_path() : fs::path(".");
  RemoveAbandoned(directory, FileName(target) + ".tmp-");
  fs::path name = target;
  name += ".tmp-" + std::to_string(CurrentProcessNumber()) + "-" + std::to_string(++number);
  std::error_code ignored;
  fs::remove(name, ignored);  // of an earlier process with the same number
  return name;
}

}  // namespace host
