// Entries of the VelaVid module, as the library's loader finds them in the
// table VLV_GetAPIStuPtr returns. Every argument is one machine word.
#ifndef QBO_VELAVID_VELAVID_H_
#define QBO_VELAVID_VELAVID_H_

#include <cstdint>

namespace velavid {

// ScaleEntries[7]: resamples the frame `source` describes into the frame
// `destination` describes (two QN_FrameDescriptor records); the last six
// words are the caller's mode constants, which select nothing here.
// Returns 1 when the frame was drawn, 0 (nothing written) when a
// descriptor cannot be served.
intptr_t ResampleFrame(intptr_t source, intptr_t destination, intptr_t, intptr_t, intptr_t,
                       intptr_t, intptr_t, intptr_t);

// ConvertEntries[16], [21] and [73]: the library's own paths of
// QN_CS_24_to_32_Split (no alpha plane), QN_CS_YUYV2BGRA_Frame and
// QN_CS_420_422_YUVSplit, run in bands on the worker threads.
intptr_t Convert24To32Split(intptr_t dst0, intptr_t dst_pitch0, intptr_t dst1,
                            intptr_t dst_pitch1, intptr_t src, intptr_t src_pitch,
                            intptr_t width, intptr_t height, intptr_t zero, intptr_t alpha,
                            intptr_t flip);
intptr_t ConvertYuyvToBgraFrame(intptr_t dst, intptr_t dst_pitch, intptr_t src,
                                intptr_t src_pitch, intptr_t width, intptr_t height,
                                intptr_t bt601, intptr_t one, intptr_t zero, intptr_t alpha,
                                intptr_t flip);
intptr_t Convert420To422Split(intptr_t dst_top, intptr_t top_pitch, intptr_t dst_bottom,
                              intptr_t bottom_pitch, intptr_t src_y, intptr_t y_pitch,
                              intptr_t src_u, intptr_t u_pitch, intptr_t src_v, intptr_t v_pitch,
                              intptr_t width, intptr_t height, intptr_t, intptr_t);

// Brings the module's own copy of the library's kernels to the state the
// library's attach leaves it in (tables, coefficients, kernel level). Safe
// to call from any thread, any number of times.
void EnsureKernelsReady();

}  // namespace velavid

#endif  // QBO_VELAVID_VELAVID_H_
