// The exported matrix queries: pointers into, and cells of, the constant
// matrices of matrices.h. Nothing is copied or allocated.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "colorspace/matrices.h"

namespace qbo {
namespace {

constexpr int32_t kStandard709 = 1;
constexpr int32_t kStandard601 = 2;

const float* Select(int32_t standard, const float* m709, const float* m601) {
  if (standard == kStandard709) return m709;
  if (standard == kStandard601) return m601;
  return nullptr;
}

// Rows and columns outside 0..3 would index past the matrix; they read 0.0
// here instead of whatever lies beyond it.
float Cell(const float* m, int32_t row, int32_t column) {
  if (!m || row < 0 || row > 3 || column < 0 || column > 3) return 0.0f;
  return MatrixCell(m, row, column);
}

}  // namespace
}  // namespace qbo

extern "C" {

QBO_API const float* QBO_CALLEE QN_CS_GetMatYUVA2RGBA(int32_t standard) {
  return qbo::Select(standard, qbo::kYuvaToRgba709, qbo::kYuvaToRgba601);
}

QBO_API float QBO_CALLEE QN_CS_GetMatYUVA2RGBA_Cell(int32_t row, int32_t column, int32_t standard) {
  return qbo::Cell(QN_CS_GetMatYUVA2RGBA(standard), row, column);
}

QBO_API const float* QBO_CALLEE QN_CS_GetMatRGBA2YUVA(int32_t standard) {
  return qbo::Select(standard, qbo::kRgbaToYuva709, qbo::kRgbaToYuva601);
}

QBO_API float QBO_CALLEE QN_CS_GetMatRGBA2YUVA_Cell(int32_t row, int32_t column, int32_t standard) {
  return qbo::Cell(QN_CS_GetMatRGBA2YUVA(standard), row, column);
}

QBO_API const float* QBO_CALLEE QN_CS_GetMatLUVA2RGBA(void) { return qbo::kLuvaToRgba; }

}  // extern "C"
