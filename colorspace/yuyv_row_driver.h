// Row drivers shared by the SIMD YUYV rows: they walk a row in blocks and
// finish it, so every SIMD row treats the last pair of a row (which has no
// next pair) and a partial last block the same way.
//
// A Block type provides
//   static constexpr int kPixels;            pixels per block (even)
//   static constexpr int kDstBytesPerPixel;  3 or 4
//   void Middle(const uint8_t* src, uint8_t* dst) const;
//     converts kPixels pixels, reading kPixels * 2 bytes and the 4 bytes
//     of the pair after the block, whose chroma the block's last odd pixel
//     shares;
//   void Last(const uint8_t* src, uint8_t* dst) const;
//     the same for a block that ends its row: reads only its own bytes and
//     gives the last pair its own chroma.
// No intrinsics here; each *_sse2.cc / *_avx2.cc instantiates the drivers
// with its own blocks.
#ifndef QBO_COLORSPACE_YUYV_ROW_DRIVER_H_
#define QBO_COLORSPACE_YUYV_ROW_DRIVER_H_

#include <cstdint>
#include <cstring>

namespace qbo {

// A whole row of blocks: width % Block::kPixels == 0, width > 0.
template <class Block>
void ConvertYuyvBlocks(const Block& block, const uint8_t* src, uint8_t* dst, int width) {
  constexpr int kSrcStep = Block::kPixels * 2;
  constexpr int kDstStep = Block::kPixels * Block::kDstBytesPerPixel;
  for (int x = Block::kPixels; x < width; x += Block::kPixels) {
    block.Middle(src, dst);
    src += kSrcStep;
    dst += kDstStep;
  }
  block.Last(src, dst);
}

// Any even width > 0. Whole blocks run in place; a partial last block runs
// on a padded copy whose pairs past the row repeat the row's last pair, so
// that pair meets its own chroma as "next", exactly as the reference gives
// it. Only the row's own bytes are read and written.
// `tail` converts the partial last block (the same block, or the one that
// stores through the cache where `block` streams past it).
template <class Block, class TailBlock>
void ConvertYuyvRowAny(const Block& block, const TailBlock& tail, const uint8_t* src,
                       uint8_t* dst, int width) {
  const int rest = width % Block::kPixels;
  const int whole = width - rest;
  if (rest == 0) {
    ConvertYuyvBlocks(block, src, dst, width);
    return;
  }
  for (int x = 0; x < whole; x += Block::kPixels) {
    block.Middle(src, dst);  // the next pair exists: it starts the rest
    src += Block::kPixels * 2;
    dst += Block::kPixels * Block::kDstBytesPerPixel;
  }
  alignas(32) uint8_t in[Block::kPixels * 2 + 4];
  alignas(32) uint8_t out[Block::kPixels * Block::kDstBytesPerPixel];
  const int rest_bytes = rest * 2;
  for (int k = 0; k < Block::kPixels / 2 + 1; ++k) std::memcpy(in + 4 * k, src + rest_bytes - 4, 4);
  std::memcpy(in, src, static_cast<std::size_t>(rest_bytes));
  tail.Middle(in, out);
  std::memcpy(dst, out, static_cast<std::size_t>(rest * Block::kDstBytesPerPixel));
}

template <class Block>
void ConvertYuyvRowAny(const Block& block, const uint8_t* src, uint8_t* dst, int width) {
  ConvertYuyvRowAny(block, block, src, dst, width);
}

// Rows whose blocks can store past the cache: `cached` and `streaming` are
// one block with stores through and past it, and `stream` says which the
// row's whole blocks use (the frame asked for it and dst is aligned).
template <class Cached, class Streaming>
void ConvertYuyvBlocks(const Cached& cached, const Streaming& streaming, bool stream,
                       const uint8_t* src, uint8_t* dst, int width) {
  if (stream) {
    ConvertYuyvBlocks(streaming, src, dst, width);
  } else {
    ConvertYuyvBlocks(cached, src, dst, width);
  }
}

template <class Cached, class Streaming>
void ConvertYuyvRowAny(const Cached& cached, const Streaming& streaming, bool stream,
                       const uint8_t* src, uint8_t* dst, int width) {
  if (stream) {
    ConvertYuyvRowAny(streaming, cached, src, dst, width);
  } else {
    ConvertYuyvRowAny(cached, cached, src, dst, width);
  }
}

// The two exported 32-bit rows Name##_<Level> and Name##_Any_<Level> of a
// level whose blocks can stream: `Block<kBgra, kStream>{regs}` with regs
// of type `Regs` from Load##Regs, its stores `kAlign` bytes wide.
#define QBO_DEFINE_STREAMING_YUYV_ROWS(Name, Level, Block, kBgra, Regs, kAlign)                \
  void Name##_##Level(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v) { \
    const Regs k = Load##Regs(*v);                                                             \
    ConvertYuyvBlocks(Block<kBgra, false>{k}, Block<kBgra, true>{k},                           \
                      StreamsTo(*v, dst, kAlign), src, dst, width);                            \
  }                                                                                            \
  void Name##_Any_##Level(const uint8_t* src, uint8_t* dst, int width,                         \
                          const YuvToRgbVectors* v) {                                          \
    const Regs k = Load##Regs(*v);                                                             \
    ConvertYuyvRowAny(Block<kBgra, false>{k}, Block<kBgra, true>{k},                           \
                      StreamsTo(*v, dst, kAlign), src, dst, width);                            \
  }

}  // namespace qbo

#endif  // QBO_COLORSPACE_YUYV_ROW_DRIVER_H_
