// The colour coefficient block: 2^14 fixed-point vectors of eight signed
// 16-bit lanes, ready for eight-lane multiplies, and four float quadruples.
// A "pixel quadruple" is four lanes applying, in order, to bytes 0..3 of a
// 32-bit pixel in memory; an eight-lane vector holds two, for the first and
// second pixel of a pair. Lane 3 of every quadruple is 0, so alpha never
// feeds Y, U or V. Members are in storage order; every vector is 16 bytes
// and consumers load them unaligned.
#ifndef QBO_FRAME_COEF_BLOCK_H_
#define QBO_FRAME_COEF_BLOCK_H_

#include <cstdint>

namespace qbo {

struct Lanes8 {
  int16_t v[8];
};
struct Float4 {
  float v[4];
};

struct CsCoefBlock {
  // Y weight, G from U, G from V, 0 / Y weight, B from U, R from V, 1.
  Float4 FloatGTerms601, FloatRBTerms601, FloatGTerms709, FloatRBTerms709;

  Lanes8 BFromU601, GFromV601, GFromU601, RFromV601;
  Lanes8 VFromBgra601, UFromBgra601, UVFromBgra601, YFromBgra601;
  Lanes8 VFromRgba601, UFromRgba601, UVFromRgba601, YFromRgba601;
  Lanes8 BFromU709, GFromV709, GFromU709, RFromV709;
  Lanes8 VFromBgra709, UFromBgra709, UVFromBgra709, YFromBgra709;
  Lanes8 VFromRgba709, UFromRgba709, UVFromRgba709, YFromRgba709;
  Lanes8 Y24PatternA601, Y24PatternB601, Y24PatternA709, Y24PatternB709;
  Lanes8 YPairBR601, YPairG601, YPairRB601, YPairBR709, YPairG709, YPairRB709;
};

static_assert(sizeof(CsCoefBlock) == 4 * 16 + 34 * 16, "block layout is fixed");

// The library-wide block, zero until CsInitCoefficients fills it at attach.
extern CsCoefBlock g_coef;

// Stores every constant of the block. It never writes the first quadruple
// of UVFromBgra601: that half stays at the zero of static storage, so U
// taken through it has all weights zero and comes out as the neutral 128.
void CsInitCoefficients();

}  // namespace qbo

#endif  // QBO_FRAME_COEF_BLOCK_H_
