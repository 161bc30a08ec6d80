// Images and argument sets for the transfer and stretch tests.
#ifndef QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_
#define QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/test_support.h"

namespace qbo::test {

using BlitFn = int32_t (QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                           const void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                           int32_t, int32_t);

// The 14 integer arguments of a transfer, in call order (pointers apart).
struct Rects {
  int32_t dst_x, dst_y, width, height, dst_width, dst_height;
  int32_t src_x, src_y, src_rect_width, src_rect_height, src_width, src_height;
  int32_t mode, field;

  std::array<int32_t, 14> AsArray() const {
    return {dst_x, dst_y, width, height, dst_width, dst_height, src_x, src_y,
            src_rect_width, src_rect_height, src_width, src_height, mode, field};
  }
  static Rects FromArray(const std::array<int32_t, 14>& v) {
    return {v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10], v[11], v[12], v[13]};
  }
};

inline int32_t Call(BlitFn fn, void* dst, const void* src, const Rects& r) {
  return fn(dst, r.dst_x, r.dst_y, r.width, r.height, r.dst_width, r.dst_height, src, r.src_x,
            r.src_y, r.src_rect_width, r.src_rect_height, r.src_width, r.src_height, r.mode,
            r.field);
}

// A 32-bit image of w x h pixels inside guard bytes.
class Image {
 public:
  Image(int32_t w, int32_t h, uint32_t seed, std::size_t spare_rows = 0)
      : w_(w), buf_(static_cast<std::size_t>(w) * (h + spare_rows) * 4) {
    FillRandom(buf_.data(), buf_.size(), seed);
  }
  uint8_t* data() { return buf_.data(); }
  const uint8_t* data() const { return buf_.data(); }
  std::size_t size() const { return buf_.size(); }
  uint8_t* Pixel(int32_t x, int32_t y) { return buf_.data() + (std::size_t(y) * w_ + x) * 4; }
  uint32_t At(int32_t x, int32_t y) const {
    uint32_t v;
    std::memcpy(&v, buf_.data() + (std::size_t(y) * w_ + x) * 4, 4);
    return v;
  }
  bool GuardsIntact() const { return buf_.GuardsIntact(); }
  std::vector<uint8_t> Bytes() const { return {buf_.data(), buf_.data() + buf_.size()}; }

 private:
  int32_t w_;
  GuardedBuffer buf_;
};

}  // namespace qbo::test

#endif  // QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_
