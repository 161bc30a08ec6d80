// The reference resampling rows and the phase-table builder.
#include <algorithm>
#include <cmath>

#include "filter/resample_row.h"
#include "frame/single_precision.h"

namespace qbo {
namespace {

constexpr int32_t kUnity = 4096;  // Q12 1.0
constexpr int kSampleShift = 7;   // samples enter the product as s * 128
constexpr int kRoundEighth = 4;   // the sum is in eighths: +4 >> 3
constexpr int kEighthShift = 3;

// The cosine-like window, by tap index.
constexpr double kWindow4[4] = {0.60997, 0.95074, 0.95074, 0.60997};
constexpr double kWindow8[8] = {0.251731, 0.534026, 0.808136, 0.977194,
                                0.977194, 0.808136, 0.534026, 0.251731};

inline int16_t TapProduct(uint8_t sample, int16_t weight) {
  return static_cast<int16_t>((static_cast<int32_t>(sample) << kSampleShift) * weight >> 16);
}

inline uint8_t FinishSum(int16_t sum) {
  const int16_t out = static_cast<int16_t>(static_cast<int16_t>(sum + kRoundEighth) >> kEighthShift);
  return static_cast<uint8_t>(std::clamp<int16_t>(out, 0, 255));
}

template <int kTaps>
void ResampleRowH(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                  const ResampleLineParams* p) {
  const ResampleKernel& k = *p->kernel;
  const int64_t last = p->src_len - 1;
  for (int32_t j = 0; j < width; ++j) {
    const int64_t pos = (static_cast<int64_t>(x0) + j) * p->step;
    const int64_t n = pos >> 16;
    const int phase = static_cast<int>((pos & 0xFFFF) >> k.phase_shift);
    for (int ch = 0; ch < 4; ++ch) {
      int16_t sum = 0;
      for (int t = 0; t < kTaps; ++t) {
        const int64_t index = std::clamp<int64_t>(n - k.centre + t, 0, last);
        sum = static_cast<int16_t>(sum + TapProduct(src[index * 4 + ch], k.weight(phase, t)));
      }
      dst[j * 4 + ch] = FinishSum(sum);
    }
  }
}

template <int kTaps>
void ResampleRowV(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  for (int32_t i = 0; i < bytes; ++i) {
    int16_t sum = 0;
    for (int t = 0; t < kTaps; ++t) {
      sum = static_cast<int16_t>(sum + TapProduct(taps->rows[t][i], taps->weights[t]));
    }
    dst[i] = FinishSum(sum);
  }
}

}  // namespace

void ResampleRowH4_C(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                     const ResampleLineParams* p) {
  ResampleRowH<4>(dst, src, x0, width, p);
}
void ResampleRowH8_C(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                     const ResampleLineParams* p) {
  ResampleRowH<8>(dst, src, x0, width, p);
}
void ResampleRowV4_C(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ResampleRowV<4>(dst, taps, bytes);
}
void ResampleRowV8_C(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes) {
  ResampleRowV<8>(dst, taps, bytes);
}

// Every step keeps the precision it is defined in: the cutoff and the tap
// position in single precision, sin() in double rounded to single, the
// weight quotient and products in double, truncated toward zero.
void BuildResampleKernel(ResampleKernel* k, int taps, int32_t dst_size, int32_t src_size) {
  const bool eight = taps == 8;
  k->taps = taps;
  k->phases = eight ? 16 : 32;
  k->phase_shift = eight ? 12 : 11;
  k->centre = eight ? 3 : 1;
  const double* window = eight ? kWindow8 : kWindow4;

  constexpr float kPi = 3.14159f;
  const float ratio = static_cast<float>(dst_size) / static_cast<float>(src_size);
  // Upscaling keeps the plain sinc; downscaling widens it by the ratio.
  float fc = RoundToSingle(static_cast<double>(ratio) * static_cast<double>(kPi));
  if (fc > 3.14159) fc = kPi;

  for (int phase = 0; phase < k->phases; ++phase) {
    int32_t raw[kMaxResampleTaps];
    int32_t sum = 0;
    for (int t = 0; t < taps; ++t) {
      const float offset = static_cast<float>(t - k->centre) -
                           static_cast<float>(phase) / static_cast<float>(k->phases);
      const float x = offset * fc;
      if (x == 0.0f) {
        raw[t] = kUnity;
      } else {
        const float s = RoundToSingle(std::sin(static_cast<double>(x)));
        raw[t] = static_cast<int32_t>(static_cast<double>(s) / static_cast<double>(x) *
                                      window[t] * 4096.0);
      }
      sum += raw[t];
    }
    // Each phase is scaled to sum to exactly 1.0; the tap just left of the
    // sample point takes whatever the truncations left over.
    int32_t* row = k->words + phase * taps;
    int32_t others = 0;
    for (int t = 0; t < taps; ++t) {
      row[t] = sum != 0 ? raw[t] * kUnity / sum : raw[t];
      if (t != k->centre) others += row[t];
    }
    row[k->centre] = kUnity - others;
    for (int t = 0; t < taps; ++t) {
      const uint32_t half = static_cast<uint16_t>(row[t]);
      row[t] = static_cast<int32_t>(half << 16 | half);
      k->lanes[(phase * taps + t) * 2] = row[t];
      k->lanes[(phase * taps + t) * 2 + 1] = row[t];
    }
  }
}

void BuildResampleSites(const ResampleLineParams* p, int32_t count, ResampleSite* sites) {
  const ResampleKernel& k = *p->kernel;
  int64_t pos = 0;
  for (int32_t j = 0; j < count; ++j, pos += p->step) {
    const int phase = static_cast<int>((pos & 0xFFFF) >> k.phase_shift);
    sites[j] = {static_cast<int32_t>((pos >> 16) - k.centre), phase * k.taps * 4};
  }
}

void ResampleInteriorRange(const ResampleLineParams* p, int32_t x0, int32_t width, int32_t* lo,
                           int32_t* hi) {
  const int64_t first = x0, end = static_cast<int64_t>(x0) + width;
  const int centre = p->kernel->centre;
  // Output j is interior when centre <= n(j) <= src_len - taps + centre,
  // with n(j) = (j * step) >> 16 non-decreasing in j.
  const int64_t max_n = static_cast<int64_t>(p->src_len) - p->kernel->taps + centre;
  int64_t a = end, b = end;
  if (max_n >= centre) {
    a = ((static_cast<int64_t>(centre) << 16) + p->step - 1) / p->step;
    b = (((max_n + 1) << 16) + p->step - 1) / p->step;
  }
  a = std::clamp(a, first, end);
  b = std::clamp(b, a, end);
  *lo = static_cast<int32_t>(a);
  *hi = static_cast<int32_t>(b);
}

}  // namespace qbo
