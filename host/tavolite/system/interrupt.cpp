#include "tavolite/system/interrupt.h"

#include "tavolite/system/interrupt_lock.h"

namespace host {

std::mutex& InterruptLock() {
  static std::mutex lock;
  return lock;
}

WithoutInterrupt::WithoutInterrupt() : lock_(InterruptLock()) {}

}  // namespace host
