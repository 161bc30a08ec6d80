// Windowed-sinc resampling of 32-bit images: whole images and clipped
// rectangles, 4 and 8 taps.
#include <cstdio>

#include "QuillonBufferOperaU.h"
#include "filter/resample_pass.h"
#include "frame/platform.h"

namespace qbo {
namespace {

int32_t ResampleWhole(int taps, void* dst, int32_t dst_width, int32_t dst_height,
                      const void* src, int32_t src_width, int32_t src_height,
                      bool report_failure) {
  if (!dst || !src || dst_width <= 0 || dst_height <= 0 || src_width <= 0 || src_height <= 0) {
    return 0;
  }
  ResampleJob job{};
  job.taps = taps;
  job.dst = static_cast<uint8_t*>(dst);
  job.dst_stride = static_cast<int64_t>(dst_width) * 4;
  job.dst_width = dst_width;
  job.dst_height = dst_height;
  job.src = static_cast<const uint8_t*>(src);
  job.src_stride = static_cast<int64_t>(src_width) * 4;
  job.src_width = src_width;
  job.src_height = src_height;
  job.src_last_row = src_height - 1;
  job.vertical_first = VerticalFirst(dst_width, dst_height, src_width, src_height);
  const ResampleOutcome outcome = RunResample(job);
  if (outcome == ResampleOutcome::kNoMemory) {
    if (report_failure) {
      // The sizes of the intermediate image the pass order needs.
      char text[96];
      std::snprintf(text, sizeof text, "VirtualAlloc alloc %d*%d*4 fail",
                    job.vertical_first ? src_width : src_height,
                    job.vertical_first ? dst_height : dst_width);
      CurrentPlatform().ShowMessage(text);
    }
    return 0;
  }
  return outcome == ResampleOutcome::kDone ? 1 : 0;
}

// One axis of a rectangle call, in 64 bits so no sum of 32-bit arguments
// overflows.
struct Axis {
  int64_t pos, size, limit;              // destination
  int64_t src_pos, src_size, src_limit;  // source
};

// Clips one axis; false when fewer than 2 samples remain on either side.
// Every clipping step only shrinks `size` and `src_size` (the scale is
// positive), so rejecting short spans before the scale is taken changes
// nothing and keeps the quotient finite.
bool ClipAxis(Axis* a) {
  if (a->src_pos < 1) a->src_pos = 0;
  if (a->src_pos + a->src_size > a->src_limit) a->src_size = a->src_limit - a->src_pos;
  if (a->size < 2 || a->src_size < 2) return false;
  const float scale = static_cast<float>(a->size) / static_cast<float>(a->src_size);
  if (a->pos < 0) {
    // Source samples hidden left of (above) the destination, rounded toward
    // keeping one more.
    const double hidden = static_cast<double>(static_cast<float>(a->pos) / scale) - 0.5;
    const int64_t d = static_cast<int64_t>(hidden);
    a->size += a->pos;
    a->pos = 0;
    a->src_pos -= d;
    a->src_size += d;
  }
  if (a->pos + a->size > a->limit) {
    const double hidden =
        static_cast<double>(static_cast<float>(a->pos + a->size - a->limit) / scale) + 0.5;
    a->size = a->limit - a->pos;
    a->src_size -= static_cast<int64_t>(hidden);
  }
  return a->size >= 2 && a->src_size >= 2;
}

int32_t ResampleRect(int taps, void* dst, int32_t x, int32_t y, int32_t width, int32_t height,
                     int32_t dst_width, int32_t dst_height, const void* src, int32_t src_x,
                     int32_t src_y, int32_t src_rect_width, int32_t src_rect_height,
                     int32_t src_width, int32_t src_height) {
  if (!dst || !src) return 0;
  Axis h{x, width, dst_width, src_x, src_rect_width, src_width};
  Axis v{y, height, dst_height, src_y, src_rect_height, src_height};
  if (!ClipAxis(&h) || !ClipAxis(&v)) return 0;
  // After clipping every value lies within its image, so 32 bits hold it.
  ResampleJob job{};
  job.taps = taps;
  job.dst_stride = static_cast<int64_t>(dst_width) * 4;
  job.dst = static_cast<uint8_t*>(dst) + v.pos * job.dst_stride + h.pos * 4;
  job.dst_width = static_cast<int32_t>(h.size);
  job.dst_height = static_cast<int32_t>(v.size);
  job.src_stride = static_cast<int64_t>(src_width) * 4;
  job.src = static_cast<const uint8_t*>(src) + v.src_pos * job.src_stride + h.src_pos * 4;
  job.src_width = static_cast<int32_t>(h.src_size);
  job.src_height = static_cast<int32_t>(v.src_size);
  // The column pass of the vertical-first order may read below the
  // rectangle, down to the image's last row.
  job.src_last_row = static_cast<int32_t>(src_height - 1 - v.src_pos);
  job.vertical_first = VerticalFirst(job.dst_width, job.dst_height, job.src_width,
                                     job.src_height);
  return RunResample(job) == ResampleOutcome::kDone ? 1 : 0;
}

}  // namespace
}  // namespace qbo

extern "C" {

QBO_API int32_t QBO_CALLER QN_Re4Sampling(void* dst, int32_t dstWidth, int32_t dstHeight,
                                          const void* src, int32_t srcWidth,
                                          int32_t srcHeight) {
  return qbo::ResampleWhole(4, dst, dstWidth, dstHeight, src, srcWidth, srcHeight, true);
}

QBO_API int32_t QBO_CALLER QN_Re8Sampling(void* dst, int32_t dstWidth, int32_t dstHeight,
                                          const void* src, int32_t srcWidth,
                                          int32_t srcHeight) {
  return qbo::ResampleWhole(8, dst, dstWidth, dstHeight, src, srcWidth, srcHeight, false);
}

QBO_API int32_t QBO_CALLER QN_Re4SamplingEx(void* dst, int32_t x, int32_t y, int32_t width,
                                            int32_t height, int32_t dstWidth,
                                            int32_t dstHeight, const void* src, int32_t srcX,
                                            int32_t srcY, int32_t srcRectWidth,
                                            int32_t srcRectHeight, int32_t srcWidth,
                                            int32_t srcHeight) {
  return qbo::ResampleRect(4, dst, x, y, width, height, dstWidth, dstHeight, src, srcX, srcY,
                           srcRectWidth, srcRectHeight, srcWidth, srcHeight);
}

QBO_API int32_t QBO_CALLER QN_Re8SamplingEx(void* dst, int32_t x, int32_t y, int32_t width,
                                            int32_t height, int32_t dstWidth,
                                            int32_t dstHeight, const void* src, int32_t srcX,
                                            int32_t srcY, int32_t srcRectWidth,
                                            int32_t srcRectHeight, int32_t srcWidth,
                                            int32_t srcHeight) {
  return qbo::ResampleRect(8, dst, x, y, width, height, dstWidth, dstHeight, src, srcX, srcY,
                           srcRectWidth, srcRectHeight, srcWidth, srcHeight);
}

}  // extern "C"
