// A host program beside an installed library and its VelaVid module: it
// loads the library by path, as a player would, and checks that the library
// found the module and that what the module does is what the library's own
// paths and a direct resampling do.
//   QN_ReSampling: a 720x576 interlaced YUY2 frame into a 1920x1080 YUY2
//     frame, pillarboxed, field by field, against QN_Re8Sampling on each
//     plane of each field.
//   The three conversions the module takes over, against exports that
//   reach the same arithmetic by the library's own path.
//
// usage: resample_host INSTALLED_LIBRARY
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/direct_resample.h"

namespace {

using qbo::test::PackedFrame;

int g_failures = 0;
void Check(bool ok, const char* what) {
  std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
  if (!ok) ++g_failures;
}

void* g_library;
// An export of the loaded library, typed by the header's prototype (named
// only in an unevaluated context, so nothing links against the library).
#define EXPORT(name) reinterpret_cast<decltype(&name)>(dlsym(g_library, #name))

std::vector<uint8_t> Noise(std::size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::vector<uint8_t> v(n);
  for (auto& b : v) b = static_cast<uint8_t>(rng());
  return v;
}

// A bitmap-information header: width, height, bits per pixel, compression.
std::vector<uint8_t> Header(int32_t width, int32_t height, uint16_t bits, const char* code) {
  std::vector<uint8_t> h(40, 0);
  h[0] = 40;
  std::memcpy(&h[4], &width, 4);
  std::memcpy(&h[8], &height, 4);
  std::memcpy(&h[14], &bits, 2);
  std::memcpy(&h[16], code, 4);
  return h;
}

void CheckResampling() {
  // A picture that changes along both axes and between the fields.
  PackedFrame src{std::vector<uint8_t>(720 * 2 * 576), 720, 576, 6, 2, 720 * 2};
  for (int y = 0; y < 576; ++y) {
    for (int x = 0; x < 720 * 2; ++x) {
      src.bytes[y * 1440 + x] =
          static_cast<uint8_t>(x % 2 ? 128 + (y % 2) * 60 - x / 24 : x / 6 + y / 3);
    }
  }
  PackedFrame dst{std::vector<uint8_t>(1920 * 2 * 1080, 0x77), 1920, 1080, 6, 2, 1920 * 2};
  const auto expected =
      qbo::test::DirectResample(EXPORT(QN_Re8Sampling), src, dst, {240, 0, 1440, 540});
  const auto header_a = Header(1920, 1080, 16, "YUY2"), header_b = Header(720, 576, 16, "YUY2");
  Check(EXPORT(QN_ReSampling)(header_a.data(), dst.bytes.data(), header_b.data(),
                              src.bytes.data()) == 1,
        "QN_ReSampling of 720x576 YUY2 into 1920x1080 YUY2 returns 1");
  Check(dst.bytes == expected.bytes,
        "the frame is the 8-tap resampling of each field's planes, 1440 wide at 240, black beside");
}

void CheckConversions() {
  const int32_t w = 1920, h = 1080;
  const auto yuyv = Noise(static_cast<std::size_t>(w) * 2 * h, 1);
  for (int flip = 0; flip < 2; ++flip) {
    std::vector<uint8_t> a(static_cast<std::size_t>(w) * 4 * h), b(a.size());
    EXPORT(QN_CS_YUYV2BGRA_Frame)(a.data(), w * 4, yuyv.data(), w * 2, w, h, 1, flip);
    // Compose with a frame's two fields is the same conversion, never handed over.
    EXPORT(QN_CS_YUYV2BGRA_Compose)
    (b.data(), w * 4, yuyv.data(), w * 4, yuyv.data() + w * 2, w * 4, w, h, 1, flip);
    Check(a == b, flip ? "YUYV to BGRA, flipped, as the own path" : "YUYV to BGRA as the own path");
  }
  const auto rgb = Noise(static_cast<std::size_t>(w) * 3 * h, 2);
  std::vector<uint8_t> frame(static_cast<std::size_t>(w) * 4 * h), halves(frame.size());
  const std::size_t half = frame.size() / 2;
  EXPORT(QN_CS_24_to_32_Frame)(frame.data(), w * 4, rgb.data(), w * 3, nullptr, 0, w, h, 0, 0);
  EXPORT(QN_CS_24_to_32_Split)
  (halves.data(), w * 4, halves.data() + half, w * 4, rgb.data(), w * 3, nullptr, 0, w, h, 0, 0);
  bool same = true;
  for (int y = 0; y < h; ++y) {
    same &= std::memcmp(&frame[y * w * 4], &halves[(y % 2) * half + (y / 2) * w * 4], w * 4) == 0;
  }
  Check(same, "24-bit to two 32-bit halves as the own path");
  const auto y = Noise(static_cast<std::size_t>(w) * h, 3), u = Noise(w / 2 * h / 2, 4),
             v = Noise(u.size(), 5);
  std::vector<uint8_t> interleaved(static_cast<std::size_t>(w) * 2 * h), split(interleaved.size());
  EXPORT(QN_CS_420_422_YUVFrame)
  (interleaved.data(), w * 2, y.data(), w, u.data(), w / 2, v.data(), w / 2, w, h);
  EXPORT(QN_CS_420_422_YUVSplit)
  (split.data(), w * 4, split.data() + w * 2, w * 4, y.data(), w, u.data(), w / 2, v.data(), w / 2,
   w, h);
  Check(interleaved == split, "4:2:0 to two YUYV fields as the own path");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s INSTALLED_LIBRARY\n", argv[0]);
    return 2;
  }
  g_library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (!g_library) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  Check(dlopen("libVelaVid.so", RTLD_NOW | RTLD_NOLOAD) != nullptr,
        "the library loaded the VelaVid module installed beside it");
  CheckResampling();
  CheckConversions();
  return g_failures == 0 ? 0 : 1;
}
