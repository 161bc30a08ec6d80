// The mask rows worked by hand.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "buffer/mask_row.h"
#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

struct PairCase {
  uint8_t d, s, expected;
};

TEST(MaskRowsReference, MixMaskIsTheRoundedScreen) {
  const PairCase cases[] = {
      {128, 128, 192},             // 256 - (16384 + 255) / 256 = 256 - 64
      {255, 255, 255},             // 510 - (65025 + 255) / 256 = 510 - 255
      {0, 77, 77},                 // 77 - 255 / 256 = 77
      {77, 0, 77},     {1, 1, 1},  // 2 - 256 / 256
      {200, 100, 221},             // 300 - 20255 / 256 = 300 - 79
      {255, 3, 255},               // 258 - 1020 / 256 = 258 - 3
  };
  for (const PairCase& c : cases) {
    uint8_t d = c.d;
    MixMaskRow_C(&d, &c.s, 1);
    EXPECT_EQ(d, c.expected) << int(c.d) << " mix " << int(c.s);
  }
}

TEST(MaskRowsReference, SubMaskFloorsAtZero) {
  const PairCase cases[] = {{200, 50, 150}, {50, 200, 0}, {7, 7, 0}, {255, 0, 255}, {0, 255, 0}};
  for (const PairCase& c : cases) {
    uint8_t d = c.d;
    SubMaskRow_C(&d, &c.s, 1);
    EXPECT_EQ(d, c.expected) << int(c.d) << " sub " << int(c.s);
  }
}

TEST(MaskRowsReference, FillMaskColorScalesOnlyAlpha) {
  struct Case {
    uint8_t alpha, mask, expected;
  };
  const Case cases[] = {
      {255, 128, 128},               // 255 x 0.50196081 = 128.0000
      {77, 255, 77},                 // x 1.0 exactly
      {200, 0, 0},     {3, 128, 2},  // 1.5058824 rounds up
      {1, 127, 0},                   // 0.4980392
      {1, 128, 1},                   // 0.5019608
      {100, 51, 20},                 // 51 x 0.003921569 = 0.2000000; 20.000000
  };
  for (const Case& c : cases) {
    uint8_t px[4] = {11, 22, 33, c.alpha};
    FillMaskColorRow_C(px, &c.mask, g_tables.inv_byte, 1);
    EXPECT_EQ(px[3], c.expected) << "alpha " << int(c.alpha) << " mask " << int(c.mask);
    EXPECT_EQ(px[0] + px[1] + px[2], 66) << "colour bytes untouched";
  }
}

}  // namespace
}  // namespace qbo::test
