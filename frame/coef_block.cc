#include "frame/coef_block.h"

#include "colorspace/matrices.h"

namespace qbo {

CsCoefBlock g_coef;

namespace {

// Fixed-point coefficient sets (16384 = 1.0). The three luma weights of
// each set add up to exactly 16384.
struct CoefSet {
  int16_t kr, kg, kb;        // luma weights
  int16_t ur, ug, ub;        // U weights
  int16_t vr, vg, vb;        // V weights
  int16_t r_v, g_u, g_v, b_u;  // YUV to RGB
};

constexpr CoefSet k601 = {4898, 9618, 1868, -2764, -5428, 8192, 8192, -6860, -1332,
                          22970, -5638, -11700, 29032};
constexpr CoefSet k709 = {3484, 11717, 1183, -1877, -6315, 8192, 8192, -7441, -751,
                          25800, -3069, -7671, 30402};

void Splat(Lanes8* out, int16_t value) {
  for (int16_t& lane : out->v) lane = value;
}

// Two pixel quadruples; lane 3 of each is alpha's weight, always 0.
void Quads(Lanes8* out, int16_t a0, int16_t a1, int16_t a2, int16_t b0, int16_t b1,
           int16_t b2) {
  *out = Lanes8{{a0, a1, a2, 0, b0, b1, b2, 0}};
}

void SecondQuadOnly(Lanes8* out, int16_t b0, int16_t b1, int16_t b2) {
  out->v[4] = b0;
  out->v[5] = b1;
  out->v[6] = b2;
  out->v[7] = 0;
}

void Pairs(Lanes8* out, int16_t even, int16_t odd) {
  for (int i = 0; i < 8; i += 2) {
    out->v[i] = even;
    out->v[i + 1] = odd;
  }
}

// Three luma weights with a period of three lanes, starting at `first`.
void Pattern(Lanes8* out, int16_t w0, int16_t w1, int16_t w2) {
  const int16_t w[3] = {w0, w1, w2};
  for (int i = 0; i < 8; ++i) out->v[i] = w[i % 3];
}

void FillFloatTerms(Float4* g_terms, Float4* rb_terms, const float* yuva_to_rgba) {
  // Row 0 is R, row 1 G, row 2 B; columns Y, U, V.
  *g_terms = Float4{{MatrixCell(yuva_to_rgba, 1, 0), MatrixCell(yuva_to_rgba, 1, 1),
                     MatrixCell(yuva_to_rgba, 1, 2), 0.0f}};
  *rb_terms = Float4{{MatrixCell(yuva_to_rgba, 0, 0), MatrixCell(yuva_to_rgba, 2, 1),
                      MatrixCell(yuva_to_rgba, 0, 2), MatrixCell(yuva_to_rgba, 2, 0)}};
}

struct SetVectors {
  Lanes8 *b_from_u, *g_from_v, *g_from_u, *r_from_v;
  Lanes8 *v_bgra, *u_bgra, *uv_bgra, *y_bgra;
  Lanes8 *v_rgba, *u_rgba, *uv_rgba, *y_rgba;
  Lanes8 *pattern_a, *pattern_b, *pair_br, *pair_g, *pair_rb;
};

void FillSet(const CoefSet& c, const SetVectors& out, bool bgra_uv_first_half) {
  Splat(out.b_from_u, c.b_u);
  Splat(out.g_from_v, c.g_v);
  Splat(out.g_from_u, c.g_u);
  Splat(out.r_from_v, c.r_v);

  Quads(out.y_bgra, c.kb, c.kg, c.kr, c.kb, c.kg, c.kr);
  Quads(out.u_bgra, c.ub, c.ug, c.ur, c.ub, c.ug, c.ur);
  Quads(out.v_bgra, c.vb, c.vg, c.vr, c.vb, c.vg, c.vr);
  if (bgra_uv_first_half) {
    Quads(out.uv_bgra, c.ub, c.ug, c.ur, c.vb, c.vg, c.vr);
  } else {
    SecondQuadOnly(out.uv_bgra, c.vb, c.vg, c.vr);
  }

  Quads(out.y_rgba, c.kr, c.kg, c.kb, c.kr, c.kg, c.kb);
  Quads(out.u_rgba, c.ur, c.ug, c.ub, c.ur, c.ug, c.ub);
  Quads(out.v_rgba, c.vr, c.vg, c.vb, c.vr, c.vg, c.vb);
  Quads(out.uv_rgba, c.ur, c.ug, c.ub, c.vr, c.vg, c.vb);

  Pattern(out.pattern_a, c.kg, c.kb, c.kr);
  Pattern(out.pattern_b, c.kg, c.kr, c.kb);
  Pairs(out.pair_br, c.kb, c.kr);
  Pairs(out.pair_g, c.kg, 0);
  Pairs(out.pair_rb, c.kr, c.kb);
}

}  // namespace

void CsInitCoefficients() {
  CsCoefBlock& b = g_coef;
  FillFloatTerms(&b.FloatGTerms601, &b.FloatRBTerms601, kYuvaToRgba601);
  FillFloatTerms(&b.FloatGTerms709, &b.FloatRBTerms709, kYuvaToRgba709);

  FillSet(k601,
          {&b.BFromU601, &b.GFromV601, &b.GFromU601, &b.RFromV601, &b.VFromBgra601,
           &b.UFromBgra601, &b.UVFromBgra601, &b.YFromBgra601, &b.VFromRgba601,
           &b.UFromRgba601, &b.UVFromRgba601, &b.YFromRgba601, &b.Y24PatternA601,
           &b.Y24PatternB601, &b.YPairBR601, &b.YPairG601, &b.YPairRB601},
          /*bgra_uv_first_half=*/false);
  FillSet(k709,
          {&b.BFromU709, &b.GFromV709, &b.GFromU709, &b.RFromV709, &b.VFromBgra709,
           &b.UFromBgra709, &b.UVFromBgra709, &b.YFromBgra709, &b.VFromRgba709,
           &b.UFromRgba709, &b.UVFromRgba709, &b.YFromRgba709, &b.Y24PatternA709,
           &b.Y24PatternB709, &b.YPairBR709, &b.YPairG709, &b.YPairRB709},
          /*bgra_uv_first_half=*/true);
}

}  // namespace qbo
