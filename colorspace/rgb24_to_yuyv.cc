// Packed 24-bit RGB/BGR to YUYV, as frames or as two fields.
//
// The number of four-pixel groups a row converts comes from the source
// pitch, not from the width: the rows were laid out as three bytes a pixel
// rounded up to a multiple of four, and (pitch - 4) / 12 is the count of
// whole groups such a row holds. A caller passing a wider pitch gets more
// groups than the width holds; a caller passing exactly 3 * width bytes
// for a width of 4m + 1 gets its last pixel left unwritten. Both are kept
// as they are; the public header spells them out.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "colorspace/rgba_to_yuyv_frame.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "frame/kernel_table.h"

namespace {

using qbo::PlaneRows;
using qbo::SourceRows;

constexpr int64_t kGroupBytes = 12;
constexpr int64_t kGroupPixels = 4;

// Pixels the row kernel converts for a row of `width` pixels read with
// `src_pitch`: g whole groups from the pitch, then by r = width - 4g (in
// two's complement): with bit 2 set one more group; r == 3 one more group
// too (it reads three bytes past the row); r == 2 a pair; r == 1 a single
// pixel; anything else nothing more. A bottom-up pitch counts by its
// magnitude.
int32_t ConvertedPixels(int32_t width, int32_t src_pitch) {
  const int64_t magnitude = src_pitch < 0 ? -int64_t{src_pitch} : int64_t{src_pitch};
  const int64_t groups = (magnitude - 4) / kGroupBytes;  // toward zero: 0 below 16 bytes
  const int64_t r = width - kGroupPixels * groups;
  int64_t extra = 0;
  if ((r & 4) || r == 3) {
    extra = kGroupPixels;
  } else if (r == 2 || r == 1) {
    extra = r;
  }
  return static_cast<int32_t>(kGroupPixels * groups + extra);
}

struct Rgb24Rows {
  qbo::Rgb24ToYuyvRowFn row;
  qbo::RgbToYuyvParams params;
  int32_t pixels;
  void operator()(const uint8_t* src, uint8_t* dst, uint8_t*) const {
    row(src, dst, pixels, &params);
  }
};

Rgb24Rows Rows(bool bgr, int32_t bt709, int32_t width, int32_t src_pitch) {
  return {qbo::Kernels().colorspace.rgb24_to_yuyv, qbo::SelectRgbToYuyvParams(bgr, bt709 != 0),
          ConvertedPixels(width, src_pitch)};
}

SourceRows Source(const void* src, int32_t pitch, int32_t height, int32_t flip) {
  return {static_cast<const uint8_t*>(src), pitch, height, flip != 0};
}

constexpr PlaneRows kNoPlane{nullptr, 0};

void Rgb24Frame(bool bgr, void* dst, int32_t dst_pitch, const void* src, int32_t src_pitch,
                int32_t width, int32_t height, int32_t bt709, int32_t flip) {
  const Rgb24Rows rows = Rows(bgr, bt709, width, src_pitch);
  if (width <= 0 || rows.pixels <= 0) return;
  qbo::ConvertFrameRows(Source(src, src_pitch, height, flip),
                        PlaneRows{static_cast<uint8_t*>(dst), dst_pitch}, kNoPlane, rows);
}

void Rgb24Split(bool bgr, void* dst0, int32_t dst_pitch0, void* dst1, int32_t dst_pitch1,
                const void* src, int32_t src_pitch, int32_t width, int32_t height, int32_t bt709,
                int32_t flip) {
  const Rgb24Rows rows = Rows(bgr, bt709, width, src_pitch);
  if (width <= 0 || rows.pixels <= 0) return;
  qbo::ConvertSplitRows(Source(src, src_pitch, height, flip),
                        PlaneRows{static_cast<uint8_t*>(dst0), dst_pitch0}, kNoPlane,
                        PlaneRows{static_cast<uint8_t*>(dst1), dst_pitch1}, kNoPlane, rows);
}

}  // namespace

extern "C" {

QBO_API void QBO_CALLEE QN_CS_RGB2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                             int32_t srcPitch, int32_t width, int32_t height,
                                             int32_t bt709, int32_t flip) {
  Rgb24Frame(false, dst, dstPitch, src, srcPitch, width, height, bt709, flip);
}

QBO_API void QBO_CALLEE QN_CS_BGR2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                             int32_t srcPitch, int32_t width, int32_t height,
                                             int32_t bt709, int32_t flip) {
  Rgb24Frame(true, dst, dstPitch, src, srcPitch, width, height, bt709, flip);
}

QBO_API void QBO_CALLEE QN_CS_RGB2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                             int32_t dstPitch1, const void* src, int32_t srcPitch,
                                             int32_t width, int32_t height, int32_t bt709,
                                             int32_t flip) {
  Rgb24Split(false, dst0, dstPitch0, dst1, dstPitch1, src, srcPitch, width, height, bt709, flip);
}

QBO_API void QBO_CALLEE QN_CS_BGR2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                             int32_t dstPitch1, const void* src, int32_t srcPitch,
                                             int32_t width, int32_t height, int32_t bt709,
                                             int32_t flip) {
  Rgb24Split(true, dst0, dstPitch0, dst1, dstPitch1, src, srcPitch, width, height, bt709, flip);
}

}  // extern "C"
