// Interlaced planar 4:2:0 to packed YUYV, chroma interpolated vertically
// field by field (plain quarters or XDCAM eighths), as one frame or as two
// field buffers.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "frame/accel.h"
#include "frame/accel_paths.h"
#include "frame/cpu.h"
#include "frame/kernel_table.h"
#include "frame/stream_fence.h"
#include "yuvlayout/field_chroma.h"

using qbo::ConstPlane;
using qbo::FieldChromaWeights;
using qbo::RowAt;

namespace {

// XDCAM sites chroma differently in the two fields: the top field's
// eighths lean to the upper chroma row, the bottom field's to the lower.
constexpr FieldChromaWeights kXdcamTopChroma = {{1, 7}, {5, 3}};
constexpr FieldChromaWeights kXdcamBottomChroma = {{3, 5}, {7, 1}};

// The picture height whose last line is blackened after every conversion.
constexpr int32_t kBlackLastLineHeight = 576;
// YUYV black, Y 16 and U, V 128, as the bytes 16, 128, 16, 128.
constexpr uint8_t kYuyvBlack[4] = {16, 128, 16, 128};

struct Source420 {
  ConstPlane y, u, v;
};

// Where the field rows go: row r of field f is at base[f] + r * pitch[f].
struct FieldTargets {
  uint8_t* base[2];
  int64_t pitch[2];
};

// Writes rows [begin, end) of the h2 rows of both fields, row r of each
// field in turn, so that a frame is written top to bottom: one store stream,
// which a frame past the cache writes at nearly twice the speed of two rows
// interleaved.
void ConvertFields(const FieldTargets& out, const Source420& src, int32_t width, int32_t height,
                   const FieldChromaWeights (&weights)[2], int begin = 0, int end = INT32_MAX) {
  const int h2 = height / 2;
  if (width <= 0 || h2 < 1) return;
  const qbo::YuvLayoutKernels& k = qbo::Kernels().yuvlayout;
  // The whole frame decides, so every band of a frame split among threads
  // writes alike; it reads 1.5 bytes a pixel and writes 2.
  const bool stream =
      qbo::StreamFrameStores(uint64_t{static_cast<uint32_t>(width)} * 2 * h2 * 7 / 2);
  const qbo::StreamFence fence(stream);
  for (int r = begin; r < std::min(end, h2); ++r) {
    for (int f = 0; f < 2; ++f) {
      uint8_t* dst = RowAt(out.base[f], out.pitch[f], r);
      const uint8_t* luma = src.y.Row(2 * r + f);
      qbo::FieldChromaSource c = qbo::FieldChromaFor(r, h2, f, weights[f]);
      c.w.stream = stream;
      if (c.a == c.b) {
        k.interleave_yuyv(dst, luma, src.u.Row(c.a), src.v.Row(c.a), width);
      } else {
        k.yuv420_to_yuyv(dst, luma, src.u.Row(c.a), src.u.Row(c.b), src.v.Row(c.a),
                         src.v.Row(c.b), width, &c.w);
      }
    }
  }
}

// The whole pitch of the row, rounded down to whole 4-byte groups; a
// negative pitch spans the same |pitch| bytes from the row's start.
void BlackenRow(uint8_t* row, int32_t pitch) {
  const int64_t groups = std::llabs(int64_t{pitch}) / 4;
  for (int64_t i = 0; i < groups; ++i) std::memcpy(row + 4 * i, kYuyvBlack, 4);
}

void Convert420Frame(void* dst, int32_t dstPitch, const Source420& src, int32_t width,
                     int32_t height, const FieldChromaWeights (&weights)[2]) {
  auto* base = static_cast<uint8_t*>(dst);
  const FieldTargets out = {{base, RowAt(base, dstPitch, 1)},
                            {2 * int64_t{dstPitch}, 2 * int64_t{dstPitch}}};
  ConvertFields(out, src, width, height, weights);
  if (height == kBlackLastLineHeight) BlackenRow(RowAt(base, dstPitch, height - 1), dstPitch);
}

void Convert420Split(void* dstTop, int32_t topPitch, void* dstBottom, int32_t bottomPitch,
                     const Source420& src, int32_t width, int32_t height,
                     const FieldChromaWeights (&weights)[2], int begin = 0,
                     int end = INT32_MAX) {
  const FieldTargets out = {{static_cast<uint8_t*>(dstTop), static_cast<uint8_t*>(dstBottom)},
                            {topPitch, bottomPitch}};
  ConvertFields(out, src, width, height, weights, begin, end);
  // Only the band that wrote the bottom field's last row blackens it.
  if (height == kBlackLastLineHeight && end >= height / 2) {
    BlackenRow(RowAt(static_cast<uint8_t*>(dstBottom), bottomPitch, height / 2 - 1),
               bottomPitch);
  }
}

Source420 MakeSource(const void* srcY, int32_t yPitch, const void* srcU, int32_t uPitch,
                     const void* srcV, int32_t vPitch) {
  return {{static_cast<const uint8_t*>(srcY), yPitch},
          {static_cast<const uint8_t*>(srcU), uPitch},
          {static_cast<const uint8_t*>(srcV), vPitch}};
}

constexpr FieldChromaWeights kPlain[2] = {qbo::kPlainFieldChroma, qbo::kPlainFieldChroma};
constexpr FieldChromaWeights kXdcam[2] = {kXdcamTopChroma, kXdcamBottomChroma};

// VelaVid's Convert420To422Split: the export's twelve arguments, then two
// zeros, each passed as one machine word.
using Convert420To422SplitFn = intptr_t (*)(intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                                            intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                                            intptr_t, intptr_t, intptr_t, intptr_t);

intptr_t Word(const void* p) { return reinterpret_cast<intptr_t>(p); }

}  // namespace

