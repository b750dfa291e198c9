#include "tdxdclib/removal_on_signal.h"

namespace host {

RemovalOnSignal::RemovalOnSignal(const std::filesystem::path& file) : file_(file) {}

RemovalOnSignal::~RemovalOnSignal() = default;

}  // namespace host
