#include "tdxdclib/batch_thread.h"

#include <utility>

namespace host {

BatchThread::BatchThread(std::function<void(RecordBatch&)> insert)
    : insert_(std::move(insert)), thread_([this] { Run(); }) {}

BatchThread::~BatchThread() {
  End(true);
}

bool BatchThread::Take(RecordBatch& batch) {
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !waits_ || failure_ != nullptr; });
    if (failure_ != nullptr) return false;
    std::swap(waiting_, batch);
    waits_ = true;
  }
  changed_.notify_all();
  batch.Clear();
  return true;
}

void BatchThread::Finish() {
  End(false);
  if (failure_ != nullptr) std::rethrow_exception(failure_);
}

void BatchThread::End(bool drop) {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    end_ = true;
    if (drop) waits_ = false;
  }
  changed_.notify_all();
  thread_.join();
}

void BatchThread::Run() {
  RecordBatch batch;
  while (true) {
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return waits_ || end_; });
      if (!waits_) return;
      std::swap(waiting_, batch);
      waits_ = false;
    }
    changed_.notify_all();
    try {
      insert_(batch);
    } catch (...) {
      const std::lock_guard lock(mutex_);
      failure_ = std::current_exception();
      break;
    }
  }
  changed_.notify_all();
}

}  // namespace host
