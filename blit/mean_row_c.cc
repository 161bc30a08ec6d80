#include "blit/mean_row.h"

namespace qbo {
namespace {

// The fold of one pixel's accumulator samples, four lanes at a time.
inline void FoldQuads(const float* a, int32_t n, float w0, float w1, float norm, float out[4]) {
  for (int b = 0; b < 4; ++b) {
    float acc = w0 * a[b];
    for (int32_t j = 1; j + 1 < n; ++j) acc = acc + a[4 * j + b];
    if (n >= 2) acc = acc + w1 * a[4 * (n - 1) + b];
    out[b] = acc * norm;
  }
}

}  // namespace

void MeanVertRow_C(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                   float norm, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    float a = w0 * static_cast<float>(rows[0][i]);
    if (n >= 2) {
      uint32_t middle = 0;
      for (int32_t r = 1; r + 1 < n; ++r) {
        middle += rows[r][i];
        if (middle > 65535) middle = 65535;
      }
      a = a + static_cast<float>(middle);
      a = a + w1 * static_cast<float>(rows[n - 1][i]);
    }
    acc[i] = a * norm;
  }
}

void MeanHorizRow_C(uint8_t* dst, const float* acc, const int32_t* counts, const float* weights,
                    float norm, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i, dst += 4) {
    float v[4];
    FoldQuads(acc, counts[i], weights[2 * i], weights[2 * i + 1], norm, v);
    for (int b = 0; b < 4; ++b) dst[b] = MeanByte(v[b]);
    acc += 4 * MeanStep(counts[i]);
  }
}

void YuyvExpandRow_C(float* quads, const float* acc, std::size_t groups) {
  for (std::size_t g = 0; g < groups; ++g, acc += 4, quads += 8) {
    const float* next = g + 1 < groups ? acc + 4 : acc;
    quads[0] = acc[0];
    quads[1] = acc[1];
    quads[2] = acc[3];
    quads[3] = acc[0];
    quads[4] = acc[2];
    quads[5] = (acc[1] + next[1]) * 0.5f;
    quads[6] = (acc[3] + next[3]) * 0.5f;
    quads[7] = acc[2];
  }
}

void YuyvMeanHorizRow_C(uint8_t* dst, const float* quads, const int32_t* counts,
                        const float* weights, float norm, const YuyvMeanParams* params,
                        std::size_t width) {
  const float* g = params->g_terms;
  const float* rb = params->rb_terms;
  for (std::size_t i = 0; i < width; ++i, dst += 4) {
    float q[4];
    FoldQuads(quads, counts[i], weights[2 * i], weights[2 * i + 1], norm, q);
    const float u = q[1] - 128.0f;
    const float v = q[2] - 128.0f;
    dst[params->red_byte] = MeanByte(v * rb[2] + q[0] * rb[0]);
    dst[1] = MeanByte(g[1] * u + (g[2] * v + g[0] * q[0]));
    dst[params->blue_byte] = MeanByte(q[3] * rb[3] + u * rb[1]);
    dst[3] = 255;
    quads += 4 * MeanStep(counts[i]);
  }
}

}  // namespace qbo
