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
