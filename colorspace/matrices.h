// The library's colour-conversion matrices: 4 x 4 floats, row by row, row r
// giving output component r from input components (R, G, B, A) or
// (Y, U, V, A). U and V are centred on zero; alpha passes through.
//
// The BT.601 cells are the 2^14 fixed-point coefficients of the integer
// paths divided by 16384 exactly, so float and fixed-point BT.601 agree;
// the BT.709 cells are the real coefficients, which the fixed-point set
// rounds. The float quadruples of the coefficient block are copied from
// these cells.
#ifndef QBO_COLORSPACE_MATRICES_H_
#define QBO_COLORSPACE_MATRICES_H_

namespace qbo {

inline constexpr float kQ14 = 16384.0f;

inline constexpr float kYuvaToRgba709[16] = {
    1.0f, 0.0f,       1.574722f,  0.0f,  //
    1.0f, -0.187314f, -0.468207f, 0.0f,  //
    1.0f, 1.855615f,  0.0f,       0.0f,  //
    0.0f, 0.0f,       0.0f,       1.0f,
};

inline constexpr float kYuvaToRgba601[16] = {
    1.0f, 0.0f,              22970.0f / kQ14,  0.0f,  //
    1.0f, -5638.0f / kQ14,   -11700.0f / kQ14, 0.0f,  //
    1.0f, 29032.0f / kQ14,   0.0f,             0.0f,  //
    0.0f, 0.0f,              0.0f,             1.0f,
};

inline constexpr float kRgbaToYuva709[16] = {
    0.212639f,  0.715169f,  0.072192f,  0.0f,  //
    -0.114592f, -0.385409f, 0.5f,       0.0f,  //
    0.5f,       -0.454156f, -0.045844f, 0.0f,  //
    0.0f,       0.0f,       0.0f,       1.0f,
};

inline constexpr float kRgbaToYuva601[16] = {
    4898.0f / kQ14,  9618.0f / kQ14,  1868.0f / kQ14,  0.0f,  //
    -2764.0f / kQ14, -5428.0f / kQ14, 8192.0f / kQ14,  0.0f,  //
    8192.0f / kQ14,  -6860.0f / kQ14, -1332.0f / kQ14, 0.0f,  //
    0.0f,            0.0f,            0.0f,            1.0f,
};

// The third YUVA-to-RGBA matrix, returned without a selector, and its
// forward counterpart, which the library keeps but hands to nobody.
inline constexpr float kLuvaToRgba[16] = {
    1.0f, 0.0f,        1.468613f,   0.0f,  //
    1.0f, -0.3604871f, -0.7480668f, 0.0f,  //
    1.0f, 1.856193f,   0.0f,        0.0f,  //
    0.0f, 0.0f,        0.0f,        1.0f,
};

inline constexpr float kRgbaToLuva[16] = {
    0.2988f,     0.5868f,     0.1144f,      0.0f,  //
    -0.1610824f, -0.3162388f, 0.4773212f,   0.0f,  //
    0.4773212f,  -0.3996969f, -0.07762426f, 0.0f,  //
    0.0f,        0.0f,        0.0f,         1.0f,
};

// Cell (row, column) of a matrix, for readers that name cells.
constexpr float MatrixCell(const float* m, int row, int column) { return m[row * 4 + column]; }

}  // namespace qbo

#endif  // QBO_COLORSPACE_MATRICES_H_
