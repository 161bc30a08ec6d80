// Packed YUYV to planar 4:2:0: luma copied row for row, chroma decimated
// vertically by a two-row average, a 4-tap filter or the XDCAM 3:1
// weights, over one field or over each field of an interlaced frame.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "frame/kernel_table.h"
#include "yuvlayout/field_chroma.h"

using qbo::ChromaTaps;
using qbo::RowAt;

namespace {

// Two-row filters, rows b and c, in quarters: (2b + 2c + 2) >> 2 is the
// average (b + c + 1) >> 1; (4b + 2) >> 2 keeps b. The XDCAM filters shift
// the row's trailing 2-pixel group by 1 instead of 2, so that pair comes
// out at twice the level, saturated.
constexpr ChromaTaps kAverage = {0, 2, 2, 0, 2, 2, 2};
constexpr ChromaTaps kKeep = {0, 4, 0, 0, 2, 2, 2};
constexpr ChromaTaps kXdcamTop = {0, 3, 1, 0, 2, 2, 1};     // (3b + c + 2) >> 2
constexpr ChromaTaps kXdcamBottom = {0, 1, 3, 0, 2, 2, 1};  // (b + 3c + 2) >> 2
// (-a + 3b + 3c - d + 2) >> 2; the first and last chroma rows repeat an
// edge row into the missing tap.
constexpr ChromaTaps kFourTap = {-1, 3, 3, -1, 2, 2, 2};
// The last chroma row of a field with an odd number of rows:
// (3b - a + 1) >> 1.
constexpr ChromaTaps kFourTapOddEnd = {-1, 3, 0, 0, 1, 1, 1};

// One field (or a whole progressive picture) of the conversion: YUYV rows
// and the Y, U, V rows they feed, each with its own (possibly doubled)
// pitch.
struct FieldView {
  const uint8_t* src;
  int64_t src_pitch;
  uint8_t* y;
  int64_t y_pitch;
  uint8_t* u;
  int64_t u_pitch;
  uint8_t* v;
  int64_t v_pitch;
  int32_t width;

  const uint8_t* Src(int row) const { return RowAt(src, src_pitch, row); }

  void Luma(int row) const {
    qbo::Kernels().yuvlayout.yuyv_to_luma(RowAt(y, y_pitch, row), Src(row), width);
  }
  void Chroma(int k, int a, int b, int c, int d, const ChromaTaps& taps) const {
    qbo::Kernels().yuvlayout.yuyv_to_chroma(RowAt(u, u_pitch, k), RowAt(v, v_pitch, k), Src(a),
                                            Src(b), Src(c), Src(d), width, &taps);
  }
  // The field whose first row is `row` of this view: every other row.
  FieldView Field(int row) const {
    return {Src(row),          2 * src_pitch,    RowAt(y, y_pitch, row), 2 * y_pitch,
            RowAt(u, u_pitch, row), 2 * u_pitch, RowAt(v, v_pitch, row), 2 * v_pitch,
            width};
  }
};

FieldView MakeView(void* dstY, int32_t yPitch, void* dstU, int32_t uPitch, void* dstV,
                   int32_t vPitch, const void* src, int32_t srcPitch, int32_t width) {
  return {static_cast<const uint8_t*>(src), srcPitch, static_cast<uint8_t*>(dstY), yPitch,
          static_cast<uint8_t*>(dstU),      uPitch,   static_cast<uint8_t*>(dstV), vPitch,
          width};
}

// Rows 2k and 2k + 1 give chroma row k; an odd last row keeps its chroma.
void DecimateField(const FieldView& f, int32_t rows, const ChromaTaps& taps) {
  for (int k = 0; k < rows / 2; ++k) {
    f.Luma(2 * k);
    f.Luma(2 * k + 1);
    f.Chroma(k, 2 * k, 2 * k, 2 * k + 1, 2 * k + 1, taps);
  }
  if (rows % 2) {
    f.Luma(rows - 1);
    f.Chroma(rows / 2, rows - 1, rows - 1, rows - 1, rows - 1, kKeep);
  }
}

// Groups of four rows give one chroma row per field. Of the remainder,
// three rows mix the top pair and keep the bottom row's chroma, two rows
// keep both, and a single row is dropped with its luma.
void DecimateFrame(const FieldView& f, int32_t height, const ChromaTaps& top,
                   const ChromaTaps& bottom) {
  int r = 0;
  for (; r + 4 <= height; r += 4) {
    for (int i = 0; i < 4; ++i) f.Luma(r + i);
    f.Chroma(r / 2, r, r, r + 2, r + 2, top);
    f.Chroma(r / 2 + 1, r + 1, r + 1, r + 3, r + 3, bottom);
  }
  switch (height - r) {
    case 3:
      for (int i = 0; i < 3; ++i) f.Luma(r + i);
      f.Chroma(r / 2, r, r, r + 2, r + 2, top);
      f.Chroma(r / 2 + 1, r + 1, r + 1, r + 1, r + 1, kKeep);
      break;
    case 2:
      f.Luma(r);
      f.Luma(r + 1);
      f.Chroma(r / 2, r, r, r, r, kKeep);
      f.Chroma(r / 2 + 1, r + 1, r + 1, r + 1, r + 1, kKeep);
      break;
    default:
      break;
  }
}

constexpr int32_t kFourTapMinRows = 3;

// The 4-tap filter over one field of `rows` rows (q = (rows + 1) / 2
// chroma rows). With an odd row count the last Y row receives the chroma
// bytes of the row above it instead of luma.
void DecimateFieldFourTap(const FieldView& f, int32_t rows) {
  if (rows < kFourTapMinRows) return;
  const int q = (rows + 1) / 2;
  const bool odd = rows % 2 != 0;
  for (int i = 0; i < (odd ? rows - 1 : rows); ++i) f.Luma(i);
  f.Chroma(0, 0, 0, 1, 2, kFourTap);
  for (int k = 1; k <= q - 2; ++k) f.Chroma(k, 2 * k - 1, 2 * k, 2 * k + 1, 2 * k + 2, kFourTap);
  const int a = 2 * q - 3, b = 2 * q - 2;
  if (odd) {
    f.Chroma(q - 1, a, b, b, b, kFourTapOddEnd);
    qbo::YuyvChromaIntoLumaRow_C(RowAt(f.y, f.y_pitch, b), f.Src(a), f.width);
  } else {
    f.Chroma(q - 1, a, b, b + 1, b + 1, kFourTap);
  }
}

}  // namespace

