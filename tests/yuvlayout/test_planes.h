// Planes for the export tests: guarded, padded, optionally laid out
// bottom-up (negative pitch), with snapshots in logical row order so a
// model can be written against plain vectors.
#ifndef QBO_TESTS_YUVLAYOUT_TEST_PLANES_H_
#define QBO_TESTS_YUVLAYOUT_TEST_PLANES_H_

#include <cstdint>
#include <vector>

#include "tests/support/test_support.h"

namespace qbo::test {

using Rows = std::vector<std::vector<uint8_t>>;

class TestPlane {
 public:
  // `pad` bytes of padding a row (odd by default, so a pitch is rarely a
  // multiple of 4); rows filled with random bytes from `seed`.
  TestPlane(int row_bytes, int rows, uint32_t seed, bool upward = false, std::size_t offset = 0,
            int pad = 7)
      : pitch_(row_bytes + pad),
        rows_(rows),
        upward_(upward),
        buf_(static_cast<std::size_t>(row_bytes + pad) * static_cast<std::size_t>(rows), offset) {
    FillRandom(buf_.data(), buf_.size(), seed);
  }

  uint8_t* Row(int r) {
    const int physical = upward_ ? rows_ - 1 - r : r;
    return buf_.data() + static_cast<std::ptrdiff_t>(physical) * pitch_;
  }
  // The pointer and pitch handed to an export: row 0 and the signed step.
  uint8_t* First() { return rows_ ? Row(0) : buf_.data(); }
  int32_t Pitch() const { return upward_ ? -pitch_ : pitch_; }
  int stride() const { return pitch_; }
  int rows() const { return rows_; }

  Rows Snapshot() {
    Rows out;
    for (int r = 0; r < rows_; ++r) out.emplace_back(Row(r), Row(r) + pitch_);
    return out;
  }
  bool GuardsIntact() const { return buf_.GuardsIntact(); }

 private:
  int pitch_;
  int rows_;
  bool upward_;
  GuardedBuffer buf_;
};

// "" when the plane holds exactly `want` (padding included), else a map.
inline std::string Differences(const Rows& want, TestPlane& got) {
  std::vector<uint8_t> a, b;
  for (const auto& row : want) a.insert(a.end(), row.begin(), row.end());
  for (const auto& row : got.Snapshot()) b.insert(b.end(), row.begin(), row.end());
  if (a.size() != b.size()) return "size differs";
  return MismatchMap(a.data(), b.data(), static_cast<std::size_t>(got.stride()),
                     static_cast<std::size_t>(got.rows()));
}

}  // namespace qbo::test

#endif  // QBO_TESTS_YUVLAYOUT_TEST_PLANES_H_
