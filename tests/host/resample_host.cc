// A host program beside an installed library and its VelaVid module: it
// loads the library by path, as a player would, and checks that the library
// found the module: QN_ReSampling of a 720x576 interlaced YUY2 frame into a
// 1920x1080 YUY2 frame, pillarboxed, field by field, equals QN_Re8Sampling
// on each plane of each field. (The module's conversions are checked
// against the library's own paths in the module's unit test.)
//
// usage: resample_host INSTALLED_LIBRARY
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
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
  return g_failures == 0 ? 0 : 1;
}
