// Orders a frame's streaming stores before the export returns.
#ifndef QBO_FRAME_STREAM_FENCE_H_
#define QBO_FRAME_STREAM_FENCE_H_

#include "frame/kernel_table.h"

namespace qbo {

// Streaming stores are weakly ordered: a frame whose rows streamed fences
// once, after its last row (and not per row, which would wait for every
// row to reach memory), so whoever reads the frame next sees all of it.
class StreamFence {
 public:
  explicit StreamFence(bool streamed) : streamed_(streamed) {}
  ~StreamFence() {
    if (streamed_) Kernels().buffer.stream_fence();
  }
  StreamFence(const StreamFence&) = delete;
  StreamFence& operator=(const StreamFence&) = delete;

 private:
  bool streamed_;
};

}  // namespace qbo

#endif  // QBO_FRAME_STREAM_FENCE_H_
