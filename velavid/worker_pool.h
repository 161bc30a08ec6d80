// The VelaVid module's worker threads: a fixed set started on the first call
// that wants them, never while the module is being loaded or unloaded.
#ifndef QBO_VELAVID_WORKER_POOL_H_
#define QBO_VELAVID_WORKER_POOL_H_

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace velavid {

class WorkerPool {
 public:
  using BandFn = void (*)(const void* context, int band);

  // `threads` counts the calling thread: 1 starts no worker.
  explicit WorkerPool(int threads);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  int threads() const { return static_cast<int>(workers_.size()) + 1; }

  // Runs fn(context, b) for every band b in [0, bands) and returns when all
  // are done. The calling thread takes bands too. While another host thread
  // has the workers, the caller runs every band itself, so concurrent calls
  // never wait on one another.
  void Run(int bands, BandFn fn, const void* context);

 private:
  void WorkerLoop();

  std::mutex run_mutex_;  // held by the one caller that owns the workers
  std::mutex mutex_;      // guards everything below
  std::condition_variable wake_, finished_;
  BandFn fn_ = nullptr;
  const void* context_ = nullptr;
  int bands_ = 0, next_ = 0, done_ = 0;
  bool stop_ = false;
  std::vector<std::thread> workers_;
};

// The module's pool, started on first use with VELAVID_THREADS threads (the
// processor count when unset or not a number from 1 to 64).
WorkerPool& Pool();

}  // namespace velavid

#endif  // QBO_VELAVID_WORKER_POOL_H_
