#!/usr/bin/env python3
"""How many plausible bugs does the test suite catch?

Copies the tracked tree to a scratch folder, builds it once (Release, tests
only), then applies one small change at a time, the kind a real bug makes,
rebuilds, runs the whole suite, and puts the file back. A change is caught
when the build of the tests or any test fails. Prints caught / applied and
the changes no test caught.

    tests/mutate.py [--work DIR] [--only SUBSTRING] [--jobs N]
"""
import argparse
import os
import shutil
import subprocess
import sys
import time

# (file, text as it stands, text with the bug, what the bug is). Each text
# must occur exactly once in its file.
MUTATIONS = [
    # Rounding constants and "+ 1" terms.
    ("yuvlayout/yuvlayout_row_c.cc", "constexpr int kEighthsRound = 4;",
     "constexpr int kEighthsRound = 3;", "4:2:0 chroma eighths round with 3"),
    ("buffer/mask_row_c.cc", "constexpr int kRoundUp = 255;", "constexpr int kRoundUp = 256;",
     "mask mix rounding offset 256"),
    ("filter/blur_split_row_c.cc", "constexpr int kRoundThirtySecond = 16;",
     "constexpr int kRoundThirtySecond = 15;", "blur rounds its 32nds with 15"),
    ("filter/resample_row_c.cc", "constexpr int kRoundEighth = 4;",
     "constexpr int kRoundEighth = 3;", "resampler rounds its eighths with 3"),
    ("colorspace/yuv_to_rgb_core.h", "inline constexpr int kHalfAt32 = 16;",
     "inline constexpr int kHalfAt32 = 15;", "YUV to RGB half offset 15"),
    ("blit/bilinear_row_c.cc", "const uint32_t upper = AddSat16(MulHigh16(top[i] + 1u, wt), 1);",
     "const uint32_t upper = AddSat16(MulHigh16(top[i] + 1u, wt), 0);",
     "bilinear drops the '+ 1' between the row terms"),
    ("blit/bilinear_row_c.cc", "v[i] = static_cast<uint16_t>(AddSat16(upper, MulHigh16(bottom[i] + 1u, wb)));",
     "v[i] = static_cast<uint16_t>(AddSat16(upper, MulHigh16(bottom[i], wb)));",
     "bilinear drops the '+ 1' of the lower row"),
    ("blit/blend_row_c.cc", "inline unsigned AlphaProduct(unsigned a, unsigned b) { return (a * b + 255) >> 8; }",
     "inline unsigned AlphaProduct(unsigned a, unsigned b) { return (a * b + 128) >> 8; }",
     "alpha product rounds with 128"),
    ("blit/blend_row_c.cc", "const int32_t diff = cs - cd + (cs > cd ? 1 : 0);",
     "const int32_t diff = cs - cd;", "blend drops the upward '+ 1'"),
    # Swapped or lost clamps and weights.
    ("blit/bilinear_row_c.cc", "dst[b] = static_cast<uint8_t>(sum > 255 ? 255 : sum);",
     "dst[b] = static_cast<uint8_t>(sum);", "bilinear result not clamped to 255"),
    ("blit/mean_row_c.cc", "if (middle > 65535) middle = 65535;", "if (middle > 65536) middle = 65535;",
     "mean middle-row sum saturates one late"),
    ("blit/blend_row_c.cc", "BlendChannels(dst, src, share[as * 256 + ad], as + ad - AlphaProduct(as, ad));",
     "BlendChannels(dst, src, share[ad * 256 + as], as + ad - AlphaProduct(as, ad));",
     "over-share looked up with the alphas swapped"),
    ("blit/blend_row_c.cc", "BlendChannels(dst, src, share[(255 - as) * 256 + ad], (255 - as) + AlphaProduct(as, ad));",
     "BlendChannels(dst, src, share[(255 - as) * 256 + ad], (255 - as) + AlphaProduct(255 - as, ad));",
     "inverted blend's alpha from the wrong product"),
    ("buffer/mask_row_c.cc", "dst[i] = dst[i] > src[i] ? dst[i] - src[i] : 0;",
     "dst[i] = dst[i] >= src[i] ? dst[i] - src[i] : 1;", "mask subtraction floors at 1"),
    ("colorspace/yuv_to_rgb_core.h", "const int shifted = (sum < 0 ? 0 : sum) >> 5;",
     "const int shifted = sum >> 5;", "YUV to RGB negative sums not clamped"),
    ("colorspace/yuv_to_rgb_core.h", "ClampShift5(base + ChromaTerm(v.b_from_u, du))};",
     "ClampShift5(base + ChromaTerm(v.b_from_u, dv))};", "blue from V instead of U"),
    ("colorspace/yuv_to_rgb_core.h", "return ((c - kChromaZero) + (c_next - kChromaZero)) * 64;",
     "return ((c - kChromaZero) + (c - kChromaZero)) * 64;", "odd pixel ignores the next pair's chroma"),
    ("yuvlayout/field_chroma.h", "inline constexpr FieldChromaWeights kPlainFieldChroma = {{2, 6}, {6, 2}};",
     "inline constexpr FieldChromaWeights kPlainFieldChroma = {{6, 2}, {2, 6}};",
     "4:2:0 field chroma weights swapped"),
    ("colorspace/planar_to_rgba_row_c.cc", "const int next = k + 1 < samples ? k + 1 : k;",
     "const int next = k + 1 <= samples ? k + 1 : k;", "planar last odd pixel reads past the chroma row"),
    # Coefficient digits.
    ("frame/coef_block.cc", "constexpr CoefSet k601 = {4898, 9618, 1868,",
     "constexpr CoefSet k601 = {4898, 9619, 1868,", "BT.601 green luma weight off by one"),
    ("frame/coef_block.cc", "25800, -3069, -7671, 30402};", "25800, -3069, -7617, 30402};",
     "BT.709 coefficient digits transposed"),
    ("frame/coef_block.cc", "22970, -5638, -11700, 29032};", "22970, -5638, -11700, 29023};",
     "BT.601 blue-from-U digits transposed"),
    # ceil that became floor, off-by-one clipping bounds.
    ("blit/stretch_plan.cc", "const int64_t k = Trunc(std::ceil(static_cast<double>(-a.src_pos) / a.scale));",
     "const int64_t k = Trunc(std::floor(static_cast<double>(-a.src_pos) / a.scale));",
     "source overhang hides floor, not ceil, destination pixels"),
    ("blit/stretch_plan.cc", "a.length -= Trunc(std::ceil(static_cast<double>(src_excess) / a.scale));",
     "a.length -= Trunc(std::floor(static_cast<double>(src_excess) / a.scale));",
     "source excess trims floor, not ceil"),
    ("blit/stretch_plan.cc", "const int64_t k = Trunc(0.5 - static_cast<double>(a.dst_pos) * a.scale);",
     "const int64_t k = Trunc(-static_cast<double>(a.dst_pos) * a.scale);",
     "destination overhang loses its + 0.5"),
    # (A source start at the buffer's edge, or one past a mask's plane, is
    # refused again by the later clipping steps: such changes cannot show.)
    ("blit/stretch_plan.cc", "a.src_length -= Trunc(static_cast<double>(dst_excess) * a.scale);",
     "a.src_length -= Trunc(std::ceil(static_cast<double>(dst_excess) * a.scale));",
     "destination excess trims the source by the rounded-up width"),
    ("blit/stretch_plan.cc", "counts[n - 1] = count_of(std::floor(s - (1.0f - c)), 1);",
     "counts[n - 1] = count_of(std::ceil(s - (1.0f - c)), 1);", "last mean count from ceil"),
    ("blit/stretch_plan.cc", "weights[2 * (n - 1) + 1] = 1.0f;", "weights[2 * (n - 1) + 1] = c;",
     "last mean pixel's closing weight is the carry, not 1.0"),
    ("blit/stretch_plan.cc", "const bool odd = p->dst_y % 2 != 0;", "const bool odd = p->dst_y % 2 == 0;",
     "field parity inverted"),
    ("blit/zoom_clip.cc", "if (!TruncTo32(widen ? F(size) - t : F(size) + t, &size)) return false;",
     "if (!TruncTo32(widen ? F(size) + t : F(size) - t, &size)) return false;",
     "zoom source overhang: widening and shrinking swapped"),
    ("buffer/mask_clip.cc", "h = std::min({h, int64_t{r.dst_height} - y, int64_t{r.src_height} - sy});",
     "h = std::min({h, int64_t{r.dst_height} - y, int64_t{r.src_height} - sy + 1});",
     "mask height clipped one row past the source"),
    ("filter/resample.cc", "const double hidden = static_cast<double>(static_cast<float>(a->pos) / scale) - 0.5;",
     "const double hidden = static_cast<double>(static_cast<float>(a->pos) / scale) + 0.5;",
     "resampling destination overhang rounds the hidden samples the other way"),
    # Tails and loops that stop one early.
    ("yuvlayout/yuvlayout_row_c.cc", "for (int i = 0; i < (width & ~1); ++i) dst_y[i] = src[2 * i];",
     "for (int i = 0; i + 1 < (width & ~1); ++i) dst_y[i] = src[2 * i];", "luma row stops one pixel early"),
    ("buffer/mask_row_c.cc", "for (std::size_t i = 0; i < width; ++i) dst[i] = dst[i] > src[i]",
     "for (std::size_t i = 1; i < width; ++i) dst[i] = dst[i] > src[i]", "mask subtraction skips the first byte"),
    ("yuvlayout/yuv420_to_yuyv.cc", "if (height == kBlackLastLineHeight) BlackenRow(RowAt(base, dstPitch, height - 1), dstPitch);",
     "if (height == kBlackLastLineHeight) BlackenRow(RowAt(base, dstPitch, height - 2), dstPitch);",
     "576-line blackening hits the wrong row"),
    ("yuvlayout/field_frame.cc", "qbo::CopyBytes(RowAt(dst, dstPitch, 2 * i + 1), RowAt(bottom, bottomPitch, i), n);",
     "qbo::CopyBytes(RowAt(dst, dstPitch, 2 * i), RowAt(bottom, bottomPitch, i), n);",
     "compose writes the bottom field on even rows"),
    ("blit/mean_row_c.cc", "quads[5] = (acc[1] + next[1]) * 0.5f;", "quads[5] = (acc[1] + acc[1]) * 0.5f;",
     "YUYV mean's odd pixel keeps its own U"),
    ("buffer/mask_row_c.cc", "alpha = static_cast<uint8_t>(std::lrint(scaled));",
     "alpha = static_cast<uint8_t>(scaled);", "mask alpha truncated instead of rounded to even"),
    ("filter/yuyv_mix_row_c.cc", "return Clamp255(d + ((s - d) * w >> 16));",
     "return Clamp255(d + ((s - d) * w >> 15));", "YUYV mix moves twice as far"),
    ("frame/single_precision.h", "float f = static_cast<float>(value);",
     "float f = static_cast<float>(static_cast<float>(value) + 1e-7f);",
     "single-precision narrowing nudged"),
    ("blit/stretch_plan.cc", "  return RoundToSingle(static_cast<double>(src_in) +\n                       static_cast<double>(dst_moved) * static_cast<double>(scale));",
     "  return static_cast<float>(static_cast<double>(src_in) +\n                            static_cast<double>(dst_moved) * (static_cast<double>(scale) + 1e-9));",
     "start position from a scale that is not the rounded float"),
    ("colorspace/rgba_to_yuyv_row_c.cc", "if (width & 1) {", "if (width & 2) {",
     "RGB to YUYV odd-width tail test on the wrong bit"),
]


