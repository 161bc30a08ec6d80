// YUYV -> 4:2:0 exports against a model written from the decimation rules
// (two-row average, XDCAM 3:1 with its doubled trailing pair, 4-tap with
// wrapped sums), at every level, with padded, guarded and upward planes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "tests/yuvlayout/test_planes.h"

namespace qbo::test {
namespace {

enum class Kind { kField, kFieldXdcamTop, kFieldXdcamBottom, kFrame, kFrameXdcam, kField4, kFrame4 };

struct Export {
  const char* name;
  Kind kind;
};

const Export kExports[] = {
    {"Field", Kind::kField},     {"Field_XDCAM top", Kind::kFieldXdcamTop},
    {"Field_XDCAM bottom", Kind::kFieldXdcamBottom},
    {"Frame", Kind::kFrame},     {"Frame_XDCAM", Kind::kFrameXdcam},
    {"Field_4", Kind::kField4},  {"Frame_4", Kind::kFrame4},
};

void Call(Kind kind, TestPlane& y, TestPlane& u, TestPlane& v, TestPlane& src, int w, int h) {
  uint8_t* Y = y.First();
  uint8_t* U = u.First();
  uint8_t* V = v.First();
  const int yp = y.Pitch(), up = u.Pitch(), vp = v.Pitch(), sp = src.Pitch();
  switch (kind) {
    case Kind::kField:
      return QN_CS_422_420_YUVField(Y, yp, U, up, V, vp, src.First(), sp, w, h);
    case Kind::kFieldXdcamTop:
      return QN_CS_422_420_YUVField_XDCAM(Y, yp, U, up, V, vp, src.First(), sp, w, h, 7);
    case Kind::kFieldXdcamBottom:
      return QN_CS_422_420_YUVField_XDCAM(Y, yp, U, up, V, vp, src.First(), sp, w, h, 0);
    case Kind::kFrame:
      return QN_CS_422_420_YUVFrame(Y, yp, U, up, V, vp, src.First(), sp, w, h);
    case Kind::kFrameXdcam:
      return QN_CS_422_420_YUVFrame_XDCAM(Y, yp, U, up, V, vp, src.First(), sp, w, h);
    case Kind::kField4:
      return QN_CS_422_420_YUVField_4(Y, yp, U, up, V, vp, src.First(), sp, w, h);
    case Kind::kFrame4:
      return QN_CS_422_420_YUVFrame_4(Y, yp, U, up, V, vp, src.First(), sp, w, h);
  }
}

bool IsFrame(Kind k) { return k == Kind::kFrame || k == Kind::kFrameXdcam || k == Kind::kFrame4; }

// Chroma rows the destination needs: (height + 1) / 2 for a field, two per
// field of an interlaced frame, each field counting (rows + 1) / 2.
int ChromaRows(Kind k, int height) {
  return IsFrame(k) ? 2 * ((height / 2 + 1) / 2) : (height + 1) / 2;
}

struct Expected {
  Rows y, u, v;
};

class Model {
 public:
  Model(TestPlane& src, int width, Expected* out) : src_(src), width_(width), out_(out) {}

  // Y row `dst` from source row `row`.
  void Luma(int dst, int row) {
    for (int i = 0; i < (width_ & ~1); ++i) out_->y[dst][i] = src_.Row(row)[2 * i];
  }
  // Chroma row `dst` from source rows with `f(a, b, c, d, trailing_pair)`.
  template <typename F>
  void Chroma(int dst, int a, int b, int c, int d, F f) {
    for (int j = 0; j < width_ / 2; ++j) {
      const bool trailing = (width_ & 2) && j == width_ / 2 - 1;
      for (int plane = 0; plane < 2; ++plane) {
        const int byte = 4 * j + 1 + 2 * plane;
        const int value = f(src_.Row(a)[byte], src_.Row(b)[byte], src_.Row(c)[byte],
                            src_.Row(d)[byte], trailing);
        (plane ? out_->v : out_->u)[dst][j] = static_cast<uint8_t>(value);
      }
    }
  }

