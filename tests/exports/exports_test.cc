// The exports through the C interface: every refusal with its own code and
// nothing written, the hand-over of whole jobs to the VelaVid module, and
// properties that hold whatever the arithmetic's details: flat stays flat,
// scale 1 is the identity, split and compose undo each other, colour round
// trips stay close.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "frame/cpu.h"
#include "tests/fakes/fake_vela.h"
#include "tests/support/fake_vela_vid.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr int32_t kFail = QBO_E_FAIL;
constexpr int kSide = 16;  // every image below is kSide x kSide 32-bit pixels

struct Refusal {
  const char* what;
  std::function<int64_t(uint8_t* dst, const uint8_t* src)> call;
  int64_t code;
};

int64_t Ptr(const void* p, const void* dst) { return p == nullptr ? 0 : p == dst ? 1 : 2; }

// (dst, dstX, dstY, w, h, dstW, dstH, src, srcX, srcY, srcW', srcH', srcW, srcH, mode, field)
using Transfer = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                                      const void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                      int32_t, int32_t, int32_t);

std::vector<Refusal> TransferRefusals(const char* name, Transfer fn, int64_t bad_mode) {
  const int s = kSide;
  auto t = [fn](std::initializer_list<int32_t> a, bool null_src = false, bool null_dst = false) {
    return [fn, v = std::vector<int32_t>(a), null_src, null_dst](uint8_t* d, const uint8_t* src) -> int64_t {
      return fn(null_dst ? nullptr : d, v[0], v[1], v[2], v[3], v[4], v[5], null_src ? nullptr : src, v[6],
                v[7], v[8], v[9], v[10], v[11], v[12], v[13]);
    };
  };
  const bool bitblt = fn == QN_BitBlt;
  return {
      {name, t({0, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, 3, 0}), bad_mode},
      {name, t({0, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, -1, 0}), bad_mode},
      {name, t({0, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, 0, 0}, true), bitblt ? kFail : 0},
      {name, t({0, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, 0, 0}, false, true), 0},
      {name, t({s, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, 0, 0}), 0},           // start past the right edge
      {name, t({0, 0, 4, 4, s, s, 0, s, 4, 4, s, s, 0, 0}), 0},           // source start below
      {name, t({-9, 0, 4, 4, s, s, 0, 0, 4, 4, s, s, 0, 0}), 0},          // ends before the buffer
      {name, t({0, 0, 0, 4, s, s, 0, 0, 4, 4, s, s, 0, 0}), 0},           // empty rectangle
      {name, t({0, 0, 4, 4, 0, s, 0, 0, 4, 4, s, s, 0, 0}), 0},           // empty buffer
      {name, t({0, 0, 4, 4, s, s, 0, 0, 4, 4, s, -1, 0, 0}), 0},
      {name, t({0, s - 1, 4, 4, s, s, 0, 0, 8, 8, s, s, 0, 1}), 0},       // a field below the buffer
  };
}

