#include "colorspace/yuyv_to_rgba_row.h"

namespace qbo {
namespace {

// Walks the pairs of a row: pair k is bytes 4k..4k+3 (Y0 U Y1 V); the last
// pair is its own next pair. `store(dst, pixel_index, rgb)` writes a pixel.
template <class Store>
void YuyvRowReference(const uint8_t* src, int width, const YuvToRgbVectors& v, Store store) {
  const int pairs = width / 2;
  for (int k = 0; k < pairs; ++k) {
    const uint8_t* pair = src + 4 * k;
    const uint8_t* next = k + 1 < pairs ? pair + 4 : pair;
    Rgb8 out[2];
    YuvPairToRgb(pair[0], pair[2], pair[1], pair[3], next[1], next[3], v, out);
    store(2 * k, out[0]);
    store(2 * k + 1, out[1]);
  }
}

}  // namespace

void YuyvToRgbaRow_C(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {
  YuyvRowReference(src, width, *v,
                   [dst](int i, Rgb8 p) { StoreOpaquePixel<false>(dst + 4 * i, p); });
}

void YuyvToBgraRow_C(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {
  YuyvRowReference(src, width, *v,
                   [dst](int i, Rgb8 p) { StoreOpaquePixel<true>(dst + 4 * i, p); });
}

void YuyvToRgb24Row_C(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) {
  YuyvRowReference(src, width, *v, [dst](int i, Rgb8 p) {
    dst[3 * i] = p.r;
    dst[3 * i + 1] = p.g;
    dst[3 * i + 2] = p.b;
  });
}

}  // namespace qbo