 private:
  TestPlane& src_;
  int width_;
  Expected* out_;
};

int Keep(int, int b, int, int, bool) { return b; }
int Average(int, int b, int c, int, bool) { return (b + c + 1) >> 1; }
int XdcamTop(int, int b, int c, int, bool trailing) {
  return trailing ? std::min(255, (3 * b + c + 2) >> 1) : (3 * b + c + 2) >> 2;
}
int XdcamBottom(int, int b, int c, int, bool trailing) {
  return trailing ? std::min(255, (b + 3 * c + 2) >> 1) : (b + 3 * c + 2) >> 2;
}
// 16-bit sums shifted logically, then limited to 255.
int FourTap(int a, int b, int c, int d, bool) {
  return std::min(255, static_cast<uint16_t>(-a + 3 * b + 3 * c - d + 2) >> 2);
}
int FourTapOddEnd(int a, int b, int, int, bool) {
  return std::min(255, static_cast<uint16_t>(3 * b - a + 1) >> 1);
}

// The 4-tap filter over rows `first`, `first + step`, ... of a field of
// `rows` rows, Y and chroma rows mapped the same way.
void ModelFourTap(Model& m, TestPlane& src, int width, Expected& e, int rows, int first,
                  int step) {
  if (rows < 3) return;
  auto R = [&](int i) { return first + step * i; };
  const int q = (rows + 1) / 2;
  for (int i = 0; i < rows; ++i) m.Luma(R(i), R(i));
  m.Chroma(R(0), R(0), R(0), R(1), R(2), FourTap);
  for (int k = 1; k <= q - 2; ++k) m.Chroma(R(k), R(2 * k - 1), R(2 * k), R(2 * k + 1), R(2 * k + 2), FourTap);
  const int a = 2 * q - 3, b = 2 * q - 2;
  if (rows % 2 == 0) {
    m.Chroma(R(q - 1), R(a), R(b), R(b + 1), R(b + 1), FourTap);
    return;
  }
  m.Chroma(R(q - 1), R(a), R(b), R(b), R(b), FourTapOddEnd);
  // Y row b: per group of 8 (then 4, 2) pixels the chroma bytes of row a,
  // each followed by 0.
  int g = 0;
  for (int n : {8, 4, 2}) {
    const int groups = n == 8 ? width / 8 : (width & n) ? 1 : 0;
    for (int gi = 0; gi < groups; ++gi, g += n) {
      for (int m2 = 0; m2 < n / 2; ++m2) {
        e.y[R(b)][g + 2 * m2] = src.Row(R(a))[2 * g + 2 * m2 + 1];
        e.y[R(b)][g + 2 * m2 + 1] = 0;
      }
    }
  }
}

void ModelExport(Kind kind, TestPlane& src, int width, int height, Expected& e) {
  Model m(src, width, &e);
  switch (kind) {
    case Kind::kField:
    case Kind::kFieldXdcamTop:
    case Kind::kFieldXdcamBottom: {
      auto f = kind == Kind::kField ? Average : kind == Kind::kFieldXdcamTop ? XdcamTop : XdcamBottom;
      for (int k = 0; k < height / 2; ++k) {
        m.Luma(2 * k, 2 * k);
        m.Luma(2 * k + 1, 2 * k + 1);
        m.Chroma(k, 2 * k, 2 * k, 2 * k + 1, 2 * k + 1, f);
      }
      if (height % 2) {
        m.Luma(height - 1, height - 1);
        m.Chroma(height / 2, height - 1, height - 1, height - 1, height - 1, Keep);
      }
      return;
    }
    case Kind::kFrame:
    case Kind::kFrameXdcam: {
      const bool xdcam = kind == Kind::kFrameXdcam;
      auto top = xdcam ? XdcamTop : Average;
      auto bottom = xdcam ? XdcamBottom : Average;
      const int groups = height / 4, r = 4 * groups;
      for (int g = 0; g < groups; ++g) {
        for (int i = 0; i < 4; ++i) m.Luma(4 * g + i, 4 * g + i);
        m.Chroma(2 * g, 4 * g, 4 * g, 4 * g + 2, 4 * g + 2, top);
        m.Chroma(2 * g + 1, 4 * g + 1, 4 * g + 1, 4 * g + 3, 4 * g + 3, bottom);
      }
      if (height % 4 == 3) {
        for (int i = 0; i < 3; ++i) m.Luma(r + i, r + i);
        m.Chroma(r / 2, r, r, r + 2, r + 2, top);
        m.Chroma(r / 2 + 1, r + 1, r + 1, r + 1, r + 1, Keep);
      } else if (height % 4 == 2) {
        m.Luma(r, r);
        m.Luma(r + 1, r + 1);
        m.Chroma(r / 2, r, r, r, r, Keep);
        m.Chroma(r / 2 + 1, r + 1, r + 1, r + 1, r + 1, Keep);
      }
      return;
    }
    case Kind::kField4:
      return ModelFourTap(m, src, width, e, height, 0, 1);
    case Kind::kFrame4:
      if (height / 2 < 3) return;
      ModelFourTap(m, src, width, e, height / 2, 0, 2);
      ModelFourTap(m, src, width, e, height / 2, 1, 2);
      return;
  }
}

TEST(YuyvToYuv420, EveryExportMatchesItsRules) {
  const int heights[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 576};
  ForEachLevel([&](KernelLevel) {
    for (const Export& x : kExports) {
      for (int height : heights) {
        for (int width : {1, 2, 6, 10, 13, 33, 79}) {
          if (height == 576 && width > 10) continue;
          const bool upward = (width + height) % 3 == 0;
          SCOPED_TRACE(::testing::Message() << x.name << " " << width << "x" << height
                                            << (upward ? " upward" : ""));
          const int crow = ChromaRows(x.kind, height);
          TestPlane src(2 * width, height, 31u + static_cast<uint32_t>(height), upward, 1);
          TestPlane y(width, height, 32, !upward), u(width / 2, crow, 33, upward, 2),
              v(width / 2, crow, 34, false, 3);
          Expected e{y.Snapshot(), u.Snapshot(), v.Snapshot()};
          ModelExport(x.kind, src, width, height, e);
          Call(x.kind, y, u, v, src, width, height);
          ASSERT_EQ(Differences(e.y, y), "");
          ASSERT_EQ(Differences(e.u, u), "");
          ASSERT_EQ(Differences(e.v, v), "");
          ASSERT_TRUE(y.GuardsIntact() && u.GuardsIntact() && v.GuardsIntact());
        }
      }
    }
  });
}

TEST(YuyvToYuv420, FourTapSaturatesDarkPairBetweenBrightRows) {
  // One field of 8 rows with chroma 10, 250, 10, 10, 250, 10, 10, 250.
  // Chroma row 0 (rows 0, 0, 1, 2): -10 + 30 + 750 - 10 + 2 = 762 >> 2 = 190.
  // Chroma row 1 (rows 1..4, a dark pair between bright rows):
  //   -250 + 30 + 30 - 250 + 2 = -438, wrapped to 65098 >> 2 = 16274: 255.
  // Chroma row 2 (rows 3..6): -10 + 750 + 30 - 10 + 2 = 762 >> 2 = 190.
  // Chroma row 3 (rows 5, 6, 7, 7): -10 + 30 + 750 - 250 + 2 = 522 >> 2 = 130.
  const uint8_t levels[8] = {10, 250, 10, 10, 250, 10, 10, 250};
  uint8_t src[8][4], y[8][2], u[4], v[4];
  for (int r = 0; r < 8; ++r) {
    src[r][0] = src[r][2] = 16;
    src[r][1] = src[r][3] = levels[r];
  }
  ForEachLevel([&](KernelLevel) {
    QN_CS_422_420_YUVField_4(y, 2, u, 1, v, 1, src, 4, 2, 8);
    EXPECT_EQ(std::vector<uint8_t>(u, u + 4), (std::vector<uint8_t>{190, 255, 190, 130}));
    EXPECT_EQ(std::vector<uint8_t>(v, v + 4), (std::vector<uint8_t>{190, 255, 190, 130}));
  });
}

TEST(YuyvToYuv420, FrameDecimatesEachFieldOnItsOwn) {
  // Top-field rows carry chroma 30, bottom-field rows 220: every filter
  // keeps a field's value, so chroma rows alternate 30, 220 exactly.
  ForEachLevel([](KernelLevel) {
    for (Kind kind : {Kind::kFrame, Kind::kFrameXdcam, Kind::kFrame4}) {
      for (int height : {8, 11, 12, 14}) {
        SCOPED_TRACE(::testing::Message() << static_cast<int>(kind) << " height=" << height);
        const int width = 36;
        TestPlane src(2 * width, height, 1);
        for (int r = 0; r < height; ++r) {
          for (int j = 0; j < width / 2; ++j) {
            src.Row(r)[4 * j + 1] = r % 2 ? 220 : 30;
            src.Row(r)[4 * j + 3] = r % 2 ? 221 : 31;
          }
        }
        const int crow = ChromaRows(kind, height);
        TestPlane y(width, height, 2), u(width / 2, crow, 3), v(width / 2, crow, 4);
        Call(kind, y, u, v, src, width, height);
        const int written = kind == Kind::kFrame && height % 4 == 1 ? crow - 1 : crow;
        for (int k = 0; k < written; ++k) {
          for (int j = 0; j < width / 2; ++j) {
            ASSERT_EQ(u.Row(k)[j], k % 2 ? 220 : 30) << "chroma row " << k;
            ASSERT_EQ(v.Row(k)[j], k % 2 ? 221 : 31) << "chroma row " << k;
          }
        }
      }
    }
  });
}

}  // namespace
}  // namespace qbo::test