def run(cmd, cwd, log, timeout=None):
    with open(log, "a") as out:
        return subprocess.run(cmd, cwd=cwd, stdout=out, stderr=subprocess.STDOUT,
                              timeout=timeout).returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--work", default="/tmp/qbo-mutate")
    parser.add_argument("--only", default="")
    parser.add_argument("--jobs", default=str(os.cpu_count() or 2))
    args = parser.parse_args()

    root = subprocess.run(["git", "rev-parse", "--show-toplevel"], capture_output=True, text=True,
                          check=True, cwd=os.path.dirname(os.path.abspath(__file__))).stdout.strip()
    src = os.path.join(args.work, "src")
    build = os.path.join(args.work, "build")
    log = os.path.join(args.work, "log.txt")
    shutil.rmtree(args.work, ignore_errors=True)
    os.makedirs(src)
    files = subprocess.run(["git", "ls-files"], capture_output=True, text=True, check=True,
                           cwd=root).stdout.split()
    for f in files:
        os.makedirs(os.path.dirname(os.path.join(src, f)) or src, exist_ok=True)
        shutil.copy2(os.path.join(root, f), os.path.join(src, f))

    chosen = [m for m in MUTATIONS if args.only in m[3] or args.only in m[0]]
    for path, old, _, why in chosen:
        count = open(os.path.join(src, path)).read().count(old)
        if count != 1:
            sys.exit(f"mutation '{why}': its text occurs {count} times in {path}")

    configure = ["cmake", "-S", src, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                 "-DQBO_BUILD_BENCH=OFF", "-DQBO_BUILD_TOOLS=OFF"]
    build_cmd = ["cmake", "--build", build, "-j", args.jobs]
    test_cmd = ["ctest", "--test-dir", build, "-j", args.jobs, "--timeout", "300"]
    if run(configure, src, log) or run(build_cmd, src, log) or run(test_cmd, src, log):
        sys.exit(f"the unchanged tree does not build and pass; see {log}")

    caught, survivors, broken = 0, [], []
    for path, old, new, why in chosen:
        full = os.path.join(src, path)
        original = open(full).read()
        with open(full, "w") as f:
            f.write(original.replace(old, new))
        started = time.time()
        built = run(build_cmd, src, log) == 0
        failed = False
        if built:
            try:
                failed = run(test_cmd, src, log, 900) != 0
            except subprocess.TimeoutExpired:
                failed = True
        with open(full, "w") as f:
            f.write(original)
        if not built:
            # A change that does not compile is no bug a test could miss.
            broken.append(why)
            print(f"BROKEN  {why}", flush=True)
            continue
        caught += failed
        if not failed:
            survivors.append(why)
        print(f"{'caught ' if failed else 'MISSED '} {why} ({time.time() - started:.0f} s)",
              flush=True)
    run(build_cmd, src, log)
    print(f"{caught} caught / {len(chosen) - len(broken)} applied")
    for why in broken:
        print(f"  does not build: {why}")
    for why in survivors:
        print(f"  not caught: {why}")


if __name__ == "__main__":
    main()
