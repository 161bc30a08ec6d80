// Rows of the windowed-sinc resampling passes (4 and 8 taps).
//
// Arithmetic (every level, per byte channel): a tap contributes
//   t = (sample * 128 * weight) >> 16      (arithmetic shift: the high half
//                                           of a signed 16 x 16 product)
// the taps are summed with 16-bit wrap-around, the sum plus 4 (again in 16
// bits) is shifted right by 3 and clamped to 0..255. Weights are Q12 (4096 =
// 1.0); sample * 128 is at most 32640, so it is an exact signed 16-bit
// operand.
//
// Contracts
//   ResampleRowH{4,8}(dst, src, x0, width, p)
//     writes `width` pixels of 4 bytes for output positions x0 .. x0 +
//     width - 1 of a horizontal pass; `dst` points at output pixel x0, `src`
//     at the first sample of the source line of p->src_len pixels. Output j
//     samples the line at j * p->step (16.16); taps are clamped to the line,
//     so only src[0 .. src_len) is read. dst must not overlap src. The
//     reference row works positions out itself; the SIMD rows read them
//     from p->sites (BuildResampleSites), which must cover x0 + width.
//     The _SSE2/_AVX2 rows cover every output themselves: the outputs whose
//     taps reach past either end of the line, and the last outputs that do
//     not fill a whole block, go through the reference row.
//   ResampleRowV{4,8}(dst, taps, bytes)
//     writes `bytes` bytes; byte i is the filtered column i of the source
//     rows taps->rows[k] with weights taps->weights[k]. Reads exactly
//     `bytes` bytes of each row. dst must not overlap a source row.
#ifndef QBO_FILTER_RESAMPLE_ROW_H_
#define QBO_FILTER_RESAMPLE_ROW_H_

#include <cstdint>

namespace qbo {

inline constexpr int kMaxResampleTaps = 8;

// One phase table: `phases` x `taps` Q12 weights. `words` is the table the
// passes are defined by (each weight in both 16-bit halves of its word, so
// one load weighs two channels); `lanes` repeats each word once more, so a
// 128-bit load weighs all four channels of two neighbouring taps.
struct ResampleKernel {
  int taps = 0;
  int phases = 0;
  int phase_shift = 0;  // (pos & 0xFFFF) >> phase_shift selects the phase
  int centre = 0;       // taps left of the sample point, minus one
  int32_t words[128] = {};
  alignas(32) int32_t lanes[256] = {};

  int16_t weight(int phase, int tap) const {
    return static_cast<int16_t>(words[phase * taps + tap]);
  }
  const int16_t* phase_lanes(int phase) const {
    return reinterpret_cast<const int16_t*>(lanes + phase * taps * 2);
  }
};

// Where output j's taps start and which phase weighs them: the first tap's
// sample index (n - centre, before clamping) and the phase's offset in
// kernel->lanes, in 16-bit lanes. Every line of a pass shares them, so the
// driver works them out once.
struct ResampleSite {
  int32_t first;
  int32_t lanes;
};

struct ResampleLineParams {
  const ResampleKernel* kernel;
  int64_t step;               // 16.16 source distance between two outputs
  int32_t src_len;            // samples in the source line, at least 1
  const ResampleSite* sites;  // sites[j] for every output j of the pass
};

struct ResampleColumnTaps {
  const uint8_t* rows[kMaxResampleTaps];
  int16_t weights[kMaxResampleTaps];
};

using ResampleRowHFn = void (*)(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                                const ResampleLineParams* p);
using ResampleRowVFn = void (*)(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);

void ResampleRowH4_C(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                     const ResampleLineParams* p);
void ResampleRowH8_C(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                     const ResampleLineParams* p);
void ResampleRowV4_C(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);
void ResampleRowV8_C(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);

void ResampleRowH4_SSE2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p);
void ResampleRowH8_SSE2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p);
void ResampleRowV4_SSE2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);
void ResampleRowV8_SSE2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);

void ResampleRowH4_AVX2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p);
void ResampleRowH8_AVX2(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                        const ResampleLineParams* p);
void ResampleRowV4_AVX2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);
void ResampleRowV8_AVX2(uint8_t* dst, const ResampleColumnTaps* taps, int32_t bytes);

// Builds the phase table for scaling a line of `src_size` samples to
// `dst_size` (both positive), `taps` 4 or 8.
void BuildResampleKernel(ResampleKernel* k, int taps, int32_t dst_size, int32_t src_size);

// (src_size << 16) / dst_size + 1: the 16.16 step between outputs.
inline int64_t ResampleStep(int32_t src_size, int32_t dst_size) {
  return (static_cast<int64_t>(src_size) << 16) / dst_size + 1;
}

// sites[j] for outputs j = 0 .. count - 1 of a pass with p's step.
void BuildResampleSites(const ResampleLineParams* p, int32_t count, ResampleSite* sites);

// The outputs [*lo, *hi) of [x0, x0 + width) whose taps all fall inside the
// line, so a row may read them without clamping.
void ResampleInteriorRange(const ResampleLineParams* p, int32_t x0, int32_t width, int32_t* lo,
                           int32_t* hi);

}  // namespace qbo

#endif  // QBO_FILTER_RESAMPLE_ROW_H_