void qbo::Yuv420To422SplitRows(void* dst_top, int32_t top_pitch, void* dst_bottom,
                               int32_t bottom_pitch, const void* src_y, int32_t y_pitch,
                               const void* src_u, int32_t u_pitch, const void* src_v,
                               int32_t v_pitch, int32_t width, int32_t height, int32_t row_begin,
                               int32_t row_end) {
  Convert420Split(dst_top, top_pitch, dst_bottom, bottom_pitch,
                  MakeSource(src_y, y_pitch, src_u, u_pitch, src_v, v_pitch), width, height,
                  kPlain, row_begin, row_end);
}

extern "C" {

QBO_API void QBO_CALLEE QN_CS_420_422_YUVFrame(void* dst, int32_t dstPitch, const void* srcY,
                                               int32_t yPitch, const void* srcU, int32_t uPitch,
                                               const void* srcV, int32_t vPitch, int32_t width,
                                               int32_t height) {
  Convert420Frame(dst, dstPitch, MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), width,
                  height, kPlain);
}

QBO_API void QBO_CALLEE QN_CS_420_422_YUVFrame_XDCAM(void* dst, int32_t dstPitch,
                                                     const void* srcY, int32_t yPitch,
                                                     const void* srcU, int32_t uPitch,
                                                     const void* srcV, int32_t vPitch,
                                                     int32_t width, int32_t height) {
  Convert420Frame(dst, dstPitch, MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), width,
                  height, kXdcam);
}

QBO_API void QBO_CALLEE QN_CS_420_422_YUVSplit(void* dstTop, int32_t topPitch, void* dstBottom,
                                               int32_t bottomPitch, const void* srcY,
                                               int32_t yPitch, const void* srcU, int32_t uPitch,
                                               const void* srcV, int32_t vPitch, int32_t width,
                                               int32_t height) {
  if (auto entry = qbo::VelaVidConvertEntry<Convert420To422SplitFn>(
          qbo::kConvert420To422SplitEntry)) {
    entry(Word(dstTop), topPitch, Word(dstBottom), bottomPitch, Word(srcY), yPitch, Word(srcU),
          uPitch, Word(srcV), vPitch, width, height, 0, 0);
    return;
  }
  Convert420Split(dstTop, topPitch, dstBottom, bottomPitch,
                  MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), width, height, kPlain);
}

QBO_API void QBO_CALLEE QN_CS_420_422_YUVSplit_XDCAM(void* dstTop, int32_t topPitch,
                                                     void* dstBottom, int32_t bottomPitch,
                                                     const void* srcY, int32_t yPitch,
                                                     const void* srcU, int32_t uPitch,
                                                     const void* srcV, int32_t vPitch,
                                                     int32_t width, int32_t height) {
  Convert420Split(dstTop, topPitch, dstBottom, bottomPitch,
                  MakeSource(srcY, yPitch, srcU, uPitch, srcV, vPitch), width, height, kXdcam);
}

}  // extern "C"
