// QN_StretchBlt (bilinear, 16-bit weights) and QN_StretchBlt_Mean (area
// mean in single precision), each written straight or blended through a
// temporary row.
#include "blit/stretch_blt.h"

#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "blit/stretch_plan.h"
#include "frame/cpu.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"
#include "frame/platform.h"
#include "frame/stream_fence.h"

namespace qbo {
namespace {

template <typename T>
T* Array(ScratchBuffer& b) {
  return static_cast<T*>(b.get());
}

inline std::size_t Count(int64_t n) { return static_cast<std::size_t>(n); }

// Writes one finished row: straight in copy mode, otherwise through the
// temporary row that `produce` filled and the mode's blend.
class RowWriter {
 public:
  RowWriter(int32_t mode, int64_t width)
      : mode_(mode), width_(Count(width)), temp_(mode == kBlitCopy ? 0 : width_ * 4) {}
  bool ok() const { return mode_ == kBlitCopy || static_cast<bool>(temp_); }
  uint8_t* Target(uint8_t* dst_row) { return mode_ == kBlitCopy ? dst_row : Array<uint8_t>(temp_); }
  void Finish(uint8_t* dst_row) {
    if (mode_ == kBlitCopy) return;
    const BlitKernels& k = Kernels().blit;
    (mode_ == kBlitOver ? k.blend_over : k.blend_over_inverted)(dst_row, Array<uint8_t>(temp_),
                                                              g_tables.over_share, width_);
  }

 private:
  int32_t mode_;
  std::size_t width_;
  ScratchBuffer temp_;
};

}  // namespace

int32_t StretchBilinear(const BlitArgs& a) {
  if (!a.dst || !a.src) return 0;
  StretchPlan p;
  if (!PrepareStretch(a, false, &p)) return 0;
  const int64_t last_col = std::max<int64_t>(a.src_width - 2, 0);
  const int64_t last_row = std::max<int64_t>(a.src_height - 2, 0);

  ScratchBuffer cols_buf(Count(p.width) * 4), pairs_buf(Count(p.width) * 4);
  ScratchBuffer lanes_buf(Count(p.width) * 16);
  ScratchBuffer rows_buf(Count(p.height) * 4), row_w_buf(Count(p.height) * 4);
  RowWriter writer(a.mode, p.width);
  if (!cols_buf || !pairs_buf || !lanes_buf || !rows_buf || !row_w_buf || !writer.ok()) return 0;
  int32_t* cols = Array<int32_t>(cols_buf);
  uint32_t* pairs = Array<uint32_t>(pairs_buf);
  int32_t* rows = Array<int32_t>(rows_buf);
  uint32_t* row_w = Array<uint32_t>(row_w_buf);
  BuildBilinearAxis(p.start_x, p.scale_x, p.width, last_col,
                    p.src_x + p.src_rect_width < a.src_width, cols, pairs);
  BuildBilinearAxis(p.start_y, p.scale_y, p.height, last_row,
                    p.src_y + p.src_rect_height < a.src_height, rows, row_w);

  // The vertical pass covers the source columns lo .. hi + 1 that the
  // columns reach; a right neighbour past a one-pixel-wide buffer repeats
  // its only column.
  const auto [lo_it, hi_it] = std::minmax_element(cols, cols + p.width);
  const int64_t lo = *lo_it;
  const int64_t span = *hi_it - lo + 2;
  const int64_t real = std::min<int64_t>(span, a.src_width - lo);
  uint16_t* lanes = Array<uint16_t>(lanes_buf);
  for (int64_t i = 0; i < p.width; ++i) {
    cols[i] -= static_cast<int32_t>(lo);
    SpreadBilinearWeights(lanes + 8 * i, pairs[i]);
  }
  ScratchBuffer v_buf(Count(span) * 8);
  if (!v_buf) return 0;
  uint16_t* v = Array<uint16_t>(v_buf);

  const BlitKernels& k = Kernels().blit;
  // A stretch writes the picture a player hands on to display, not one this
  // core reads back soon, so a copy streams its rows past the cache once
  // they come to more than a sixteenth of the budget (2 MB of 32). That
  // leaves the cache to the source rows, and the stores do not read the
  // destination first: 1080p stretches ran 3-23 % faster for it, hot and
  // cold. The blends write their rows through the temporary row, which
  // they read straight back.
  const int64_t written = (p.height - p.first_row + p.row_step - 1) / p.row_step;
  const bool stream = a.mode == kBlitCopy &&
                      static_cast<uint64_t>(written) * 4 * static_cast<uint64_t>(p.width) >
                          StreamStoresAbove() / 16;
  const StreamFence fence(stream);
  const BilinearHorizRowFn horiz = stream ? k.bilinear_horiz_stream : k.bilinear_horiz;
  uint8_t* dst_row = PixelAddress(a.dst, p.dst_x, p.dst_y, a.dst_width);
  const int64_t dst_step = a.dst_width * p.row_step * 4;
  for (int64_t j = p.first_row; j < p.height; j += p.row_step) {
    const int64_t top = rows[j];
    const int64_t bottom = std::min<int64_t>(top + 1, a.src_height - 1);
    k.bilinear_vert(v, PixelAddress(a.src, lo, top, a.src_width),
                    PixelAddress(a.src, lo, bottom, a.src_width), row_w[j], Count(real) * 4);
    for (int64_t c = real; c < span; ++c) std::memcpy(v + 4 * c, v + 4 * (real - 1), 8);
    horiz(writer.Target(dst_row), v, cols, lanes, Count(p.width));
    writer.Finish(dst_row);
    dst_row = AdvanceBytes(dst_row, dst_step);
  }
  return 1;
}

int32_t Stretch(const BlitArgs& a) {
  if (a.mode != kBlitOver && a.mode != kBlitCopy && a.mode != kBlitOverInverted) {
    return QBO_E_FAIL;
  }
  // Bilinear needs two source pixels each way; the over and copy modes
  // average instead. The inverted blend interpolates regardless.
  if (a.mode != kBlitOverInverted && (a.src_rect_width < 2 || a.src_rect_height < 2)) {
    return StretchMean(a);
  }
  return StretchBilinear(a);
}

int32_t StretchMean(const BlitArgs& a) {
  if (a.mode != kBlitOver && a.mode != kBlitCopy && a.mode != kBlitOverInverted) return 0;
  if (!a.dst || !a.src) return 0;
  StretchPlan p;
  if (!PrepareStretch(a, true, &p)) return 0;

  ScratchBuffer col_n_buf(Count(p.width) * 4), col_w_buf(Count(p.width) * 8);
  ScratchBuffer row_n_buf(Count(p.height) * 4), row_w_buf(Count(p.height) * 8);
  RowWriter writer(a.mode, p.width);
  if (!col_n_buf || !col_w_buf || !row_n_buf || !row_w_buf || !writer.ok()) return 0;
  int32_t* col_n = Array<int32_t>(col_n_buf);
  float* col_w = Array<float>(col_w_buf);
  int32_t* row_n = Array<int32_t>(row_n_buf);
  float* row_w = Array<float>(row_w_buf);
  BuildMeanAxis(p.start_x, p.scale_x, p.width, col_n, col_w);
  BuildMeanAxis(p.start_y, p.scale_y, p.height, row_n, row_w);

  // The walk may reach one column past the rectangle (its start carries a
  // fraction); it reads the buffer's column there, or a copy of the last
  // one past the buffer's edge, and never further.
  const int64_t inside = a.src_width - p.src_x;
  const int64_t reach = LimitMeanWalk(col_n, p.width, inside + 1);
  const int64_t real = std::min(reach, inside);
  ScratchBuffer acc_buf(Count(reach) * 16);
  int32_t most_rows = 1;
  for (int64_t j = 0; j < p.height; ++j) most_rows = std::max(most_rows, row_n[j]);
  most_rows = static_cast<int32_t>(std::min<int64_t>(most_rows, a.src_height));
  ScratchBuffer row_ptr_buf(Count(most_rows) * sizeof(const uint8_t*));
  if (!acc_buf || !row_ptr_buf) return 0;
  float* acc = Array<float>(acc_buf);
  const uint8_t** row_ptrs = Array<const uint8_t*>(row_ptr_buf);

  const BlitKernels& k = Kernels().blit;
  const float norm_x = MeanNorm(p.scale_x);
  const float norm_y = MeanNorm(p.scale_y);
  uint8_t* dst_row = PixelAddress(a.dst, p.dst_x, p.dst_y, a.dst_width);
  const int64_t dst_step = a.dst_width * p.row_step * 4;
  // Rows outside the field still move the source walk, so every written
  // row averages the area of its own index.
  int64_t sy = p.src_y;
  for (int64_t j = 0; j < p.height; ++j) {
    const int32_t n = row_n[j];
    if (j >= p.first_row && (j - p.first_row) % p.row_step == 0) {
      // An area taller than the buffer keeps its rows inside it.
      const int32_t used = static_cast<int32_t>(std::min<int64_t>(n, a.src_height));
      const int32_t fetched = used >= 1 ? used : 1;
      if (sy + fetched > a.src_height) sy = a.src_height - fetched;
      for (int32_t r = 0; r < fetched; ++r) {
        row_ptrs[r] = PixelAddress(a.src, p.src_x, sy + r, a.src_width);
      }
      const float w1 = row_w[2 * j + 1];
      k.mean_vert(acc, row_ptrs, used, row_w[2 * j], w1, norm_y, 0, Count(real) * 4);
      for (int64_t c = real; c < reach; ++c) std::memcpy(acc + 4 * c, acc + 4 * (real - 1), 16);
      k.mean_horiz(writer.Target(dst_row), acc, col_n, col_w, norm_x, Count(p.width));
      writer.Finish(dst_row);
      dst_row = AdvanceBytes(dst_row, dst_step);
    }
    sy += MeanStep(n);
  }
  return 1;
}

}  // namespace qbo