std::vector<Refusal> Refusals() {
  std::vector<Refusal> r;
  const struct {
    const char* name;
    Transfer fn;
    int64_t bad_mode;
  } transfers[] = {{"bitblt", QN_BitBlt, kFail}, {"stretch", QN_StretchBlt, kFail}, {"mean", QN_StretchBlt_Mean, 0}};
  for (const auto& t : transfers) {
    const auto more = TransferRefusals(t.name, t.fn, t.bad_mode);
    r.insert(r.end(), more.begin(), more.end());
  }
  // The equal-size transfer with an unknown field writes nothing.
  r.push_back({"bitblt field 3", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_BitBlt(d, 0, 0, 4, 4, kSide, kSide, s, 0, 0, 4, 4, kSide, kSide, 0, 3);
               }, 0});
  const int side = kSide;
  auto mean_yuyv = [](int32_t src_x, int32_t src_rect, bool null_src) {
    return [=](uint8_t* d, const uint8_t* src) -> int64_t {
      return QN_CS_YUYV2BGRA_MeanStretch(d, 4 * kSide, 0, 0, 4, 4, kSide, kSide, null_src ? nullptr : src,
                                         2 * kSide, src_x, 0, src_rect, 4, kSide, kSide, 0, 0);
    };
  };
  r.push_back({"yuyv mean null source", mean_yuyv(0, 4, true), 0});
  r.push_back({"yuyv mean start at the edge", mean_yuyv(side, 4, false), 0});
  r.push_back({"yuyv mean empty source", mean_yuyv(0, 0, false), 0});
  // Zooms: QBO_E_FAIL for bad arguments, 0 for a negative height.
  r.push_back({"zoom null", [](uint8_t* d, const uint8_t*) -> int64_t { return QN_BufferZoom(d, 8, 8, nullptr, 8, 8); }, kFail});
  r.push_back({"zoom width 0", [](uint8_t* d, const uint8_t* s) -> int64_t { return QN_BufferZoom(d, 0, 8, s, 8, 8); }, kFail});
  r.push_back({"zoom negative source", [](uint8_t* d, const uint8_t* s) -> int64_t { return QN_BufferZoom(d, 8, 8, s, -8, 8); }, kFail});
  r.push_back({"zoom negative height", [](uint8_t* d, const uint8_t* s) -> int64_t { return QN_BufferZoom(d, 8, -1, s, 8, 8); }, 0});
  auto dword = [](std::initializer_list<int32_t> a) {
    return [v = std::vector<int32_t>(a)](uint8_t* d, const uint8_t* s) -> int64_t {
      return QN_DwordBufferZoom(d, v[0], v[1], v[2], v[3], kSide, kSide, s, v[4], v[5], v[6], v[7], kSide, kSide);
    };
  };
  r.push_back({"dword zoom source start at the edge", dword({0, 0, 4, 4, side, 0, 4, 4}), kFail});
  r.push_back({"dword zoom destination start at the edge", dword({0, side, 4, 4, 0, 0, 4, 4}), kFail});
  r.push_back({"dword zoom empty rectangle", dword({0, 0, 4, 0, 0, 0, 4, 4}), kFail});
  r.push_back({"dword zoom clipped away", dword({0, 0, 4, 4, -9, 0, 4, 4}), kFail});
  // Masks: the codes hosts test, in their reversed senses.
  r.push_back({"mix mask rejected", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_MixMask(d, kSide, 0, 4, 4, kSide, kSide, s, 0, 0, 0, 0, kSide, kSide);
               }, 1});
  r.push_back({"sub mask rejected", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_SubMask(d, 0, 0, kSide, kSide, s, kSide, 0, kSide, kSide, 4, 4, 0);
               }, kFail});
  r.push_back({"sub mask empty source", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_SubMask(d, 0, 0, kSide, kSide, s, 0, 0, 0, kSide, 4, 4, 0);
               }, kFail});
  r.push_back({"fill mask outside", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_FillMaskColor(d, kSide, 0, kSide, kSide, s, 0, 0, kSide, kSide);
               }, 1});
  // Resampling: 0 and nothing drawn.
  r.push_back({"resample null", [](uint8_t* d, const uint8_t*) -> int64_t { return QN_Re4Sampling(d, 8, 8, nullptr, 8, 8); }, 0});
  r.push_back({"resample height 0", [](uint8_t* d, const uint8_t* s) -> int64_t { return QN_Re8Sampling(d, 8, 0, s, 8, 8); }, 0});
  r.push_back({"resample one column left", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_Re4SamplingEx(d, kSide - 1, 0, 8, 8, kSide, kSide, s, 0, 0, 8, 8, kSide, kSide);
               }, 0});
  r.push_back({"resample one source row left", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_Re8SamplingEx(d, 0, 0, 8, 8, kSide, kSide, s, 0, kSide - 1, 8, 8, kSide, kSide);
               }, 0});
  // Blur: the buffer comes back unchanged.
  static const int32_t zero_sum[3] = {1, -2, 1}, plain[3] = {1, 2, 1};
  r.push_back({"blur weights summing to 0", [](uint8_t* d, const uint8_t*) -> int64_t { return Ptr(QN_VerticalBlur(d, kSide, kSide, zero_sum), d); }, 1});
  r.push_back({"blur one row", [](uint8_t* d, const uint8_t*) -> int64_t { return Ptr(QN_VerticalBlur(d, kSide, 1, plain), d); }, 1});
  r.push_back({"blur width 0", [](uint8_t* d, const uint8_t*) -> int64_t { return Ptr(QN_VerticalBlur(d, 0, kSide, plain), d); }, 1});
  r.push_back({"split one pixel", [](uint8_t* d, const uint8_t* s) -> int64_t { return QN_CS_YUYVSplit(d, d + 64, d + 128, s, 1); }, 0});
  r.push_back({"split null", [](uint8_t* d, const uint8_t*) -> int64_t { return QN_CS_YUYVSplit(d, d + 64, d + 128, nullptr, 8); }, 0});
  r.push_back({"mixin left of the image", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_Yuyv_Alpha_Mixin(d, 2 * kSide, nullptr, 0, kSide, kSide, s, 2 * kSide, nullptr, 0, 0, 0, -2, 0, 4, 4);
               }, 0});
  r.push_back({"flip negative pitch", [](uint8_t* d, const uint8_t*) -> int64_t { return QN_OverTurnSelf(d, -4 * kSide, kSide); }, 0});
  r.push_back({"flip negative height", [](uint8_t* d, const uint8_t*) -> int64_t { return QN_OverTurnSelf(d, 4 * kSide, -1); }, 0});
  r.push_back({"copy nothing", [](uint8_t* d, const uint8_t* s) -> int64_t { return Ptr(QN_Memcpy(d, s, 0), d); }, 0});
  r.push_back({"copy from null", [](uint8_t* d, const uint8_t*) -> int64_t { return Ptr(QN_Memcpy(d, nullptr, 8), d); }, 0});
  r.push_back({"yuyv frame of height 0", [](uint8_t* d, const uint8_t* s) -> int64_t {
                 return QN_CS_YUYV2RGBA_Frame(d, 4 * kSide, s, 2 * kSide, kSide, 0, 0, 0);
               }, 1});
  return r;
}

