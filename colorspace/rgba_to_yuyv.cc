// 32-bit RGBA/BGRA to YUYV, with or without a separate alpha plane, as
// frames or as two fields. Every export runs one row kernel per row.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "colorspace/rgba_to_yuyv_frame.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "frame/kernel_table.h"

namespace {

using qbo::ConvertFrameRows;
using qbo::ConvertSplitRows;
using qbo::PlaneRows;
using qbo::RgbToYuyvParams;
using qbo::SourceRows;

// Converts rows of `width` pixels to YUYV only.
struct YuyvRows {
  qbo::RgbaToYuyvRowFn row;
  RgbToYuyvParams params;
  int32_t width;
  void operator()(const uint8_t* src, uint8_t* dst, uint8_t*) const {
    row(src, dst, width, &params);
  }
};

// Converts rows of `width` pixels to YUYV and alpha.
struct YuyvAlphaRows {
  qbo::RgbaToYuyvAlphaRowFn row;
  RgbToYuyvParams params;
  int32_t width;
  void operator()(const uint8_t* src, uint8_t* dst, uint8_t* alpha) const {
    row(src, dst, alpha, width, &params);
  }
};

YuyvRows Yuyv(bool bgra, bool bt709, int32_t width) {
  return {qbo::Kernels().colorspace.rgba_to_yuyv, qbo::SelectRgbToYuyvParams(bgra, bt709),
          width};
}

YuyvAlphaRows YuyvAlpha(bool bgra, bool bt709, int32_t width) {
  return {qbo::Kernels().colorspace.rgba_to_yuyva, qbo::SelectRgbToYuyvParams(bgra, bt709),
          width};
}

SourceRows Source(const void* src, int32_t pitch, int32_t height, bool flip) {
  return {static_cast<const uint8_t*>(src), pitch, height, flip};
}

PlaneRows Plane(void* base, int32_t pitch) { return {static_cast<uint8_t*>(base), pitch}; }

constexpr PlaneRows kNoPlane{nullptr, 0};

int32_t ToYuyvFrame(bool bgra, void* dst, int32_t dst_pitch, const void* src, int32_t src_pitch,
                    int32_t width, int32_t height, bool bt709, bool flip) {
  if (width <= 0) return 0;
  ConvertFrameRows(Source(src, src_pitch, height, flip), Plane(dst, dst_pitch), kNoPlane,
                   Yuyv(bgra, bt709, width));
  return 0;
}

void ToYuyvSplit(bool bgra, void* dst0, int32_t dst_pitch0, void* dst1, int32_t dst_pitch1,
                 const void* src, int32_t src_pitch, int32_t width, int32_t height,
                 bool bt709, bool flip) {
  if (width <= 0) return;
  ConvertSplitRows(Source(src, src_pitch, height, flip), Plane(dst0, dst_pitch0), kNoPlane,
                   Plane(dst1, dst_pitch1), kNoPlane, Yuyv(bgra, bt709, width));
}

void ToYuyvAlphaFrame(bool bgra, bool bt709, void* dst, int32_t dst_pitch, void* alpha,
                      int32_t alpha_pitch, const void* src, int32_t src_pitch, int32_t width,
                      int32_t height, bool flip) {
  if (width <= 0) return;
  ConvertFrameRows(Source(src, src_pitch, height, flip), Plane(dst, dst_pitch),
                   Plane(alpha, alpha_pitch), YuyvAlpha(bgra, bt709, width));
}

void ToYuyvAlphaSplit(bool bgra, void* dst0, int32_t dst_pitch0, void* alpha0,
                      int32_t alpha_pitch0, void* dst1, int32_t dst_pitch1, void* alpha1,
                      int32_t alpha_pitch1, const void* src, int32_t src_pitch, int32_t width,
                      int32_t height, bool bt709, bool flip) {
  if (width <= 0) return;
  ConvertSplitRows(Source(src, src_pitch, height, flip), Plane(dst0, dst_pitch0),
                   Plane(alpha0, alpha_pitch0), Plane(dst1, dst_pitch1),
                   Plane(alpha1, alpha_pitch1), YuyvAlpha(bgra, bt709, width));
}

// Width from which QN_RGB32_2_YUV16_AA_Frame takes the image for HD and
// converts in BT.709.
constexpr int32_t kHdWidth = 1440;

}  // namespace

