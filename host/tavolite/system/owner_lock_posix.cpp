#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tavolite/system/owner_lock.h"

namespace host {
namespace {

// It takes its name when it is locked: no other process sees it before that.
std::filesystem::path Unlocked(std::filesystem::path file) {
  file += ".new";
  return file;
}

}  // namespace

void OwnerLock::Take(const std::filesystem::path& file) {
  const std::filesystem::path unlocked = Unlocked(file);
  // Without O_CLOEXEC: a solver that outlives its command still uses what stands beside the file.
  const int handle = open(unlocked.c_str(), O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
  if (handle < 0) return;
  if (flock(handle, LOCK_EX | LOCK_NB) == 0 && rename(unlocked.c_str(), file.c_str()) == 0) {
    handle_ = handle;
    return;
  }
  close(handle);
  unlink(unlocked.c_str());
}

void OwnerLock::Release() {
  if (handle_ >= 0) close(static_cast<int>(handle_));
  handle_ = -1;
}

bool OwnerLock::IsAbandoned(const std::filesystem::path& file) {
  const int handle = open(file.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (handle < 0) return false;
  struct stat status {};
  const bool abandoned = fstat(handle, &status) == 0 && status.st_uid == geteuid() &&
                         flock(handle, LOCK_EX | LOCK_NB) == 0;
  close(handle);
  return abandoned;
}

void OwnerLock::RemoveUntaken(const std::filesystem::path& file) {
  const std::filesystem::path unlocked = Unlocked(file);
  if (IsAbandoned(unlocked)) unlink(unlocked.c_str());
}

}  // namespace host