TEST(Exports, RefusalsReturnTheirCodeAndWriteNothing) {
  const std::vector<uint8_t> src = RandomBytes(kSide * kSide * 4, 5);
  ForEachLevel([&](KernelLevel) {
    const std::vector<Refusal> refusals = Refusals();
    for (std::size_t i = 0; i < refusals.size(); ++i) {
      const Refusal& r = refusals[i];
      SCOPED_TRACE(::testing::Message() << "#" << i << " " << r.what);
      GuardedBuffer dst(kSide * kSide * 4);
      FillRandom(dst.data(), dst.size(), 9);
      const std::vector<uint8_t> before(dst.data(), dst.data() + dst.size());
      EXPECT_EQ(r.call(dst.data(), src.data()), r.code);
      EXPECT_TRUE(std::equal(before.begin(), before.end(), dst.data())) << "written";
      EXPECT_TRUE(dst.GuardsIntact());
    }
  });
}

// ---- hand-over to VelaVid -------------------------------------------------

struct HandOver {
  const char* what;
  int index;
  std::function<void(uint8_t* dst, const uint8_t* src)> call;
  std::vector<intptr_t> args;  // after the call; 0 / 1 stand for dst / src pointers
};

TEST(Exports, WholeJobsGoToVelaVidWithTheirArguments) {
  std::vector<uint8_t> src(4096), dst(4096, 0x5C);
  const intptr_t d = reinterpret_cast<intptr_t>(dst.data()), s = reinterpret_cast<intptr_t>(src.data());
  const HandOver cases[] = {
      // BT.601 and flip both become flags; the constant words are the module's.
      {"yuyv to bgra", 21, [](uint8_t* o, const uint8_t* i) { QN_CS_YUYV2BGRA_Frame(o + 1024, -96, i, 40, 17, 3, 0, 5); },
       {d + 1024, -96, s, 40, 17, 3, 1, 1, 0, 255, 1}},
      {"yuyv to bgra 709", 21, [](uint8_t* o, const uint8_t* i) { QN_CS_YUYV2BGRA_Frame(o, 96, i, 40, 17, 3, 7, 0); },
       {d, 96, s, 40, 17, 3, 0, 1, 0, 255, 0}},
      // The alpha plane is not passed on.
      {"24 to 32 split", 16, [](uint8_t* o, const uint8_t* i) {
         QN_CS_24_to_32_Split(o, 32, o + 1024, -32, i, 18, i + 2048, 6, 6, 4, 9, 1);
       }, {d, 32, d + 1024, -32, s, 18, 6, 4, 0, 255, 1}},
      {"420 split", 73, [](uint8_t* o, const uint8_t* i) {
         QN_CS_420_422_YUVSplit(o, 16, o + 1024, -16, i, 8, i + 1024, 4, i + 2048, -4, 8, 6);
       }, {d, 16, d + 1024, -16, s, 8, s + 1024, 4, s + 2048, -4, 8, 6, 0, 0}},
  };
  for (const HandOver& c : cases) {
    SCOPED_TRACE(c.what);
    std::fill(dst.begin(), dst.end(), 0x5C);
    {
      FakeVelaVid vela;
      vela.SetResult(0x5A5A);
      c.call(dst.data(), src.data());
      ASSERT_EQ(vela.call_count(), 1);
      const FakeVelaCall& call = vela.last_call();
      EXPECT_EQ(call.array, kFakeConvertArray);
      EXPECT_EQ(call.index, c.index);
      EXPECT_EQ(std::vector<intptr_t>(call.args, call.args + call.argc), c.args);
      EXPECT_EQ(std::count(dst.begin(), dst.end(), 0x5C), 4096) << "the library wrote nothing itself";
    }
    // Any missing link runs the library's own path, which writes.
    for (int cut = 0; cut < 3; ++cut) {
      FakeVelaVid vela;
      if (cut == 0) vela.RemoveTable();
      if (cut == 1) vela.SetArrayNull(kFakeConvertArray, true);
      if (cut == 2) vela.SetEntryPresent(kFakeConvertArray, c.index, false);
      std::fill(dst.begin(), dst.end(), 0x5C);
      c.call(dst.data(), src.data());
      EXPECT_EQ(vela.call_count(), 0) << "cut " << cut;
      EXPECT_LT(std::count(dst.begin(), dst.end(), 0x5C), 4096) << "cut " << cut;
    }
  }
  // The module's result comes back from the frame form.
  FakeVelaVid vela;
  vela.SetResult(0x5A5A);
  EXPECT_EQ(QN_CS_YUYV2BGRA_Frame(dst.data(), 96, src.data(), 40, 17, 3, 0, 0), 0x5A5A);
  // The RGBA frame, the Compose forms and the 24-bit Frame never dispatch.
  QN_CS_YUYV2RGBA_Frame(dst.data(), 32, src.data(), 16, 8, 2, 0, 0);
  QN_CS_YUYV2BGRA_Compose(dst.data(), 32, src.data(), 16, src.data(), 16, 8, 2, 0, 0);
  QN_CS_24_to_32_Frame(dst.data(), 24, src.data(), 18, nullptr, 0, 6, 4, 0, 0);
  EXPECT_EQ(vela.call_count(), 1);
}

