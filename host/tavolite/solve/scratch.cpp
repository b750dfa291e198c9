#include "tavolite/solve/scratch.h"

#include <random>
#include <string>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

ScratchDirectory::ScratchDirectory(const fs::path& parent, bool keep) : keep_(keep) {
  const fs::path base = fs::absolute(parent.empty() ? fs::temp_directory_path() : parent);
  std::random_device random;
  // Not there before: create_directory tells, also when two solves try the same name at once.
  do {
    path_ = base / ("tavolite-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
  fs::permissions(path_, fs::perms::owner_all);
}

ScratchDirectory::~ScratchDirectory() {
  Remove();
}

void ScratchDirectory::Remove() const {
  std::error_code ignored;
  if (!keep_) fs::remove_all(path_, ignored);
}

}  // namespace host
