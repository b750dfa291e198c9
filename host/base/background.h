// Work on a second thread, one task at a time.
#pragma once

#include <chrono>
#include <future>
#include <utility>

namespace host {

// Each task has a thread of its own: one that waits for the next task would be killed by a
// process's end on Windows, and its locks with it. A task's exception comes out of the Wait that
// follows it. Without a thread to be had, the task runs inside that Wait. The end of the object
// waits for the task and drops its failure, so that the object stands behind everything that its
// tasks use.
class Background {
 public:
  // The task before it must have been waited for.
  template <class Task>
  void Start(Task task) {
    task_ = std::async(std::launch::async | std::launch::deferred, std::move(task));
  }
  // True while the thread is at the task.
  [[nodiscard]] bool IsBusy() const {
    return task_.valid() && task_.wait_for(std::chrono::seconds(0)) == std::future_status::timeout;
  }
  void Wait() {
    if (task_.valid()) task_.get();
  }

 private:
  std::future<void> task_;
};

}  // namespace host
