// What the systems' parts share.
#pragma once

#include <mutex>

namespace host {

// Taken by an interrupt, which never gives it back.
std::mutex& InterruptLock();

}  // namespace host