// ---- properties -------------------------------------------------------------

std::vector<uint8_t> Flat(std::size_t pixels, uint32_t px) {
  std::vector<uint8_t> v(pixels * 4);
  for (std::size_t i = 0; i < pixels; ++i) std::memcpy(&v[4 * i], &px, 4);
  return v;
}

int MaxDiff(const std::vector<uint8_t>& out, uint32_t px) {
  int worst = 0;
  for (std::size_t i = 0; i < out.size(); ++i) {
    worst = std::max(worst, std::abs(int(out[i]) - int(px >> (8 * (i % 4)) & 255)));
  }
  return worst;
}

TEST(Properties, FlatImagesStayFlat) {
  const uint32_t grey = 0x80C0407Fu;
  const std::vector<uint8_t> src = Flat(40 * 30, grey);
  ForEachLevel([&](KernelLevel) {
    for (auto [w, h] : {std::pair{17, 9}, {64, 45}, {40, 30}, {3, 2}, {20, 15}, {10, 10}, {80, 60}}) {
      SCOPED_TRACE(::testing::Message() << w << "x" << h);
      std::vector<uint8_t> out(static_cast<std::size_t>(w) * h * 4);
      // The "+ 1" terms make up for most truncations; where both weights
      // of a pair carry high fractions one unit can still go.
      ASSERT_EQ(QN_StretchBlt(out.data(), 0, 0, w, h, w, h, src.data(), 0, 0, 40, 30, 40, 30, 1, 0), 1);
      EXPECT_LE(MaxDiff(out, grey), 1) << "bilinear";
      // The mean's last pixel weighs its closing partial pixel fully, so
      // only whole-number ratios keep the level exactly.
      ASSERT_EQ(QN_StretchBlt_Mean(out.data(), 0, 0, w, h, w, h, src.data(), 0, 0, 40, 30, 40, 30, 1, 0), 1);
      if ((40 % w == 0 && 30 % h == 0) || (w % 40 == 0 && h % 30 == 0)) {
        EXPECT_EQ(MaxDiff(out, grey), 0) << "mean";
      }
      // Four taps: every phase sums to 4096 and the floors of four products
      // lose less than the rounding restores.
      ASSERT_EQ(QN_Re4Sampling(out.data(), w, h, src.data(), 40, 30), 1);
      EXPECT_EQ(MaxDiff(out, grey), 0) << "4 taps";
    }
    std::vector<uint8_t> img = src;
    const int32_t weights[3] = {1, 2, 1};
    QN_VerticalBlur(img.data(), 40, 30, weights);
    EXPECT_EQ(img, src) << "blur";
  });
}

