#include "blit/bilinear_row.h"

namespace qbo {
namespace {

constexpr uint32_t kMax16 = 65535;

inline uint32_t AddSat16(uint32_t a, uint32_t b) { return a + b > kMax16 ? kMax16 : a + b; }
inline uint32_t MulHigh16(uint32_t a, uint32_t b) { return (a * b) >> 16; }

}  // namespace

void BilinearVertRow_C(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                       std::size_t count) {
  const uint32_t wb = kMax16 - wt;
  for (std::size_t i = 0; i < count; ++i) {
    const uint32_t upper = AddSat16(MulHigh16(top[i] + 1u, wt), 1);
    v[i] = static_cast<uint16_t>(AddSat16(upper, MulHigh16(bottom[i] + 1u, wb)));
  }
}

void BilinearHorizRow_C(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                        const uint16_t* weights, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i, dst += 4) {
    const uint16_t* left = v + 4 * static_cast<std::ptrdiff_t>(cols[i]);
    const uint32_t wl = weights[8 * i];
    const uint32_t wr = weights[8 * i + 4];
    for (int b = 0; b < 4; ++b) {
      const uint32_t sum = AddSat16(MulHigh16(left[b], wl), MulHigh16(left[4 + b], wr));
      dst[b] = static_cast<uint8_t>(sum > 255 ? 255 : sum);
    }
  }
}

}  // namespace qbo
