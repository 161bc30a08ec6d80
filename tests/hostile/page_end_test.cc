// The layout and colour-space exports check none of their arguments, so
// they must stay exactly inside the planes their sizes, pitches and flips
// describe. Each plane here ends on a page boundary followed by an
// inaccessible page, with the row that ends last in memory (the last row
// for a positive pitch, row 0 for a negative one) holding only the bytes
// the export may touch: any read or write past them faults.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

// A plane of `rows` rows of `row_bytes`, `pad` bytes apart beyond that,
// walked upwards when `upward`.
class Plane {
 public:
  Plane(int64_t row_bytes, int64_t rows, int64_t pad, bool upward, uint32_t seed) {
    const int64_t stride = row_bytes + pad;
    pitch_ = static_cast<int32_t>(upward ? -stride : stride);
    const int64_t bytes = rows < 1 || row_bytes < 1 ? 0 : (rows - 1) * stride + row_bytes;
    buffer_ = std::make_unique<PageEndBuffer>(static_cast<std::size_t>(bytes));
    FillRandom(buffer_->data(), buffer_->size(), seed);
    first_ = buffer_->data() + (upward && rows > 0 ? (rows - 1) * stride : 0);
  }
  uint8_t* row0() { return first_; }
  int32_t pitch() const { return pitch_; }

 private:
  std::unique_ptr<PageEndBuffer> buffer_;
  uint8_t* first_;
  int32_t pitch_;
};

struct Shape {
  int32_t width, height;
  int32_t pad;
  bool upward;
  int32_t flip;
};

// Planes are made in argument order; the pad and direction of the shape
// apply to all of them.
struct Planes {
  const Shape& s;
  std::vector<std::unique_ptr<Plane>> made;
  Plane& Make(int64_t row_bytes, int64_t rows, int64_t pad) {
    made.push_back(std::make_unique<Plane>(row_bytes, rows, pad, s.upward,
                                           static_cast<uint32_t>(made.size() + 1)));
    return *made.back();
  }
  Plane& Make(int64_t row_bytes, int64_t rows) { return Make(row_bytes, rows, s.pad); }
};

inline int64_t EvenUp(int64_t v) { return v + (v & 1); }
inline int64_t Round4(int64_t v) { return (v + 3) & ~int64_t{3}; }

struct Case {
  const char* name;
  std::function<void(Planes&, const Shape&)> run;
};

const Case kCases[] = {
    {"SplitFrame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& top = p.Make(w * 2, h / 2);
       Plane& bottom = p.Make(w * 2, h / 2);
       Plane& frame = p.Make(w * 2, h);
       QN_CS_SplitFrame(top.row0(), top.pitch(), bottom.row0(), bottom.pitch(), frame.row0(),
                        frame.pitch(), w, h, 2);
     }},
    {"ComposeYUV422_Frame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& dst = p.Make(w * 2, h);
       Plane& y = p.Make(w, h);
       Plane& u = p.Make(w / 2, h);
       Plane& v = p.Make(w / 2, h);
       QN_CS_ComposeYUV422_Frame(dst.row0(), dst.pitch(), y.row0(), y.pitch(), u.row0(),
                                 u.pitch(), v.row0(), v.pitch(), w, h);
     }},
    {"420_422_YUVFrame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       // A 576-row picture has its last row blackened over the whole pitch.
       Plane& dst = h == 576 ? p.Make(w * 2 + s.pad, h, 0) : p.Make(w * 2, h);
       Plane& y = p.Make(w, h);
       Plane& u = p.Make(w / 2, h / 2);
       Plane& v = p.Make(w / 2, h / 2);
       QN_CS_420_422_YUVFrame(dst.row0(), dst.pitch(), y.row0(), y.pitch(), u.row0(), u.pitch(),
                              v.row0(), v.pitch(), w, h);
     }},
    {"422_420_YUVFrame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       const int32_t chroma_rows = 2 * ((h / 2 + 1) / 2);
       Plane& y = p.Make(w, h);
       Plane& u = p.Make(w / 2, chroma_rows);
       Plane& v = p.Make(w / 2, chroma_rows);
       Plane& src = p.Make(w * 2, h);
       QN_CS_422_420_YUVFrame(y.row0(), y.pitch(), u.row0(), u.pitch(), v.row0(), v.pitch(),
                              src.row0(), src.pitch(), w, h);
     }},
    {"YUYV2RGBA_Frame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& dst = p.Make(EvenUp(w) * 4, h);
       Plane& src = p.Make(EvenUp(w) * 2, h);
       QN_CS_YUYV2RGBA_Frame(dst.row0(), dst.pitch(), src.row0(), src.pitch(), w, h, 1, s.flip);
     }},
    {"24_to_32_Frame with alpha",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& dst = p.Make(w * 4, h);
       Plane& src = p.Make(w * 3, h);
       Plane& alpha = p.Make(w, h);
       QN_CS_24_to_32_Frame(dst.row0(), dst.pitch(), src.row0(), src.pitch(), alpha.row0(),
                            alpha.pitch(), w, h, s.flip, 1 - s.flip);
     }},
    {"RGBA2YUYV_Frame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& dst = p.Make(Round4(w * 2), h);
       Plane& src = p.Make(w * 4, h);
       QN_CS_RGBA2YUYV_Frame(dst.row0(), dst.pitch(), src.row0(), src.pitch(), w, h, 0, s.flip);
     }},
    // The 24-bit forms count their groups from the source pitch, which must
    // therefore be 3 x width rounded up to 4 with no padding.
    {"BGR2YUYV_Frame",
     [](Planes& p, const Shape& s) {
       const int32_t w = s.width, h = s.height;
       Plane& dst = p.Make(Round4(w * 2), h);
       Plane& src = p.Make(Round4(w * 3), h, 0);
       QN_CS_BGR2YUYV_Frame(dst.row0(), dst.pitch(), src.row0(), src.pitch(), w, h, 1, s.flip);
     }},
};

TEST(PageEnd, UncheckedExportsStayInsideTheDescribedPlanes) {
  const int32_t widths[] = {1, 2, 3, 5, 8, 17, 33, 71};
  const int32_t heights[] = {1, 2, 3, 6, 7, 10, 576};
  for (const Case& c : kCases) {
    ForEachLevel([&](KernelLevel) {
      for (int32_t w : widths) {
        for (int32_t h : heights) {
          if (h == 576 && w > 17) continue;
          for (int32_t pad : {0, 7}) {
            for (bool upward : {false, true}) {
              for (int32_t flip : {0, 1}) {
                const Shape s{w, h, pad, upward, flip};
                SCOPED_TRACE(std::string(c.name) + " width " + std::to_string(w) + " height " +
                             std::to_string(h) + " pad " + std::to_string(pad) +
                             (upward ? " upward" : "") + (flip ? " flip" : ""));
                Planes planes{s, {}};
                c.run(planes, s);
              }
            }
          }
        }
      }
    });
  }
}

}  // namespace
}  // namespace qbo::test
