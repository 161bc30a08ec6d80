// Reference rows of the layout conversions; they define the bytes.
#include <algorithm>

#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

namespace {

constexpr int kEighthsRound = 4;
constexpr int kEighthsShift = 3;
constexpr unsigned kByteMax = 255;

}  // namespace

void InterleaveYuyvRow_C(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                         int width) {
  for (int j = 0; j < width / 2; ++j) {
    dst[4 * j + 0] = y[2 * j];
    dst[4 * j + 1] = u[j];
    dst[4 * j + 2] = y[2 * j + 1];
    dst[4 * j + 3] = v[j];
  }
}

void BlendChromaRow_C(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                      const ChromaBlend* w) {
  for (int i = 0; i < count; ++i) {
    dst[i] = static_cast<uint8_t>((w->wa * a[i] + w->wb * b[i] + kEighthsRound) >> kEighthsShift);
  }
}

void Yuv420ToYuyvRow_C(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                       const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const int wa = w->wa, wb = w->wb;
  for (int j = 0; j < width / 2; ++j) {
    dst[4 * j + 0] = y[2 * j];
    dst[4 * j + 1] = static_cast<uint8_t>((wa * ua[j] + wb * ub[j] + kEighthsRound) >> kEighthsShift);
    dst[4 * j + 2] = y[2 * j + 1];
    dst[4 * j + 3] = static_cast<uint8_t>((wa * va[j] + wb * vb[j] + kEighthsRound) >> kEighthsShift);
  }
}

void YuyvToLumaRow_C(uint8_t* dst_y, const uint8_t* src, int width) {
  for (int i = 0; i < (width & ~1); ++i) dst_y[i] = src[2 * i];
}

void YuyvToChromaRow_C(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a, const uint8_t* b,
                       const uint8_t* c, const uint8_t* d, int width, const ChromaTaps* t) {
  const int pairs = width / 2;
  const int trailing_pair = (width & 2) ? pairs - 1 : -1;
  auto tap = [t](const uint8_t* ra, const uint8_t* rb, const uint8_t* rc, const uint8_t* rd,
                 int byte, unsigned shift) {
    // The sum lives in 16 bits: a negative one wraps and saturates high.
    const uint16_t sum = static_cast<uint16_t>(t->ta * ra[byte] + t->tb * rb[byte] +
                                               t->tc * rc[byte] + t->td * rd[byte] + t->round);
    return static_cast<uint8_t>(std::min<unsigned>(kByteMax, sum >> shift));
  };
  for (int j = 0; j < pairs; ++j) {
    const unsigned shift = j == trailing_pair ? t->pair_shift : t->shift;
    dst_u[j] = tap(a, b, c, d, 4 * j + 1, shift);
    dst_v[j] = tap(a, b, c, d, 4 * j + 3, shift);
  }
}

void YuyvChromaIntoLumaRow_C(uint8_t* dst_y, const uint8_t* a, int width) {
  int g = 0;
  auto group = [&](int n) {
    for (int m = 0; m < n / 2; ++m) {
      dst_y[g + 2 * m] = a[2 * g + 2 * m + 1];
      dst_y[g + 2 * m + 1] = 0;
    }
    g += n;
  };
  for (int blocks = width / 8; blocks > 0; --blocks) group(8);
  if (width & 4) group(4);
  if (width & 2) group(2);
}

}  // namespace qbo
