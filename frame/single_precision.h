// Narrowing to single precision that no optimiser can skip.
//
// Where a result is defined in single precision, the rounding of an
// intermediate to float is part of the result. A compiler may still keep a
// wider value it already holds: GCC 12's SLP vectoriser at -O2/-O3, having
// computed two scale quotients as a pair in double, fed the unrounded
// double quotients into the following start-position products although the
// source had narrowed them to float. Passing the narrowed value through an
// empty asm statement makes it opaque: the compiler must produce the float
// and then forget everything it knew about it, so every later use starts
// from the rounded value. It costs nothing beyond the narrowing itself.
#ifndef QBO_FRAME_SINGLE_PRECISION_H_
#define QBO_FRAME_SINGLE_PRECISION_H_

#include <cfloat>

// x87 arithmetic (FLT_EVAL_METHOD 2) keeps float expressions in extended
// precision and rounds them wherever the register allocator spills: no
// source-level care gives the same bytes then. 32-bit x86 builds use SSE
// arithmetic (-msse2 -mfpmath=sse), which the build sets for them.
#if defined(FLT_EVAL_METHOD) && FLT_EVAL_METHOD != 0
#error "single-precision results need FLT_EVAL_METHOD 0: build 32-bit x86 with -msse2 -mfpmath=sse"
#endif

namespace qbo {

// `value` rounded to the nearest float, held so that no later step can use
// a wider value in its place.
inline float RoundToSingle(double value) {
  float f = static_cast<float>(value);
#if defined(__GNUC__) && (defined(__SSE_MATH__) || defined(__x86_64__))
  __asm__("" : "+x"(f));
#elif defined(__GNUC__)
  __asm__("" : "+m"(f));
#else
  volatile float held = f;
  f = held;
#endif
  return f;
}

}  // namespace qbo

#endif  // QBO_FRAME_SINGLE_PRECISION_H_
