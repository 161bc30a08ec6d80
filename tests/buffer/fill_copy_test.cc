// Fills, copies, alpha fills and the flip, at every kernel level, with
// guard bytes around every destination.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "buffer/fill_copy_row.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

uint32_t Word(const uint8_t* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}

TEST(CopyRowBytes, EveryRowMatchesTheReference) {
  struct Row {
    const char* name;
    CopyRowBytesFn fn;
    KernelLevel level;
  };
  const Row rows[] = {{"SSE2", CopyRowBytes_SSE2, KernelLevel::kSse2},
                      {"AVX2", CopyRowBytes_AVX2, KernelLevel::kAvx2}};
  for (const Row& row : rows) {
    if (row.level > MachineKernelLevel()) continue;
    for (std::size_t bytes : {0, 1, 7, 8, 15, 16, 17, 31, 32, 33, 63, 64, 65, 719, 1920, 4097}) {
      for (std::size_t offset = 0; offset < 3; ++offset) {
        SCOPED_TRACE(::testing::Message() << row.name << " bytes=" << bytes << " off=" << offset);
        const std::vector<uint8_t> src = RandomBytes(bytes + offset + 1, 7u + static_cast<uint32_t>(bytes));
        GuardedBuffer expected(bytes, offset), actual(bytes, offset);
        CopyRowBytes_C(expected.data(), src.data() + offset, bytes / 16, bytes % 16);
        row.fn(actual.data(), src.data() + offset, bytes / 16, bytes % 16);
        ASSERT_EQ(std::memcmp(expected.data(), actual.data(), bytes), 0);
        ASSERT_EQ(std::memcmp(expected.data(), src.data() + offset, bytes), 0);
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

TEST(CopyRowBytes, TailBitsCopyInDescendingUnits) {
  // Tail 0b1010 copies 8 then 2 bytes, ten in all, right after the blocks.
  std::vector<uint8_t> src = RandomBytes(64, 3);
  GuardedBuffer dst(26);
  std::memset(dst.data(), 0, 26);
  CopyRowBytes_C(dst.data(), src.data(), 1, 0b1010);
  EXPECT_EQ(std::memcmp(dst.data(), src.data(), 26), 0);
  EXPECT_TRUE(dst.GuardsIntact());
}

TEST(MemsetDword, WritesExactlyCountWords) {
  ForEachLevel([](KernelLevel) {
    for (int32_t count : {0, 1, 2, 3, 4, 5, 7, 8, 9, 31, 1920}) {
      SCOPED_TRACE(count);
      for (std::size_t offset : {0, 4, 8}) {
        GuardedBuffer buf(static_cast<std::size_t>(count) * 4, offset);
        EXPECT_EQ(QN_MemsetDWORD(buf.data(), 0x11223344u, count), 1);
        for (int32_t i = 0; i < count; ++i) ASSERT_EQ(Word(buf.data() + 4 * i), 0x11223344u);
        ASSERT_TRUE(buf.GuardsIntact());
      }
    }
    GuardedBuffer none(0);
    EXPECT_EQ(QN_MemsetDWORD(none.data(), 1, -3), 1);
    EXPECT_TRUE(none.GuardsIntact()) << "a negative count writes nothing";
  });
}

TEST(Memcpy, CopiesAndReportsLikeTheInterfaceSays) {
  ForEachLevel([](KernelLevel) {
    for (int32_t size : {1, 7, 8, 9, 63, 64, 65, 127, 1000, 8191}) {
      for (std::size_t offset : {0, 1, 5, 16}) {
        SCOPED_TRACE(::testing::Message() << "size=" << size << " off=" << offset);
        const std::vector<uint8_t> src = RandomBytes(static_cast<std::size_t>(size), 11);
        GuardedBuffer dst(static_cast<std::size_t>(size), offset);
        EXPECT_EQ(QN_Memcpy(dst.data(), src.data(), size), dst.data());
        ASSERT_EQ(std::memcmp(dst.data(), src.data(), static_cast<std::size_t>(size)), 0);
        ASSERT_TRUE(dst.GuardsIntact());
      }
    }
    uint8_t src[4] = {1, 2, 3, 4};
    GuardedBuffer dst(4);
    EXPECT_EQ(QN_Memcpy(dst.data(), src, 0), nullptr);
    EXPECT_EQ(QN_Memcpy(dst.data(), nullptr, 4), nullptr);
    EXPECT_EQ(QN_Memcpy(nullptr, src, 4), nullptr);
    EXPECT_EQ(QN_Memcpy(dst.data(), src, -4), nullptr);
    EXPECT_EQ(dst.data()[0], GuardedBuffer::kSentinel) << "rejected calls copy nothing";
  });
}

struct ClearCase {
  int32_t pitch, left, top, width, bottom;
  std::size_t offset;  // 0 makes the first pixel 16-byte aligned (streaming)
};

TEST(Clear, FillsRowsTopToBottomInclusive) {
  constexpr int32_t kRows = 6;
  const ClearCase cases[] = {
      {64, 0, 0, 16, 5, 0},  // whole image, aligned
      {64, 1, 1, 5, 3, 0},   // interior, unaligned first pixel
      {64, 3, 2, 7, 2, 4},   // bottom == top: one row
      {64, 2, 4, 3, 1, 0},   // bottom < top: still row top
      {60, 0, 0, 15, 5, 8},  // pitch not a multiple of 16: rows drift off alignment
      {66, 1, 1, 4, 4, 0},   // pitch not a multiple of 4: pitch / 4 = 16 pixels a row
      {64, 0, 0, 0, 5, 0},   // width 0 writes nothing
      {64, 4, 0, -2, 5, 0},  // negative width writes nothing
  };
  ForEachLevel([&](KernelLevel) {
    for (const ClearCase& c : cases) {
      SCOPED_TRACE(::testing::Message() << "pitch=" << c.pitch << " left=" << c.left << " top="
                                        << c.top << " width=" << c.width << " bottom=" << c.bottom);
      const std::size_t bytes = static_cast<std::size_t>(c.pitch) * kRows;
      GuardedBuffer buf(bytes, c.offset);
      std::memset(buf.data(), 0, bytes);
      EXPECT_EQ(QN_Clear(buf.data(), c.pitch, c.left, c.top, c.width, c.bottom, 0xCAFEF00Du),
                buf.data());
      const int32_t row_pixels = c.pitch >> 2;
      const int32_t last = std::max(c.top, c.bottom);
      for (int32_t px = 0; px < static_cast<int32_t>(bytes / 4); ++px) {
        const int32_t row = px / row_pixels, col = px % row_pixels;
        const bool filled = row >= c.top && row <= last && col >= c.left && col < c.left + c.width;
        ASSERT_EQ(Word(buf.data() + 4 * px), filled ? 0xCAFEF00Du : 0u) << "pixel " << px;
      }
      ASSERT_TRUE(buf.GuardsIntact());
    }
  });
  EXPECT_EQ(QN_Clear(nullptr, 64, 0, 0, 4, 0, 1), nullptr);
}

TEST(AlphaMemSet, SetsOnlyTheAlphaByte) {
  ForEachLevel([](KernelLevel) {
    for (int32_t width : {1, 3, 4, 5, 8, 9, 17}) {
      for (int32_t height : {1, 2, 3}) {
        SCOPED_TRACE(::testing::Message() << width << "x" << height);
        const std::size_t bytes = static_cast<std::size_t>(width) * height * 4;
        const std::vector<uint8_t> before = RandomBytes(bytes, 5);
        GuardedBuffer buf(bytes, 4);
        std::memcpy(buf.data(), before.data(), bytes);
        // 0x1FF: only the low 8 bits count.
        EXPECT_EQ(QN_AlphaMemSet(buf.data(), 0x1FF, width, height), buf.data());
        for (std::size_t i = 0; i < bytes; ++i) {
          ASSERT_EQ(buf.data()[i], i % 4 == 3 ? 0xFF : before[i]) << "byte " << i;
        }
        ASSERT_TRUE(buf.GuardsIntact());
      }
    }
  });
  GuardedBuffer buf(16);
  EXPECT_EQ(QN_AlphaMemSet(nullptr, 1, 2, 2), nullptr);
  EXPECT_EQ(QN_AlphaMemSet(buf.data(), 1, -4, 1), buf.data());
  EXPECT_EQ(buf.data()[3], GuardedBuffer::kSentinel);
}

TEST(OverTurnSelf, ReversesRowsWithTheirPadding) {
  ForEachLevel([](KernelLevel) {
    for (int32_t pitch : {0, 1, 4, 15, 16, 17, 44, 7680}) {
      for (int32_t height : {0, 1, 2, 3, 6, 7}) {
        SCOPED_TRACE(::testing::Message() << "pitch=" << pitch << " height=" << height);
        const std::size_t bytes = static_cast<std::size_t>(pitch) * height;
        const std::vector<uint8_t> before = RandomBytes(bytes + 1, 9);
        GuardedBuffer buf(bytes);
        std::memcpy(buf.data(), before.data(), bytes);
        EXPECT_EQ(QN_OverTurnSelf(buf.data(), pitch, height), 1);
        for (int32_t r = 0; r < height; ++r) {
          ASSERT_EQ(std::memcmp(buf.data() + static_cast<std::size_t>(r) * pitch,
                                before.data() + static_cast<std::size_t>(height - 1 - r) * pitch,
                                static_cast<std::size_t>(pitch)),
                    0)
              << "row " << r;
        }
        ASSERT_TRUE(buf.GuardsIntact());
      }
    }
  });
}

TEST(OverTurnSelf, RejectsBadArgumentsAndFailedScratch) {
  uint8_t image[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(QN_OverTurnSelf(nullptr, 4, 2), 0);
  EXPECT_EQ(QN_OverTurnSelf(image, -4, 2), 0);
  EXPECT_EQ(QN_OverTurnSelf(image, 4, -2), 0);

  FakePlatform failing;
  failing.fail_aligned_alloc_at = 1;
  SetPlatformForTesting(&failing);
  EXPECT_EQ(QN_OverTurnSelf(image, 4, 2), 0);
  SetPlatformForTesting(nullptr);
  EXPECT_EQ(image[0], 1) << "image untouched when the temporary row cannot be had";
  EXPECT_EQ(failing.live_aligned, 0);
}

TEST(Placeholders, TouchNothing) {
  EXPECT_EQ(QN_ColorMixLine(1, 2, 3), 1);
  QN_CalMask(0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

}  // namespace
}  // namespace qbo::test
