// A thread that inserts the batches of one large symbol while the caller fills the next ones.
#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "tdxdclib/record_batch.h"

namespace host {

// Three batches exist at most: the caller's, one that waits and one that is being inserted.
class BatchThread {
 public:
  // `insert` takes one batch after another, in their order, and may empty it or not. It runs on the
  // new thread alone. Throws std::system_error when there is no thread to be had.
  explicit BatchThread(std::function<void(RecordBatch&)> insert);
  BatchThread(const BatchThread&) = delete;
  BatchThread& operator=(const BatchThread&) = delete;
  // Drops what waits and ends the thread.
  ~BatchThread();

  // Takes the contents of `batch`, which is empty then. Waits while another batch waits. False once
  // `insert` has failed; Finish tells how.
  bool Take(RecordBatch& batch);
  // Waits until all batches are inserted and ends the thread. Throws what `insert` threw.
  void Finish();

 private:
  void Run();
  void End(bool drop);

  std::function<void(RecordBatch&)> insert_;
  std::mutex mutex_;
  std::condition_variable changed_;
  RecordBatch waiting_;
  bool waits_ = false;  // there is something in waiting_
  bool end_ = false;    // nothing comes after what waits
  std::exception_ptr failure_;
  std::thread thread_;  // last: it uses the others
};

}  // namespace host
