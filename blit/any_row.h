// The _Any_ pattern of the blit rows: the SIMD row on the whole vectors,
// the reference row on the rest. Pixels of these rows are independent, so
// the split gives the reference's bytes by construction.
#ifndef QBO_BLIT_ANY_ROW_H_
#define QBO_BLIT_ANY_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

template <std::size_t kMultiple, typename Simd, typename Ref, typename... Params>
inline void RunAnyPixelRow(Simd simd, Ref ref, uint8_t* dst, const uint8_t* src,
                           std::size_t width, Params... params) {
  const std::size_t whole = width & ~(kMultiple - 1);
  if (whole) simd(dst, src, params..., whole);
  if (width != whole) ref(dst + whole * 4, src + whole * 4, params..., width - whole);
}

}  // namespace qbo

#endif  // QBO_BLIT_ANY_ROW_H_
