// Rows of the 8-bit and 32-bit bilinear zooms.
//
// A zoom row does not index the source itself. For each destination column
// c the driver first gathers the two horizontal neighbours of the column's
// sample into "pair rows", one for the upper source row and one for the
// lower: pairs[c] = (sample at ix, sample at ix + 1), a neighbour past the
// source's last column or row being 0. The rows then blend contiguous pairs
// with the column fractions fx[c] and the row fraction fy, so they vectorise
// without gathers, and a pair row serves every destination row that samples
// the same source row.
//
// Contracts
//   Zoom8Row(dst, upper, lower, fx, fy, width)
//     upper/lower: 2 x width bytes (p00, p01 / p10, p11 per column).
//     dst[c] = trunc(w00 p00 + w01 p01 + w10 p10 + w11 p11), the weights
//     w00 = (1 - fy)(1 - fx), w01 = (1 - fy) fx, w10 = (1 - fx) fy,
//     w11 = fy fx formed in single precision, the products and the sum in
//     double precision, added left to right. Products of a float weight and
//     a byte are exact in double, so only the order of the three additions
//     matters; every level keeps it.
//   Zoom32Row(dst, upper, lower, fx, fy, width)
//     upper/lower: 8 x width bytes (pixel ix, pixel ix + 1 per column);
//     dst: 4 x width bytes. For each of the four bytes
//     v = p00 (1 - fx)(1 - fy) + p01 fx (1 - fy) + (p10 (1 - fx) fy
//         + p11 fx fy), every product and sum in single precision, evaluated
//     left to right; stored rounded half to even, clamped to 0..255.
//   Both: fx holds `width` fractions in [0, 1); any alignment; dst does not
//     overlap the inputs. _SSE2 rows take width % 4 == 0, _AVX2 rows
//     width % 8 (Zoom8) and width % 4 (Zoom32); _Any_ rows any width, the
//     vector row on the whole vectors and the reference row on the rest.
#ifndef QBO_BLIT_ZOOM_ROW_H_
#define QBO_BLIT_ZOOM_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

using ZoomRowFn = void (*)(uint8_t* dst, const uint8_t* upper, const uint8_t* lower,
                           const float* fx, float fy, std::size_t width);

void Zoom8Row_C(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx, float fy,
                std::size_t width);
void Zoom8Row_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                   float fy, std::size_t width);
void Zoom8Row_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                   float fy, std::size_t width);
void Zoom8Row_Any_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                       float fy, std::size_t width);
void Zoom8Row_Any_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                       float fy, std::size_t width);

void Zoom32Row_C(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                 float fy, std::size_t width);
void Zoom32Row_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                    float fy, std::size_t width);
void Zoom32Row_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                    float fy, std::size_t width);
void Zoom32Row_Any_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                        float fy, std::size_t width);
void Zoom32Row_Any_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                        float fy, std::size_t width);

// Gathers the pair row of one source row for `width` columns: pairs[c] =
// (row[ix[c]], row[ix[c] + 1]) in units of `Sample` (uint8_t, or a 4-byte
// pixel), a neighbour at or past `limit` being 0; a null `row` (a source row
// past the last) gives all zeros. `ix` never decreases, so the columns whose
// two neighbours both exist come first and are copied as one unit each.
// Reads row[0 .. limit) only.
template <typename Sample>
void GatherZoomPairs(Sample* pairs, const Sample* row, const int32_t* ix, int32_t limit,
                     std::size_t width) {
  std::size_t c = 0;
  if (row) {
    for (; c < width && ix[c] < limit - 1; ++c) {
      __builtin_memcpy(pairs + 2 * c, row + ix[c], 2 * sizeof(Sample));
    }
  }
  for (; c < width; ++c) {
    const int32_t i = ix[c];
    Sample left{}, right{};
    if (row && i < limit) {
      left = row[i];
      if (i < limit - 1) right = row[i + 1];
    }
    pairs[2 * c] = left;
    pairs[2 * c + 1] = right;
  }
}

}  // namespace qbo

#endif  // QBO_BLIT_ZOOM_ROW_H_
