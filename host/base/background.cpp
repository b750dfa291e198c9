#include "base/background.h"

namespace host {

// A thread that a process's end on Windows has killed never says that its task is done; to be
// joined is all that it is good for.
Background::~Background() {
  if (!thread_.joinable()) return;
  wake_.release();  // behind the task that may be there
  thread_.join();
}

void Background::Start(std::function<void()> task) {
  task_ = std::move(task);
  failure_ = nullptr;
  is_started_ = true;
  if (!thread_.joinable()) {
    try {
      thread_ = std::thread(&Background::Work, this);
    } catch (const std::exception&) {
      return;
    }
  }
  wake_.release();
}

void Background::Work() {
  for (wake_.acquire(); task_; wake_.acquire()) {
    RunTask();
    done_.release();
  }
}

void Background::RunTask() {
  try {
    task_();
  } catch (...) {
    failure_ = std::current_exception();
  }
  task_ = nullptr;
}

void Background::Wait() {
  if (!std::exchange(is_started_, false)) return;
  if (thread_.joinable()) {
    done_.acquire();
  } else {
    RunTask();
  }
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void Background::Drop() {
  if (std::exchange(is_started_, false) && thread_.joinable()) done_.acquire();
}

}  // namespace host