TEST(Properties, ScaleOneIsTheIdentity) {
  const std::vector<uint8_t> src = RandomBytes(37 * 23 * 4, 3);
  ForEachLevel([&](KernelLevel) {
    std::vector<uint8_t> out(src.size());
    ASSERT_EQ(QN_BitBlt(out.data(), 0, 0, 37, 23, 37, 23, src.data(), 0, 0, 37, 23, 37, 23, 1, 0), 1);
    EXPECT_EQ(out, src) << "equal-size copy";
    ASSERT_EQ(QN_Re4Sampling(out.data(), 37, 23, src.data(), 37, 23), 1);
    EXPECT_EQ(out, src) << "4 taps";
    ASSERT_EQ(QN_Re8Sampling(out.data(), 37, 23, src.data(), 37, 23), 1);
    EXPECT_EQ(out, src) << "8 taps";
  });
}

// Frames past half the cache budget (stretches past a sixteenth of it)
// write their rows with streaming stores where a row is aligned for them.
// The pitches below leave every other row off the 64-byte grid, and the
// width a partial last block; every level must still write what the
// reference writes, padding untouched.
TEST(Properties, FramesPastTheCacheWriteTheReferenceBytes) {
  const int w = 2000;
  // Every job reads and writes at least 3.5 bytes a pixel: past half the
  // budget with a fifth of it in pixels.
  const int h = static_cast<int>(StreamStoresAbove() / (5 * w)) / 2 * 2 + 2;
  const std::size_t px = static_cast<std::size_t>(w) * h;
  const std::vector<uint8_t> yuyv = RandomBytes(2 * px, 7), y = RandomBytes(px, 8);
  const std::vector<uint8_t> u = RandomBytes(px / 4, 9), v = RandomBytes(px / 4, 10);
  struct Job {
    const char* name;
    int32_t pitch;
    std::function<void(uint8_t*, int32_t)> run;
  };
  // The YUYV bytes as 1000 x (h / 2) 32-bit pixels, stretched to 2008
  // pixels a row (a pitch off the grid every other row) and h / 2 rows.
  const int32_t sw = 1000, sh = h / 2, dw = 2008;
  const Job jobs[] = {
      {"stretch", 4 * dw,
       [&](uint8_t* d, int32_t) {
         QN_StretchBlt(d, 0, 0, dw - 7, sh, dw, h, yuyv.data(), 0, 0, sw, sh, sw, sh, 1, 0);
       }},
      {"yuyv->rgba", 4 * w + 32,
       [&](uint8_t* d, int32_t p) { QN_CS_YUYV2RGBA_Frame(d, p, yuyv.data(), 2 * w, w, h, 0, 0); }},
      {"420->bgra", 4 * w + 32,
       [&](uint8_t* d, int32_t p) {
         QN_CS_YUV420_BGRA_Frame(d, p, y.data(), w, u.data(), w / 2, v.data(), w / 2, w, h, 1, 1);
       }},
      {"420->yuyv", 2 * w + 32,
       [&](uint8_t* d, int32_t p) {
         QN_CS_420_422_YUVFrame(d, p, y.data(), w, u.data(), w / 2, v.data(), w / 2, w, h);
       }},
  };
  for (const Job& job : jobs) {
    SCOPED_TRACE(job.name);
    const std::size_t size = static_cast<std::size_t>(job.pitch) * h;
    std::vector<uint8_t> want;
    ForEachLevel([&](KernelLevel level) {
      GuardedBuffer out(size);
      std::memset(out.data(), 0x5A, size);
      job.run(out.data(), job.pitch);
      ASSERT_TRUE(out.GuardsIntact());
      if (level == KernelLevel::kC) {
        want.assign(out.data(), out.data() + size);
      } else {
        ASSERT_TRUE(std::equal(want.begin(), want.end(), out.data()));
      }
    });
  }
}

