// Work on a second thread, one task at a time.
#pragma once

#include <future>
#include <utility>

namespace host {

// A task's exception comes out of the Wait that follows it. Without a thread to be had, the task
// runs inside that Wait. The end of the object waits for the task and drops its failure, so that
// the object stands behind everything that its tasks use.
class Background {
 public:
  // The task before it must have been waited for.
  template <class Task>
  void Start(Task task) {
    task_ = std::async(std::launch::async | std::launch::deferred, std::move(task));
  }
  // True from Start to Wait.
  [[nodiscard]] bool IsStarted() const { return task_.valid(); }
  void Wait() {
    if (task_.valid()) task_.get();
  }
  // Waits as well, but a failure doesn't matter any more.
  void Drop() { task_ = {}; }

 private:
  std::future<void> task_;
};

}  // namespace host
