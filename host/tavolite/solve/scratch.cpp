#include "tavolite/solve/scratch.h"

#include <string>
#include <string_view>
#include <system_error>

#include "base/temporary_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "tavolite-";
constexpr const char* kLock = "in-use";
constexpr const char* kRemoved = ".removed";

bool TryRemove(const fs::path& directory) noexcept {
  try {
    std::error_code failed;
    fs::remove_all(directory, failed);
    return !failed;
  } catch (const std::exception&) {  // no memory
    return false;
  }
}

// Under another name nothing new comes into it. What can't be removed at the second attempt either
// is left to the next solve.
void RemoveWhole(const fs::path& directory) noexcept {
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      fs::path removed = directory;
      removed += kRemoved;
      std::error_code failed;
      fs::rename(directory, removed, failed);
      const bool is_renamed = !failed || !fs::exists(directory, failed);
      if (TryRemove(is_renamed ? removed : directory)) return;
    } catch (const std::exception&) {  // no memory
    }
  }
}

// A directory that is to be kept has no lock. On Windows, what a solve that fails still has open
// stays behind it.
void RemoveAbandoned(const fs::path& parent) {
  for (const fs::path& file : FilesIn(parent, kPrefix)) {
    std::error_code ignored;
    if (!fs::is_directory(fs::symlink_status(file, ignored))) continue;
    if (file.extension() == kRemoved) {
      TryRemove(file);
    } else if (OwnerLock::IsAbandoned(file / kLock)) {
      RemoveWhole(file);
    } else {
      OwnerLock::RemoveUntaken(file / kLock);
    }
  }
}

}  // namespace

ScratchDirectory::ScratchDirectory(const fs::path& parent, bool keep) : keep_(keep) {
  const fs::path base = fs::absolute(parent.empty() ? fs::temp_directory_path() : parent);
  RemoveAbandoned(base);
  // The name tells the process: a directory of one that was killed before it took the lock is
  // empty, and goes when the next name is made.
  path_ = MakeTemporaryName(base / (std::string(kPrefix) + "scratch"));
  fs::create_directory(path_);
  try {
    fs::permissions(path_, fs::perms::owner_all);
    if (!keep_) lock_.Take(path_ / kLock);
  } catch (...) {
    RemoveWhole(path_);
    throw;
  }
}

ScratchDirectory::~ScratchDirectory() {
  Remove();
}

void ScratchDirectory::Remove() {
  if (keep_) return;
  lock_.Release();
  RemoveWhole(path_);
}

}  // namespace host
