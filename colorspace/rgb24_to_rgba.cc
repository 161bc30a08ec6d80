// 24-bit pixels to 32-bit pixels with alpha from an optional alpha plane:
// one frame, or rows split alternately into two destinations.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "QuillonBufferOperaU.h"
#include "buffer/copy_row_bytes.h"
#include "frame/accel.h"
#include "frame/accel_paths.h"
#include "frame/kernel_table.h"

namespace qbo {
namespace {

// Rows of a plane read top-down, or bottom-up when `flip`.
class RowWalker {
 public:
  RowWalker(const void* base, int32_t pitch, int32_t height, bool flip)
      : base_(static_cast<const uint8_t*>(base)), step_(pitch) {
    if (flip && base_) {
      base_ += static_cast<std::ptrdiff_t>(height - 1) * step_;
      step_ = -step_;
    }
  }
  const uint8_t* Row(int32_t i) const { return base_ ? base_ + i * step_ : nullptr; }

 private:
  const uint8_t* base_;
  std::ptrdiff_t step_;
};

Rgb24ToRgbaRowFn RowFor(const void* alpha) {
  return alpha ? Kernels().colorspace.rgb24_alpha_to_rgba_row
               : Kernels().colorspace.rgb24_to_rgba_row;
}

uint8_t* RowOf(void* base, int32_t pitch, int32_t row) {
  return static_cast<uint8_t*>(base) + static_cast<std::ptrdiff_t>(row) * pitch;
}

// Source rows 2k and 2k + 1 to row k of dst0 and dst1, for k in [begin,
// end); an odd height's last row goes to dst0 and is copied into dst1.
void Split24To32(void* dst0, int32_t dst_pitch0, void* dst1, int32_t dst_pitch1, const void* src,
                 int32_t src_pitch, const void* alpha, int32_t alpha_pitch, int32_t width,
                 int32_t height, int32_t flip, int32_t alpha_flip, int32_t begin, int32_t end) {
  if (width <= 0 || height <= 0) return;
  const Rgb24ToRgbaRowFn row = RowFor(alpha);
  const RowWalker source(src, src_pitch, height, flip != 0);
  const RowWalker alphas(alpha, alpha_pitch, height, alpha_flip != 0);
  const int64_t rows = (int64_t{height} + 1) / 2;
  for (int64_t k = begin; k < std::min<int64_t>(end, rows); ++k) {
    if (2 * k + 1 < height) {
      row(source.Row(2 * k), alphas.Row(2 * k), RowOf(dst0, dst_pitch0, k), width);
      row(source.Row(2 * k + 1), alphas.Row(2 * k + 1), RowOf(dst1, dst_pitch1, k), width);
      continue;
    }
    uint8_t* last = RowOf(dst0, dst_pitch0, k);
    row(source.Row(height - 1), alphas.Row(height - 1), last, width);
    // The second destination gets a copy of the whole row, padding included:
    // the smaller of the two pitches (a negative pitch counts by its size).
    const int32_t bytes = std::min(std::abs(dst_pitch0), std::abs(dst_pitch1));
    CopyBytes(RowOf(dst1, dst_pitch1, k), last, static_cast<std::size_t>(bytes));
  }
}

// VelaVid's Convert24To32Split: eleven word-sized arguments.
using Convert24To32SplitEntry = intptr_t (*)(intptr_t dst0, intptr_t dst_pitch0, intptr_t dst1,
                                             intptr_t dst_pitch1, intptr_t src, intptr_t src_pitch,
                                             intptr_t width, intptr_t height, intptr_t zero,
                                             intptr_t alpha, intptr_t flip);

}  // namespace

void Rgb24To32SplitRows(void* dst0, int32_t dst_pitch0, void* dst1, int32_t dst_pitch1,
                        const void* src, int32_t src_pitch, int32_t width, int32_t height,
                        int32_t flip, int32_t row_begin, int32_t row_end) {
  Split24To32(dst0, dst_pitch0, dst1, dst_pitch1, src, src_pitch, nullptr, 0, width, height, flip,
              0, row_begin, row_end);
}

}  // namespace qbo

extern "C" {

QBO_API void QBO_CALLEE QN_CS_24_to_32_Frame(void* dst, int32_t dst_pitch, const void* src,
                                             int32_t src_pitch, const void* alpha,
                                             int32_t alpha_pitch, int32_t width, int32_t height,
                                             int32_t flip, int32_t alpha_flip) {
  if (width <= 0 || height <= 0) return;
  const qbo::Rgb24ToRgbaRowFn row = qbo::RowFor(alpha);
  const qbo::RowWalker source(src, src_pitch, height, flip != 0);
  const qbo::RowWalker alphas(alpha, alpha_pitch, height, alpha_flip != 0);
  for (int32_t i = 0; i < height; ++i) {
    row(source.Row(i), alphas.Row(i), qbo::RowOf(dst, dst_pitch, i), width);
  }
}

#if !defined(_WIN32)
QBO_API void QBO_CALLEE ZQCS_24_to_32_Frame(void* dst, int32_t dst_pitch, const void* src,
                                            int32_t src_pitch, const void* alpha,
                                            int32_t alpha_pitch, int32_t width, int32_t height,
                                            int32_t flip, int32_t alpha_flip)
    __attribute__((alias("QN_CS_24_to_32_Frame")));
#endif

QBO_API void QBO_CALLEE QN_CS_24_to_32_Split(void* dst0, int32_t dst_pitch0, void* dst1,
                                             int32_t dst_pitch1, const void* src, int32_t src_pitch,
                                             const void* alpha, int32_t alpha_pitch, int32_t width,
                                             int32_t height, int32_t flip, int32_t alpha_flip) {
  if (auto entry =
          qbo::VelaVidConvertEntry<qbo::Convert24To32SplitEntry>(qbo::kConvert24To32SplitEntry)) {
    // The entry takes no alpha plane: with it present the plane goes unused.
    entry(reinterpret_cast<intptr_t>(dst0), dst_pitch0, reinterpret_cast<intptr_t>(dst1),
          dst_pitch1, reinterpret_cast<intptr_t>(src), src_pitch, width, height, 0, 255,
          flip != 0 ? 1 : 0);
    return;
  }
  qbo::Split24To32(dst0, dst_pitch0, dst1, dst_pitch1, src, src_pitch, alpha, alpha_pitch, width,
                   height, flip, alpha_flip, 0, INT32_MAX);
}

}  // extern "C"
