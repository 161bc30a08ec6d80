// Reference rows of the RGB to YUYV conversions. These define the
// arithmetic; the SIMD rows reproduce them byte for byte.
#include <algorithm>

#include "colorspace/rgba_to_yuyv_row.h"

namespace qbo {

namespace {

constexpr int16_t kHalf = 16;            // one half at the scale of 32
constexpr int16_t kChromaCentre = 4096;  // 128 at the scale of 32
constexpr int kScaleShift = 5;
constexpr uint16_t kMaxByte = 255;
constexpr int kByteToQ7 = 7;  // b * 128, so the high half of w * b * 128 is w * b / 512

// floor(w * b / 512): the high 16 bits of the signed product w * (b * 128).
int16_t Term(int16_t w, uint8_t b) {
  return static_cast<int16_t>((static_cast<int32_t>(w) * (b << kByteToQ7)) >> 16);
}

int16_t AddSat16(int16_t a, int16_t b) {
  return static_cast<int16_t>(std::clamp(a + b, -32768, 32767));
}

// (sum + offset) shifted right logically as a 16-bit value, at most 255.
uint8_t Scale(int16_t sum, int16_t offset) {
  const uint16_t shifted = static_cast<uint16_t>(AddSat16(sum, offset)) >> kScaleShift;
  return static_cast<uint8_t>(std::min(shifted, kMaxByte));
}

// Three truncated terms of bytes 0..2 of `px` with weights w[0..2].
int16_t Sum3(const int16_t* w, const uint8_t* px) {
  return AddSat16(AddSat16(Term(w[0], px[0]), Term(w[1], px[1])), Term(w[2], px[2]));
}

// Luma of a pixel of a group, through the pair vectors: bytes 0 and 2 take
// the even weights, bytes 1 and 3 the odd ones (byte 3's weight is 0).
uint8_t GroupLuma(const RgbToYuyvParams& p, const uint8_t* px) {
  const int16_t* even = p.y_even->v;
  const int16_t* odd = p.y_odd->v;
  const int16_t sum = AddSat16(AddSat16(Term(even[0], px[0]), Term(odd[0], px[1])),
                               Term(even[1], px[2]));
  return Scale(sum, kHalf);
}

// Four pixels (`kStride` bytes apart) to Y0 U0 Y1 V0 Y2 U2 Y3 V2, chroma of
// pixels 0 and 2 through the U and V quadruples.
template <int kStride>
void Group(const RgbToYuyvParams& p, const uint8_t* src, uint8_t* dst) {
  for (int pair = 0; pair < 2; ++pair) {
    const uint8_t* p0 = src + 2 * pair * kStride;
    uint8_t* out = dst + 4 * pair;
    out[0] = GroupLuma(p, p0);
    out[1] = Scale(Sum3(p.u->v, p0), kHalf + kChromaCentre);
    out[2] = GroupLuma(p, p0 + kStride);
    out[3] = Scale(Sum3(p.v->v, p0), kHalf + kChromaCentre);
  }
}

// A trailing pair: luma through the Y quadruple, chroma of the first pixel
// through the two halves of the UV vector.
template <int kStride>
void Pair(const RgbToYuyvParams& p, const uint8_t* src, uint8_t* dst) {
  dst[0] = Scale(Sum3(p.y->v, src), kHalf);
  dst[1] = Scale(Sum3(p.uv->v, src), kHalf + kChromaCentre);
  dst[2] = Scale(Sum3(p.y->v, src + kStride), kHalf);
  dst[3] = Scale(Sum3(p.uv->v + 4, src), kHalf + kChromaCentre);
}

// A trailing single pixel: a whole group Y U Y V with its luma twice.
void Single(const RgbToYuyvParams& p, const uint8_t* src, uint8_t* dst) {
  dst[0] = dst[2] = Scale(Sum3(p.y->v, src), kHalf);
  dst[1] = Scale(Sum3(p.uv->v, src), kHalf + kChromaCentre);
  dst[3] = Scale(Sum3(p.uv->v + 4, src), kHalf + kChromaCentre);
}

}  // namespace

RgbToYuyvParams SelectRgbToYuyvParams(bool bgr, bool bt709) {
  const CsCoefBlock& c = g_coef;
  if (bt709) {
    return bgr ? RgbToYuyvParams{&c.YFromBgra709, &c.UFromBgra709, &c.VFromBgra709,
                                 &c.UVFromBgra709, &c.YPairBR709, &c.YPairG709}
               : RgbToYuyvParams{&c.YFromRgba709, &c.UFromRgba709, &c.VFromRgba709,
                                 &c.UVFromRgba709, &c.YPairRB709, &c.YPairG709};
  }
  return bgr ? RgbToYuyvParams{&c.YFromBgra601, &c.UFromBgra601, &c.VFromBgra601,
                               &c.UVFromBgra601, &c.YPairBR601, &c.YPairG601}
             : RgbToYuyvParams{&c.YFromRgba601, &c.UFromRgba601, &c.VFromRgba601,
                               &c.UVFromRgba601, &c.YPairRB601, &c.YPairG601};
}

void RgbaToYuyvRow_C(const uint8_t* src, uint8_t* dst, int width,
                     const RgbToYuyvParams* params) {
  const int groups = width >> 2;
  for (int g = 0; g < groups; ++g, src += 16, dst += 8) Group<4>(*params, src, dst);
  const int rest = width & 3;
  if (rest & 2) {
    Pair<4>(*params, src, dst);
    src += 8;
    dst += 4;
  }
  if (rest & 1) Single(*params, src, dst);
}

void RgbaToYuyvAlphaRow_C(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                          const RgbToYuyvParams* params) {
  RgbaToYuyvRow_C(src, dst, width, params);
  const int whole = width & ~1;
  for (int i = 0; i < whole; ++i) alpha[i] = src[4 * i + 3];
  if (width & 1) {
    // The trailing pixel's alpha is merged with its third colour byte, and
    // the byte after the row's alpha is cleared.
    const uint8_t* last = src + 4 * whole;
    alpha[whole] = static_cast<uint8_t>(last[3] | last[2]);
    alpha[whole + 1] = 0;
  }
}

void Rgb24ToYuyvRow_C(const uint8_t* src, uint8_t* dst, int width,
                      const RgbToYuyvParams* params) {
  const int groups = width >> 2;
  for (int g = 0; g < groups; ++g, src += 12, dst += 8) Group<3>(*params, src, dst);
  switch (width & 3) {
    case 3:
      Group<3>(*params, src, dst);
      break;
    case 2:
      Pair<3>(*params, src, dst);
      break;
    case 1:
      Single(*params, src, dst);
      break;
    default:
      break;
  }
}

}  // namespace qbo
