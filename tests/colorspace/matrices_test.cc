// The exported matrix queries.
#include <gtest/gtest.h>

#include <cmath>

#include "QuillonBufferOperaU.h"
#include "frame/coef_block.h"

namespace qbo::test {
namespace {

using MatrixQuery = const float*(QBO_CALLEE*)(int32_t);
using CellQuery = float(QBO_CALLEE*)(int32_t, int32_t, int32_t);

TEST(Matrices, SelectorsPickTheStandardOrNothing) {
  const struct {
    MatrixQuery matrix;
    CellQuery cell;
  } queries[] = {{QN_CS_GetMatYUVA2RGBA, QN_CS_GetMatYUVA2RGBA_Cell},
                 {QN_CS_GetMatRGBA2YUVA, QN_CS_GetMatRGBA2YUVA_Cell}};
  for (const auto& q : queries) {
    for (int32_t bad : {0, 3, 5, -1}) {
      EXPECT_EQ(q.matrix(bad), nullptr) << bad;
      EXPECT_EQ(q.cell(0, 0, bad), 0.0f) << bad;
    }
    EXPECT_NE(q.matrix(1), q.matrix(2));
    EXPECT_EQ(q.matrix(1), q.matrix(1)) << "constant data, not a copy";
    for (int32_t standard : {1, 2}) {
      for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c)
          EXPECT_EQ(q.cell(r, c, standard), q.matrix(standard)[r * 4 + c]);
      }
      // Out-of-range cells read 0.0 rather than memory past the matrix.
      EXPECT_EQ(q.cell(4, 0, standard), 0.0f);
      EXPECT_EQ(q.cell(0, -1, standard), 0.0f);
    }
  }
}

TEST(Matrices, KnownCells) {
  EXPECT_FLOAT_EQ(QN_CS_GetMatYUVA2RGBA(1)[0 * 4 + 2], 1.574722f);
  // BT.601 cells are exact fractions: 1.771973 and 0.29895 to six places.
  EXPECT_EQ(QN_CS_GetMatYUVA2RGBA(2)[2 * 4 + 1], 29032.0f / 16384.0f);
  EXPECT_EQ(QN_CS_GetMatRGBA2YUVA_Cell(0, 0, 2), 4898.0f / 16384.0f);
  EXPECT_EQ(QN_CS_GetMatRGBA2YUVA_Cell(1, 2, 1), 0.5f);
  EXPECT_FLOAT_EQ(QN_CS_GetMatLUVA2RGBA()[0 * 4 + 2], 1.468613f);
  EXPECT_FLOAT_EQ(QN_CS_GetMatLUVA2RGBA()[1 * 4 + 2], -0.7480668f);
  EXPECT_EQ(QN_CS_GetMatLUVA2RGBA(), QN_CS_GetMatLUVA2RGBA());
}

TEST(Matrices, AlphaRowAndColumnPassThrough) {
  const float* all[] = {QN_CS_GetMatYUVA2RGBA(1), QN_CS_GetMatYUVA2RGBA(2),
                        QN_CS_GetMatRGBA2YUVA(1), QN_CS_GetMatRGBA2YUVA(2),
                        QN_CS_GetMatLUVA2RGBA()};
  for (const float* m : all) {
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(m[i * 4 + 3], 0.0f);
      EXPECT_EQ(m[3 * 4 + i], 0.0f);
    }
    EXPECT_EQ(m[15], 1.0f);
  }
}

// BT.601 float cells are the fixed-point coefficients over 16384 exactly,
// so float and integer paths agree; BT.709's round to them.
TEST(Matrices, Bt601CellsAreTheFixedPointCoefficientsExactly) {
  const float* to_rgb = QN_CS_GetMatYUVA2RGBA(2);
  EXPECT_EQ(to_rgb[0 * 4 + 2] * 16384.0f, g_coef.RFromV601.v[0]);
  EXPECT_EQ(to_rgb[1 * 4 + 1] * 16384.0f, g_coef.GFromU601.v[0]);
  EXPECT_EQ(to_rgb[1 * 4 + 2] * 16384.0f, g_coef.GFromV601.v[0]);
  EXPECT_EQ(to_rgb[2 * 4 + 1] * 16384.0f, g_coef.BFromU601.v[0]);
  const float* to_yuv = QN_CS_GetMatRGBA2YUVA(2);
  const Lanes8& y = g_coef.YFromRgba601;  // R, G, B weights in lanes 0..2
  const Lanes8& u = g_coef.UFromRgba601;
  const Lanes8& v = g_coef.VFromRgba601;
  for (int c = 0; c < 3; ++c) {
    EXPECT_EQ(to_yuv[0 * 4 + c] * 16384.0f, y.v[c]);
    EXPECT_EQ(to_yuv[1 * 4 + c] * 16384.0f, u.v[c]);
    EXPECT_EQ(to_yuv[2 * 4 + c] * 16384.0f, v.v[c]);
  }
  const float* to_rgb709 = QN_CS_GetMatYUVA2RGBA(1);
  EXPECT_EQ(static_cast<int>(std::lround(to_rgb709[0 * 4 + 2] * 16384.0f)), g_coef.RFromV709.v[0]);
  EXPECT_EQ(static_cast<int>(std::lround(to_rgb709[2 * 4 + 1] * 16384.0f)), g_coef.BFromU709.v[0]);
}

}  // namespace
}  // namespace qbo::test
