#include "instance/value_file.h"

#include <random>

namespace host {

namespace {

std::int64_t NewStamp() {
  std::random_device random;
  return static_cast<std::int64_t>(std::uint64_t{random()} << 32U | random());
}

}  // namespace

ValueFile::ValueFile(const std::filesystem::path& instance)
    : stamp_(NewStamp()), arrays_(ArrayPath(instance), stamp_), offset_(arrays_.Begin()) {}

std::int64_t ValueFile::Append(std::span<const double> values) {
  const std::int64_t place = count_;
  arrays_.Append(std::as_bytes(values));
  count_ += static_cast<std::int64_t>(values.size());
  return place;
}

}  // namespace host