extern "C" {

QBO_API int32_t QBO_CALLEE QN_StretchBlt(void* dst, int32_t dstX, int32_t dstY, int32_t width,
                                        int32_t height, int32_t dstWidth, int32_t dstHeight,
                                        const void* src, int32_t srcX, int32_t srcY,
                                        int32_t srcRectWidth, int32_t srcRectHeight,
                                        int32_t srcWidth, int32_t srcHeight, int32_t mode,
                                        int32_t field) {
  return qbo::Stretch(qbo::MakeBlitArgs(dst, dstX, dstY, width, height, dstWidth, dstHeight,
                                        src, srcX, srcY, srcRectWidth, srcRectHeight, srcWidth,
                                        srcHeight, mode, field));
}

QBO_API int32_t QBO_CALLEE QN_StretchBlt_Mean(void* dst, int32_t dstX, int32_t dstY,
                                             int32_t width, int32_t height, int32_t dstWidth,
                                             int32_t dstHeight, const void* src, int32_t srcX,
                                             int32_t srcY, int32_t srcRectWidth,
                                             int32_t srcRectHeight, int32_t srcWidth,
                                             int32_t srcHeight, int32_t mode, int32_t field) {
  return qbo::StretchMean(qbo::MakeBlitArgs(dst, dstX, dstY, width, height, dstWidth,
                                            dstHeight, src, srcX, srcY, srcRectWidth,
                                            srcRectHeight, srcWidth, srcHeight, mode, field));
}

}  // extern "C"
