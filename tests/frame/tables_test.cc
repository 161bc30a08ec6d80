// The shared lookup tables and the colour coefficient block.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "frame/coef_block.h"
#include "frame/lookup_tables.h"

namespace qbo::test {
namespace {

struct ShareCase {
  int a, b, expected;
};

TEST(OverShareTable, WorkedEntries) {
  const ShareCase cases[] = {
      {0, 0, 0},        // divisor 0
      {0, 200, 0},      // no upper alpha, no share
      {255, 0, 32767},  // opaque upper layer keeps everything
      {255, 255, 32767},
      {1, 0, 32767},    // any upper alpha over nothing keeps everything
      {128, 0, 32767},
      {128, 255, 16447},  // 32767 x 32640 / 65025 = 16447.9
      {1, 255, 128},      // 8,355,585 / (255 + 254 x 255) = 128.5
      {200, 100, 32767 * 200 * 255 / (255 * 200 + 55 * 100)},
  };
  for (const ShareCase& c : cases) {
    SCOPED_TRACE(::testing::Message() << "a=" << c.a << " b=" << c.b);
    EXPECT_EQ(OverShare(c.a, c.b), c.expected);
  }
}

TEST(OverShareTable, RowsAndColumnsOfTheDefinition) {
  for (int b = 0; b < 256; ++b) {
    EXPECT_EQ(OverShare(0, b), 0);
    EXPECT_EQ(OverShare(255, b), 32767);
  }
  for (int a = 1; a < 256; ++a) EXPECT_EQ(OverShare(a, 0), 32767);
  // The share never grows as the layer beneath becomes more opaque.
  for (int a = 1; a < 255; ++a) {
    for (int b = 1; b < 256; ++b) ASSERT_LE(OverShare(a, b), OverShare(a, b - 1));
  }
}

TEST(InvByteTable, WorkedEntries) {
  EXPECT_EQ(g_tables.inv_byte[0], 0.0f);
  EXPECT_FLOAT_EQ(g_tables.inv_byte[128], 0.50196081f);
  EXPECT_EQ(g_tables.inv_byte[255], 1.0f);  // exactly, in single precision
  for (int i = 0; i < 256; ++i) EXPECT_EQ(g_tables.inv_byte[i], static_cast<float>(i) * 0.003921569f);
}

TEST(RcpProductTable, WithinTheApproximateReciprocal) {
  constexpr double kRelError = 1.5 / 4096.0;
  for (int a = 0; a < 256; a += 17) {
    for (int b = 0; b < 256; ++b) {
      const double exact = static_cast<double>(a) / (b < 2 ? 1 : b);
      ASSERT_NEAR(g_tables.rcp_product[a * 256 + b], exact, exact * kRelError + 1e-7)
          << a << "/" << b;
    }
  }
}

TEST(LookupTables, AlignedForFourWideLoads) {
  EXPECT_EQ(reinterpret_cast<uintptr_t>(g_tables.rcp_product) % 16, 0u);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(g_tables.inv_byte) % 16, 0u);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(g_tables.over_share) % 16, 0u);
}

