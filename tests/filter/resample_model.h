// A plain model of the two-pass resampling for the export tests: the whole
// intermediate image, one sample at a time, straight from the arithmetic of
// the passes. It shares only the phase-table builder with the library (that
// is checked against hand-worked tables on its own).
#ifndef QBO_TESTS_FILTER_RESAMPLE_MODEL_H_
#define QBO_TESTS_FILTER_RESAMPLE_MODEL_H_

#include <algorithm>
#include <cstdint>
#include <vector>

#include "filter/resample_row.h"

namespace qbo::test {

// One filtered sample: `at(i)` gives the sample at line index i (already
// clamped by the caller's lambda).
template <typename At>
uint8_t ModelTap(const ResampleKernel& k, int64_t pos, int64_t last, At at) {
  const int64_t n = pos >> 16;
  const int phase = static_cast<int>((pos & 0xFFFF) >> k.phase_shift);
  int16_t sum = 0;
  for (int t = 0; t < k.taps; ++t) {
    const int64_t i = std::clamp<int64_t>(n - k.centre + t, 0, last);
    const int32_t product = (static_cast<int32_t>(at(i)) * 128) * k.weight(phase, t);
    sum = static_cast<int16_t>(sum + static_cast<int16_t>(product >> 16));
  }
  const int out = static_cast<int16_t>(sum + 4) >> 3;
  return static_cast<uint8_t>(std::clamp(out, 0, 255));
}

struct ModelImage {
  const uint8_t* pixels;
  int64_t stride;  // bytes
  int32_t width, height;
};

// Resamples src into dst (dst.pixels written) in the given order; in the
// vertical-first order the column taps clamp at `src_last_row`.
inline void ModelResample(int taps, const ModelImage& dst, const ModelImage& src,
                          int32_t src_last_row, bool vertical_first) {
  ResampleKernel kh, kv;
  BuildResampleKernel(&kh, taps, dst.width, src.width);
  BuildResampleKernel(&kv, taps, dst.height, src.height);
  const int64_t step_h = ResampleStep(src.width, dst.width);
  const int64_t step_v = ResampleStep(src.height, dst.height);
  uint8_t* out = const_cast<uint8_t*>(dst.pixels);
  if (vertical_first) {
    std::vector<uint8_t> temp(static_cast<std::size_t>(dst.height) * src.width * 4);
    for (int32_t i = 0; i < dst.height; ++i) {
      for (int32_t x = 0; x < src.width * 4; ++x) {
        temp[static_cast<std::size_t>(i) * src.width * 4 + x] =
            ModelTap(kv, i * step_v, src_last_row,
                     [&](int64_t r) { return src.pixels[r * src.stride + x]; });
      }
    }
    for (int32_t i = 0; i < dst.height; ++i) {
      const uint8_t* line = temp.data() + static_cast<std::size_t>(i) * src.width * 4;
      for (int32_t j = 0; j < dst.width; ++j) {
        for (int ch = 0; ch < 4; ++ch) {
          out[i * dst.stride + j * 4 + ch] = ModelTap(
              kh, j * step_h, src.width - 1, [&](int64_t c) { return line[c * 4 + ch]; });
        }
      }
    }
  } else {
    std::vector<uint8_t> temp(static_cast<std::size_t>(src.height) * dst.width * 4);
    for (int32_t r = 0; r < src.height; ++r) {
      const uint8_t* line = src.pixels + r * src.stride;
      for (int32_t j = 0; j < dst.width; ++j) {
        for (int ch = 0; ch < 4; ++ch) {
          temp[(static_cast<std::size_t>(r) * dst.width + j) * 4 + ch] = ModelTap(
              kh, j * step_h, src.width - 1, [&](int64_t c) { return line[c * 4 + ch]; });
        }
      }
    }
    for (int32_t i = 0; i < dst.height; ++i) {
      for (int32_t x = 0; x < dst.width * 4; ++x) {
        out[i * dst.stride + x] =
            ModelTap(kv, i * step_v, src.height - 1, [&](int64_t r) {
              return temp[static_cast<std::size_t>(r) * dst.width * 4 + x];
            });
      }
    }
  }
}

}  // namespace qbo::test

#endif  // QBO_TESTS_FILTER_RESAMPLE_MODEL_H_
