#include "tavolite/solve/scratch.h"

#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "base/temporary_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "tavolite-";
constexpr const char* kLock = "in-use";

// Under another name nothing new comes into it.
void RemoveWhole(const fs::path& directory) {
  std::error_code failed;
  fs::path removed = directory;
  removed += ".removed";
  fs::rename(directory, removed, failed);
  if (failed) removed = directory;
  fs::remove_all(removed, failed);
  if (failed) fs::remove_all(removed, failed);  // what stood in the way may have gone
}

// A directory that is to be kept has no lock.
void RemoveAbandoned(const fs::path& parent) {
  const fs::path::string_type prefix = fs::path(kPrefix).native();
  for (const fs::path& file : FilesIn(parent)) {
    std::error_code ignored;
    const bool ours = file.filename().native().starts_with(prefix) &&
                      fs::is_directory(fs::symlink_status(file, ignored));
    if (ours && OwnerLock::IsAbandoned(file / kLock)) RemoveWhole(file);
  }
}

}  // namespace

ScratchDirectory::ScratchDirectory(const fs::path& parent, bool keep) : keep_(keep) {
  const fs::path base = fs::absolute(parent.empty() ? fs::temp_directory_path() : parent);
  RemoveAbandoned(base);
  std::random_device random;
  // Not there before: create_directory tells, also when two solves try the same name at once.
  do {
    path_ = base / (std::string(kPrefix) + std::to_string(random()));
  } while (!fs::create_directory(path_));
  fs::permissions(path_, fs::perms::owner_all);
  if (!keep_) lock_.Take(path_ / kLock);
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
