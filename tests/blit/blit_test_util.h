// Argument sets for the transfer and stretch tests.
#ifndef QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_
#define QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_

#include <cstdint>

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
};

inline int32_t Call(BlitFn fn, void* dst, const void* src, const Rects& r) {
  return fn(dst, r.dst_x, r.dst_y, r.width, r.height, r.dst_width, r.dst_height, src, r.src_x,
            r.src_y, r.src_rect_width, r.src_rect_height, r.src_width, r.src_height, r.mode,
            r.field);
}

}  // namespace qbo::test

#endif  // QBO_TESTS_BLIT_BLIT_TEST_UTIL_H_
