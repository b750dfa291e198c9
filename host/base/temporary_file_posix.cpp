#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <string_view>
#include <system_error>

#include "base/temporary_file.h"

namespace host {

namespace {

[[noreturn]] void Fail(int code) {
  throw std::system_error(code, std::generic_category());
}

}  // namespace

int CurrentProcessNumber() {
  return static_cast<int>(getpid());
}

bool ProcessExists(int number) {
  return kill(number, 0) == 0 || errno != ESRCH;
}

std::string ProcessSpace() {
  std::string space;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), space);
  struct stat status {};
  if (stat("/proc/self/ns/pid", &status) == 0) space += std::to_string(status.st_ino);
  return space;
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& directory,
                                           const std::filesystem::path& prefix) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory.c_str()), closedir);
  std::vector<std::filesystem::path> files;
  if (stream == nullptr) return files;
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    const bool is_asked = name.starts_with(prefix.native()) && name != "." && name != "..";
    if (is_asked) files.push_back(directory / name);
  }
  return files;
}

void CreateNew(const std::filesystem::path& file, const std::filesystem::path& like) {
  constexpr mode_t kEverybody = 0666;
  constexpr mode_t kPermissions = 0777;
  struct stat status {};
  const bool has_model = stat(like.c_str(), &status) == 0 && S_ISREG(status.st_mode);
  // Never open to more people than the model, not even for a moment.
  const mode_t mode = has_model ? (status.st_mode & kEverybody) | S_IRUSR | S_IWUSR : kEverybody;
  const int handle = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
  if (handle < 0) Fail(errno);
  // The owner must be able to fill it.
  if (has_model) (void)fchmod(handle, (status.st_mode & kPermissions) | S_IRUSR | S_IWUSR);
  close(handle);
}

void MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::filesystem::rename(from, to);
}

}  // namespace host
