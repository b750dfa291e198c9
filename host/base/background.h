// Work on a second thread, one task at a time.
#pragma once

#include <exception>
#include <functional>
#include <semaphore>
#include <thread>
#include <utility>

namespace host {

// The thread comes with the first task and stays for the next ones. A task's exception comes out of
// the Wait that follows it. Without a thread to be had, the task runs inside that Wait. The end of
// the object waits for the task and drops its failure, so that the object stands behind everything
// that its tasks use.
class Background {
 public:
  Background() = default;
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;
  ~Background();

  // The task before it must have been waited for.
  void Start(std::function<void()> task);
  // True from Start to Wait.
  [[nodiscard]] bool IsStarted() const { return is_started_; }
  void Wait();
  // Waits as well, but a failure doesn't matter any more.
  void Drop();

 private:
  void Work();
  void RunTask();

  bool is_started_ = false;
  std::function<void()> task_;  // empty tells the thread to end
  std::exception_ptr failure_;  // of the task
  std::counting_semaphore<2> wake_{0};
  std::binary_semaphore done_{0};
  std::thread thread_;
};

}  // namespace host