TEST(Properties, SplitThenComposeGivesTheFrameBack) {
  for (int bpp : {1, 2, 4}) {
    for (int h : {1, 2, 7, 576}) {
      SCOPED_TRACE(::testing::Message() << "bpp=" << bpp << " height=" << h);
      const int w = 13, pitch = w * bpp + 3;
      const std::vector<uint8_t> frame = RandomBytes(static_cast<std::size_t>(pitch) * h, h);
      std::vector<uint8_t> top(frame.size()), bottom(frame.size()), back(frame.size());
      QN_CS_SplitFrame(top.data(), pitch, bottom.data(), pitch, frame.data(), pitch, w, h, bpp);
      QN_CS_ComposeFields(back.data(), pitch, top.data(), pitch, bottom.data(), pitch, w, h, bpp);
      // Row pairs only: an odd last frame row is neither read nor written.
      for (int r = 0; r < (h & ~1); ++r) {
        ASSERT_EQ(0, std::memcmp(&back[r * pitch], &frame[r * pitch], w * bpp)) << "row " << r;
      }
    }
  }
}

TEST(Properties, ColourRoundTripsStayClose) {
  // Flat colours, so the chroma a pair shares is every pixel's own: RGB ->
  // YUYV -> RGB comes back within the fixed-point steps of both ways.
  for (int bt709 : {0, 1}) {
    int worst = 0;
    for (uint32_t c = 0; c < 4096; ++c) {
      const uint8_t rgb[3] = {uint8_t((c & 15) * 17), uint8_t((c >> 4 & 15) * 17), uint8_t((c >> 8) * 17)};
      std::vector<uint8_t> rgba(8 * 4), yuyv(8 * 2), back(8 * 4);
      for (int p = 0; p < 8; ++p) std::memcpy(&rgba[4 * p], rgb, 3), rgba[4 * p + 3] = 255;
      QN_CS_RGBA2YUYV_Frame(yuyv.data(), 16, rgba.data(), 32, 8, 1, bt709, 0);
      QN_CS_YUYV2RGBA_Frame(back.data(), 32, yuyv.data(), 16, 8, 1, bt709, 0);
      for (int i = 0; i < 32; ++i) {
        worst = std::max(worst, std::abs(int(back[i]) - int(rgba[i])));
      }
    }
    EXPECT_LE(worst, 6) << "bt709=" << bt709;
  }
}

}  // namespace
}  // namespace qbo::test
