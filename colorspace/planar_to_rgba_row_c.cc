// Reference rows of planar YUV to 32-bit: they define the bytes.
#include "colorspace/planar_to_rgba_row.h"

namespace qbo {

namespace {

template <bool kBgra>
void PlanarToPixelsRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors& vectors) {
  const int samples = (width + 1) / 2;
  for (int x = 0; x < width; ++x) {
    const int k = x / 2;
    int du = EvenPixelChroma(u[k]), dv = EvenPixelChroma(v[k]);
    if (x % 2) {
      const int next = k + 1 < samples ? k + 1 : k;
      du = OddPixelChroma(u[k], u[next]);
      dv = OddPixelChroma(v[k], v[next]);
    }
    StoreOpaquePixel<kBgra>(dst + 4 * x, YuvPixelToRgb(y[x], du, dv, vectors));
  }
}

}  // namespace

void PlanarToRgbaRow_C(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_C(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<true>(dst, y, u, v, width, *vectors);
}

}  // namespace qbo
