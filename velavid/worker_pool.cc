#include "velavid/worker_pool.h"

#include <algorithm>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace velavid {

WorkerPool::WorkerPool(int threads) {
  for (int i = 1; i < threads; ++i) workers_.emplace_back([this] { WorkerLoop(); });
}

WorkerPool::~WorkerPool() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stop_ = true;
  }
  wake_.notify_all();
  for (std::thread& t : workers_) t.join();
}

void WorkerPool::WorkerLoop() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    wake_.wait(lock, [this] { return stop_ || next_ < bands_; });
    if (stop_) return;
    const int band = next_++;
    const BandFn fn = fn_;
    const void* context = context_;
    lock.unlock();
    fn(context, band);
    lock.lock();
    if (++done_ == bands_) finished_.notify_one();
  }
}

void WorkerPool::Run(int bands, BandFn fn, const void* context) {
  std::unique_lock<std::mutex> owner(run_mutex_, std::try_to_lock);
  if (!owner || workers_.empty() || bands < 2) {
    for (int b = 0; b < bands; ++b) fn(context, b);
    return;
  }
  std::unique_lock<std::mutex> lock(mutex_);
  fn_ = fn;
  context_ = context;
  bands_ = bands;
  next_ = 0;
  done_ = 0;
  wake_.notify_all();
  while (next_ < bands_) {
    const int band = next_++;
    lock.unlock();
    fn(context, band);
    lock.lock();
    ++done_;
  }
  finished_.wait(lock, [this] { return done_ == bands_; });
}

namespace {

int ThreadsFromEnvironment() {
  if (const char* text = std::getenv("VELAVID_THREADS")) {
    char* end = nullptr;
    const long n = std::strtol(text, &end, 10);
    if (end != text && *end == '\0' && n >= 1 && n <= 64) return static_cast<int>(n);
  }
  const unsigned cores = std::thread::hardware_concurrency();
  return static_cast<int>(std::clamp(cores, 1u, 64u));
}

#if defined(_WIN32)
// A module with threads of its own must outlive them: pinned, it stays
// loaded until the process ends.
void PinModule() {
  HMODULE self = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&PinModule), &self);
}
#endif

}  // namespace

WorkerPool& Pool() {
#if defined(_WIN32)
  // Windows ends every other thread before a module sees the process's
  // exit, so a pool torn down then would wait on workers that are gone. The
  // pool is therefore never torn down, and the module, pinned, stays loaded
  // as long as its workers live: until the process ends.
  static WorkerPool& pool = *[] {
    const int threads = ThreadsFromEnvironment();
    if (threads > 1) PinModule();
    return new WorkerPool(threads);
  }();
#else
  // Unloading the module or ending the process stops and joins the workers.
  static WorkerPool pool(ThreadsFromEnvironment());
#endif
  return pool;
}

}  // namespace velavid
