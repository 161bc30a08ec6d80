// QN_CS_YUYV2BGRA_MeanStretch and QN_CS_YUYV2RGBA_MeanStretch: the area
// mean of the 32-bit stretch run on YUYV groups, chroma spread to every
// pixel (each group's second pixel takes the mean of its chroma and the next
// group's), then converted to 32-bit in single precision.
#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "blit/stretch_blt.h"
#include "blit/stretch_plan.h"
#include "frame/coef_block.h"
#include "frame/kernel_table.h"
#include "frame/platform.h"

namespace qbo {
namespace {

inline std::size_t Count(int64_t n) { return static_cast<std::size_t>(n); }

int32_t YuyvMeanStretch(uint8_t* dst, int32_t dst_pitch, int32_t dst_x, int32_t dst_y,
                        int32_t width, int32_t height, int32_t dst_width, int32_t dst_height,
                        const uint8_t* src, int32_t src_pitch, int32_t src_x, int32_t src_y,
                        int32_t src_rect_width, int32_t src_rect_height, int32_t src_width,
                        int32_t src_height, int32_t matrix, int32_t flip, bool rgba) {
  if (!src || !dst) return 0;
  const BlitArgs args = MakeBlitArgs(dst, dst_x, dst_y, width, height, dst_width, dst_height,
                                     src, src_x, src_y, src_rect_width, src_rect_height,
                                     src_width, src_height, kBlitCopy, kFieldAll);
  StretchPlan p;
  if (!PrepareStretch(args, true, &p)) return 0;

  // Whole groups: the covered pixels widened to even bounds.
  const int64_t even_x = p.src_x - p.src_x % 2;
  const int64_t end_x = p.src_x + p.src_rect_width;
  const int64_t pixels = end_x + end_x % 2 - even_x;
  const int64_t groups = pixels / 2;

  ScratchBuffer col_n_buf(Count(p.width) * 4), col_w_buf(Count(p.width) * 8);
  ScratchBuffer row_n_buf(Count(p.height) * 4), row_w_buf(Count(p.height) * 8);
  if (!col_n_buf || !col_w_buf || !row_n_buf || !row_w_buf) return 0;
  auto* col_n = static_cast<int32_t*>(col_n_buf.get());
  auto* col_w = static_cast<float*>(col_w_buf.get());
  auto* row_n = static_cast<int32_t*>(row_n_buf.get());
  auto* row_w = static_cast<float*>(row_w_buf.get());
  BuildMeanAxis(p.start_x, p.scale_x, p.width, col_n, col_w);
  BuildMeanAxis(p.start_y, p.scale_y, p.height, row_n, row_w);

  // The walk starts at the rectangle's first pixel inside the widened run
  // and may reach one pixel past it, which repeats the run's last pixel.
  const int64_t first_quad = p.src_x - even_x;
  const int64_t reach = LimitMeanWalk(col_n, p.width, pixels - first_quad + 1);
  const int64_t quad_count = std::max(pixels, first_quad + reach);
  ScratchBuffer acc_buf(Count(groups) * 16), quad_buf(Count(quad_count) * 16);
  int32_t most_rows = 1;
  for (int64_t j = 0; j < p.height; ++j) most_rows = std::max(most_rows, row_n[j]);
  most_rows = static_cast<int32_t>(std::min<int64_t>(most_rows, src_height));
  ScratchBuffer row_ptr_buf(Count(most_rows) * sizeof(const uint8_t*));
  if (!acc_buf || !quad_buf || !row_ptr_buf) return 0;
  auto* acc = static_cast<float*>(acc_buf.get());
  auto* quads = static_cast<float*>(quad_buf.get());
  auto** row_ptrs = static_cast<const uint8_t**>(row_ptr_buf.get());

  const Float4& g = matrix == 0 ? g_coef.FloatGTerms601 : g_coef.FloatGTerms709;
  const Float4& rb = matrix == 0 ? g_coef.FloatRBTerms601 : g_coef.FloatRBTerms709;
  YuyvMeanParams params{{g.v[0], g.v[1], g.v[2], g.v[3]},
                        {rb.v[0], rb.v[1], rb.v[2], rb.v[3]},
                        rgba ? 0 : 2,
                        rgba ? 2 : 0};

  const BlitKernels& k = Kernels().blit;
  const float norm_x = MeanNorm(p.scale_x);
  const float norm_y = MeanNorm(p.scale_y);
  // Start columns are byte displacements here, not pixel ones: even_x bytes
  // into the source row and dst_x bytes into the destination row.
  int64_t dst_step = dst_pitch;
  uint8_t* dst_row = AdvanceBytes(dst, int64_t{dst_pitch} * p.dst_y + p.dst_x);
  if (flip) {
    dst_row = AdvanceBytes(dst_row, (p.height - 1) * dst_step);
    dst_step = -dst_step;
  }
  int64_t sy = p.src_y;
  for (int64_t j = 0; j < p.height; ++j) {
    const int32_t n = row_n[j];
    const int32_t used = static_cast<int32_t>(std::min<int64_t>(n, src_height));
    const int32_t fetched = used >= 1 ? used : 1;
    if (sy + fetched > src_height) sy = src_height - fetched;
    for (int32_t r = 0; r < fetched; ++r) {
      row_ptrs[r] = AdvanceBytes(src, int64_t{src_pitch} * (sy + r) + even_x);
    }
    k.mean_vert(acc, row_ptrs, used, row_w[2 * j], row_w[2 * j + 1], norm_y, 0,
                Count(groups) * 4);
    k.yuyv_expand(quads, acc, Count(groups));
    for (int64_t q = pixels; q < quad_count; ++q) {
      std::memcpy(quads + 4 * q, quads + 4 * (pixels - 1), 16);
    }
    k.yuyv_mean_horiz(dst_row, quads + 4 * first_quad, col_n, col_w, norm_x, &params,
                      Count(p.width));
    dst_row = AdvanceBytes(dst_row, dst_step);
    sy += MeanStep(n);
  }
  return 1;
}

}  // namespace
}  // namespace qbo

extern "C" {

QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGRA_MeanStretch(
    void* dst, int32_t dstPitch, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
    int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcPitch, int32_t srcX,
    int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight, int32_t srcWidth,
    int32_t srcHeight, int32_t matrix, int32_t flip) {
  return qbo::YuyvMeanStretch(static_cast<uint8_t*>(dst), dstPitch, dstX, dstY, width, height,
                              dstWidth, dstHeight, static_cast<const uint8_t*>(src), srcPitch,
                              srcX, srcY, srcRectWidth, srcRectHeight, srcWidth, srcHeight,
                              matrix, flip, false);
}

QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGBA_MeanStretch(
    void* dst, int32_t dstPitch, int32_t dstX, int32_t dstY, int32_t width, int32_t height,
    int32_t dstWidth, int32_t dstHeight, const void* src, int32_t srcPitch, int32_t srcX,
    int32_t srcY, int32_t srcRectWidth, int32_t srcRectHeight, int32_t srcWidth,
    int32_t srcHeight, int32_t matrix, int32_t flip) {
  return qbo::YuyvMeanStretch(static_cast<uint8_t*>(dst), dstPitch, dstX, dstY, width, height,
                              dstWidth, dstHeight, static_cast<const uint8_t*>(src), srcPitch,
                              srcX, srcY, srcRectWidth, srcRectHeight, srcWidth, srcHeight,
                              matrix, flip, true);
}

}  // extern "C"