// The block's exact contents in storage order: 4 float quadruples, then 34
// vectors of eight 16-bit lanes.
TEST(CoefBlock, ExactLanesInStorageOrder) {
  const float floats[16] = {
      1.0f, -5638.0f / 16384, -11700.0f / 16384, 0.0f,  // FloatGTerms601
      1.0f, 29032.0f / 16384, 22970.0f / 16384, 1.0f,   // FloatRBTerms601
      1.0f, -0.187314f, -0.468207f, 0.0f,               // FloatGTerms709
      1.0f, 1.855615f, 1.574722f, 1.0f,                 // FloatRBTerms709
  };
  const int16_t lanes[34][8] = {
      {29032, 29032, 29032, 29032, 29032, 29032, 29032, 29032},  // BFromU601
      {-11700, -11700, -11700, -11700, -11700, -11700, -11700, -11700},
      {-5638, -5638, -5638, -5638, -5638, -5638, -5638, -5638},
      {22970, 22970, 22970, 22970, 22970, 22970, 22970, 22970},
      {-1332, -6860, 8192, 0, -1332, -6860, 8192, 0},  // VFromBgra601
      {8192, -5428, -2764, 0, 8192, -5428, -2764, 0},  // UFromBgra601
      {0, 0, 0, 0, -1332, -6860, 8192, 0},             // UVFromBgra601: U half never written
      {1868, 9618, 4898, 0, 1868, 9618, 4898, 0},      // YFromBgra601
      {8192, -6860, -1332, 0, 8192, -6860, -1332, 0},  // VFromRgba601
      {-2764, -5428, 8192, 0, -2764, -5428, 8192, 0},
      {-2764, -5428, 8192, 0, 8192, -6860, -1332, 0},  // UVFromRgba601
      {4898, 9618, 1868, 0, 4898, 9618, 1868, 0},
      {30402, 30402, 30402, 30402, 30402, 30402, 30402, 30402},  // BFromU709
      {-7671, -7671, -7671, -7671, -7671, -7671, -7671, -7671},
      {-3069, -3069, -3069, -3069, -3069, -3069, -3069, -3069},
      {25800, 25800, 25800, 25800, 25800, 25800, 25800, 25800},
      {-751, -7441, 8192, 0, -751, -7441, 8192, 0},  // VFromBgra709
      {8192, -6315, -1877, 0, 8192, -6315, -1877, 0},
      {8192, -6315, -1877, 0, -751, -7441, 8192, 0},  // UVFromBgra709
      {1183, 11717, 3484, 0, 1183, 11717, 3484, 0},
      {8192, -7441, -751, 0, 8192, -7441, -751, 0},  // VFromRgba709
      {-1877, -6315, 8192, 0, -1877, -6315, 8192, 0},
      {-1877, -6315, 8192, 0, 8192, -7441, -751, 0},
      {3484, 11717, 1183, 0, 3484, 11717, 1183, 0},
      {9618, 1868, 4898, 9618, 1868, 4898, 9618, 1868},  // Y24PatternA601
      {9618, 4898, 1868, 9618, 4898, 1868, 9618, 4898},
      {11717, 1183, 3484, 11717, 1183, 3484, 11717, 1183},
      {11717, 3484, 1183, 11717, 3484, 1183, 11717, 3484},
      {1868, 4898, 1868, 4898, 1868, 4898, 1868, 4898},  // YPairBR601
      {9618, 0, 9618, 0, 9618, 0, 9618, 0},
      {4898, 1868, 4898, 1868, 4898, 1868, 4898, 1868},
      {1183, 3484, 1183, 3484, 1183, 3484, 1183, 3484},  // YPairBR709
      {11717, 0, 11717, 0, 11717, 0, 11717, 0},
      {3484, 1183, 3484, 1183, 3484, 1183, 3484, 1183},
  };
  unsigned char expected[sizeof(CsCoefBlock)];
  std::memcpy(expected, floats, sizeof(floats));
  std::memcpy(expected + sizeof(floats), lanes, sizeof(lanes));
  EXPECT_EQ(std::memcmp(expected, &g_coef, sizeof(g_coef)), 0);
}

TEST(CoefBlock, SecondFillChangesNoByte) {
  const CsCoefBlock before = g_coef;
  CsInitCoefficients();
  EXPECT_EQ(std::memcmp(&before, &g_coef, sizeof(g_coef)), 0);
}

TEST(CoefBlock, LumaWeightsSumToOneAndGreyHasNoChroma) {
  struct Set {
    const Lanes8& y;
    const Lanes8& u;
    const Lanes8& v;
  };
  const Set sets[] = {{g_coef.YFromRgba601, g_coef.UFromRgba601, g_coef.VFromRgba601},
                      {g_coef.YFromRgba709, g_coef.UFromRgba709, g_coef.VFromRgba709},
                      {g_coef.YFromBgra601, g_coef.UFromBgra601, g_coef.VFromBgra601},
                      {g_coef.YFromBgra709, g_coef.UFromBgra709, g_coef.VFromBgra709}};
  for (const Set& s : sets) {
    EXPECT_EQ(s.y.v[0] + s.y.v[1] + s.y.v[2], 16384);  // white -> 255, black -> 0
    EXPECT_EQ(s.u.v[0] + s.u.v[1] + s.u.v[2], 0);      // any grey -> U 128
    EXPECT_EQ(s.v.v[0] + s.v.v[1] + s.v.v[2], 0);      // any grey -> V 128
  }
}

}  // namespace
}  // namespace qbo::test