extern "C" {

QBO_API void QBO_CALLEE QN_CS_422_420_YUVField(void* dstY, int32_t yPitch, void* dstU,
                                               int32_t uPitch, void* dstV, int32_t vPitch,
                                               const void* src, int32_t srcPitch, int32_t width,
                                               int32_t height) {
  if (width <= 0) return;
  DecimateField(MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width), height,
                kAverage);
}

QBO_API void QBO_CALLEE QN_CS_422_420_YUVField_XDCAM(void* dstY, int32_t yPitch, void* dstU,
                                                     int32_t uPitch, void* dstV, int32_t vPitch,
                                                     const void* src, int32_t srcPitch,
                                                     int32_t width, int32_t height,
                                                     int32_t topField) {
  if (width <= 0) return;
  DecimateField(MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width), height,
                topField ? kXdcamTop : kXdcamBottom);
}

QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame(void* dstY, int32_t yPitch, void* dstU,
                                               int32_t uPitch, void* dstV, int32_t vPitch,
                                               const void* src, int32_t srcPitch, int32_t width,
                                               int32_t height) {
  if (width <= 0) return;
  DecimateFrame(MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width), height,
                kAverage, kAverage);
}

QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame_XDCAM(void* dstY, int32_t yPitch, void* dstU,
                                                     int32_t uPitch, void* dstV, int32_t vPitch,
                                                     const void* src, int32_t srcPitch,
                                                     int32_t width, int32_t height) {
  if (width <= 0) return;
  DecimateFrame(MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width), height,
                kXdcamTop, kXdcamBottom);
}

QBO_API void QBO_CALLEE QN_CS_422_420_YUVField_4(void* dstY, int32_t yPitch, void* dstU,
                                                 int32_t uPitch, void* dstV, int32_t vPitch,
                                                 const void* src, int32_t srcPitch,
                                                 int32_t width, int32_t height) {
  if (width <= 0) return;
  DecimateFieldFourTap(MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width),
                       height);
}

QBO_API void QBO_CALLEE QN_CS_422_420_YUVFrame_4(void* dstY, int32_t yPitch, void* dstU,
                                                 int32_t uPitch, void* dstV, int32_t vPitch,
                                                 const void* src, int32_t srcPitch,
                                                 int32_t width, int32_t height) {
  if (width <= 0 || height / 2 < kFourTapMinRows) return;
  const FieldView frame =
      MakeView(dstY, yPitch, dstU, uPitch, dstV, vPitch, src, srcPitch, width);
  DecimateFieldFourTap(frame.Field(0), height / 2);
  DecimateFieldFourTap(frame.Field(1), height / 2);
}

}  // extern "C"