extern "C" {

QBO_API int32_t QBO_CALLEE QN_CS_RGBA2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                                 int32_t srcPitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip) {
  return ToYuyvFrame(false, dst, dstPitch, src, srcPitch, width, height, bt709 != 0, flip != 0);
}

QBO_API int32_t QBO_CALLEE QN_CS_BGRA2YUYV_Frame(void* dst, int32_t dstPitch, const void* src,
                                                 int32_t srcPitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip) {
  return ToYuyvFrame(true, dst, dstPitch, src, srcPitch, width, height, bt709 != 0, flip != 0);
}

QBO_API void QBO_CALLEE QN_CS_RGBA2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                              int32_t dstPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip) {
  ToYuyvSplit(false, dst0, dstPitch0, dst1, dstPitch1, src, srcPitch, width, height,
              bt709 != 0, flip != 0);
}

QBO_API void QBO_CALLEE QN_CS_BGRA2YUYV_Split(void* dst0, int32_t dstPitch0, void* dst1,
                                              int32_t dstPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip) {
  ToYuyvSplit(true, dst0, dstPitch0, dst1, dstPitch1, src, srcPitch, width, height,
              bt709 != 0, flip != 0);
}

QBO_API void QBO_CALLEE QN_CS_RGBA2YUYVA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                               int32_t alphaPitch, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip) {
  ToYuyvAlphaFrame(false, bt709 != 0, dst, dstPitch, alpha, alphaPitch, src, srcPitch, width,
                   height, flip != 0);
}

QBO_API void QBO_CALLEE QN_CS_BGRA2YUYVA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                               int32_t alphaPitch, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip) {
  ToYuyvAlphaFrame(true, bt709 != 0, dst, dstPitch, alpha, alphaPitch, src, srcPitch, width,
                   height, flip != 0);
}

QBO_API void QBO_CALLEE QN_CS_RGBA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                               int32_t alphaPitch0, void* dst1,
                                               int32_t dstPitch1, void* alpha1,
                                               int32_t alphaPitch1, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip) {
  ToYuyvAlphaSplit(false, dst0, dstPitch0, alpha0, alphaPitch0, dst1, dstPitch1, alpha1,
                   alphaPitch1, src, srcPitch, width, height, bt709 != 0, flip != 0);
}

#if !defined(_WIN32)
QBO_API void QBO_CALLEE QNCS_RGBA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                              int32_t alphaPitch0, void* dst1, int32_t dstPitch1,
                                              void* alpha1, int32_t alphaPitch1, const void* src,
                                              int32_t srcPitch, int32_t width, int32_t height,
                                              int32_t bt709, int32_t flip)
    __attribute__((alias("QN_CS_RGBA2YUYVA_Split")));
#endif

QBO_API void QBO_CALLEE QN_CS_BGRA2YUYVA_Split(void* dst0, int32_t dstPitch0, void* alpha0,
                                               int32_t alphaPitch0, void* dst1,
                                               int32_t dstPitch1, void* alpha1,
                                               int32_t alphaPitch1, const void* src,
                                               int32_t srcPitch, int32_t width, int32_t height,
                                               int32_t bt709, int32_t flip) {
  ToYuyvAlphaSplit(true, dst0, dstPitch0, alpha0, alphaPitch0, dst1, dstPitch1, alpha1,
                   alphaPitch1, src, srcPitch, width, height, bt709 != 0, flip != 0);
}

// The byte flags count by their low byte only; `reserved` has no effect.
QBO_API void QBO_CALLEE QN_RGB32_2_YUV16_AA_Frame(void* dst, int32_t dstPitch, void* alpha,
                                                  int32_t alphaPitch, const void* src,
                                                  int32_t srcPitch, int32_t width,
                                                  int32_t height, int32_t reserved,
                                                  int32_t isBgra, int32_t flip) {
  (void)reserved;
  ToYuyvAlphaFrame((isBgra & 0xFF) != 0, width >= kHdWidth, dst, dstPitch, alpha, alphaPitch,
                   src, srcPitch, width, height, (flip & 0xFF) != 0);
}

}  // extern "C"
