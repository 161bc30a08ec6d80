// Rows of the bilinear stretch, split in a vertical and a horizontal pass.
//
// Every byte of a destination pixel is
//   V(T, B) = (((T + 1) x wt) >> 16) + 1 + (((B + 1) x (65535 - wt)) >> 16)
//   out     = min(255, ((Vl x wl) >> 16) + ((Vr x wr) >> 16))
// with T, B the bytes of source rows r and r + 1, wt the row weight, Vl, Vr
// the values of the left and right source column and wl + wr = 65535. V of a
// source column depends only on the column and the row pair, so the
// vertical pass runs once per source column of the row pair and the
// horizontal pass picks Vl and Vr out of it; the bytes are those of
// computing V afresh for every destination pixel. The "+ 1" terms keep a
// flat area unchanged despite the truncations. Each partial sum saturates
// at 65535 (it never reaches it: V <= 511).
//
// Contracts
//   BilinearVertRow(v, top, bottom, wt, count)
//     v[i] = V(top[i], bottom[i]) for `count` bytes; wt <= 65535. Reads
//     `count` bytes of each source row, writes `count` lanes of v; any
//     alignment. _SSE2 takes count % 16 == 0, _AVX2 count % 32 == 0,
//     _AVX512 count % 64 == 0.
//   BilinearHorizRow(dst, v, cols, weights, width)
//     for `width` pixels i: Vl = v[4 x cols[i] + b], Vr = v[4 x cols[i] + 4
//     + b] for bytes b = 0..3; weights holds eight lanes a pixel, wl four
//     times then wr four times (SpreadBilinearWeights), wl + wr = 65535;
//     every v lane <= 511 (as the vertical pass leaves it). Writes `width`
//     pixels of dst. _SSE2 takes width % 4 == 0, _AVX2 width % 8 == 0.
//   BilinearHorizRowStream: the same bytes, the stores past the cache
//     where dst is aligned for them.
#ifndef QBO_BLIT_BILINEAR_ROW_H_
#define QBO_BLIT_BILINEAR_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

using BilinearVertRowFn = void (*)(uint16_t* v, const uint8_t* top, const uint8_t* bottom,
                                   uint32_t wt, std::size_t count);
using BilinearHorizRowFn = void (*)(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                                    const uint16_t* weights, std::size_t width);

void BilinearVertRow_C(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                       std::size_t count);
void BilinearVertRow_SSE2(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                          std::size_t count);
void BilinearVertRow_Any_SSE2(uint16_t* v, const uint8_t* top, const uint8_t* bottom,
                              uint32_t wt, std::size_t count);
void BilinearVertRow_AVX2(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                          std::size_t count);
void BilinearVertRow_Any_AVX2(uint16_t* v, const uint8_t* top, const uint8_t* bottom,
                              uint32_t wt, std::size_t count);

void BilinearVertRow_AVX512(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                            std::size_t count);
void BilinearVertRow_Any_AVX512(uint16_t* v, const uint8_t* top, const uint8_t* bottom,
                                uint32_t wt, std::size_t count);

void BilinearHorizRow_C(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                        const uint16_t* weights, std::size_t width);
void BilinearHorizRow_SSE2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                           const uint16_t* weights, std::size_t width);
void BilinearHorizRow_Any_SSE2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                               const uint16_t* weights, std::size_t width);
void BilinearHorizRow_AVX2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                           const uint16_t* weights, std::size_t width);
void BilinearHorizRow_Any_AVX2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                               const uint16_t* weights, std::size_t width);
void BilinearHorizRowStream_Any_AVX2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                                     const uint16_t* weights, std::size_t width);

// The eight lanes of one pixel's column weights: the left weight wl four
// times, then 65535 - wl four times, laid out once per call so the rows
// load them whole.
inline void SpreadBilinearWeights(uint16_t* lanes, uint32_t wl) {
  for (int b = 0; b < 4; ++b) {
    lanes[b] = static_cast<uint16_t>(wl);
    lanes[4 + b] = static_cast<uint16_t>(65535 - wl);
  }
}

}  // namespace qbo

#endif  // QBO_BLIT_BILINEAR_ROW_H_
