#include "colorspace/rgb24_to_rgba_row.h"

namespace qbo {

void Rgb24ToRgbaRow_C(const uint8_t* src, const uint8_t*, uint8_t* dst, int width) {
  for (int i = 0; i < width; ++i, src += 3, dst += 4) {
    dst[0] = src[0];
    dst[1] = src[1];
    dst[2] = src[2];
    dst[3] = 255;
  }
}

void Rgb24AlphaToRgbaRow_C(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width) {
  for (int i = 0; i < width; ++i, src += 3, dst += 4) {
    dst[0] = src[0];
    dst[1] = src[1];
    dst[2] = src[2];
    dst[3] = alpha[i];
  }
}

}  // namespace qbo
