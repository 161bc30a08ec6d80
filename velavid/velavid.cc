// The VelaVid module: the entry table the library's loader asks
// VLV_GetAPIStuPtr for, and the three conversions it takes over. Each
// conversion is the library's own path (linked from its static core, so no
// arithmetic exists twice), cut into bands of rows that the worker threads
// run side by side.
#include "velavid/velavid.h"

#include <algorithm>
#include <cstdint>

#include "frame/accel_paths.h"
#include "frame/coef_block.h"
#include "frame/kernel_table.h"
#include "velavid/worker_pool.h"

namespace velavid {
namespace {

// Frames shorter than this run on the calling thread: below it a band costs
// more to hand over than to convert.
constexpr int64_t kMinRowsToSplit = 256;
// No band is shorter than this, so a frame just above the limit is split in
// fewer bands than there are threads.
constexpr int64_t kMinBandRows = 64;

int32_t Int(intptr_t word) { return static_cast<int32_t>(word); }
template <typename T>
T* Ptr(intptr_t word) {
  return reinterpret_cast<T*>(word);
}

// Runs `convert(begin, end)` over [0, rows) in bands on the pool.
template <typename Convert>
void RunInBands(int64_t rows, const Convert& convert) {
  if (rows <= 0) return;  // the own paths write nothing then either
  int bands = 1;
  if (rows >= kMinRowsToSplit) {
    const WorkerPool& pool = Pool();
    bands = static_cast<int>(std::min<int64_t>(pool.threads(), rows / kMinBandRows));
  }
  if (bands <= 1) {
    convert(0, static_cast<int32_t>(rows));
    return;
  }
  struct Context {
    const Convert* convert;
    int64_t rows;
    int bands;
  } context{&convert, rows, bands};
  Pool().Run(
      bands,
      [](const void* c, int band) {
        const auto* ctx = static_cast<const Context*>(c);
        const int64_t begin = ctx->rows * band / ctx->bands;
        const int64_t end = ctx->rows * (band + 1) / ctx->bands;
        (*ctx->convert)(static_cast<int32_t>(begin), static_cast<int32_t>(end));
      },
      &context);
}

}  // namespace

void EnsureKernelsReady() {
  static const bool ready = [] {
    // The module's copy of the core never loads modules itself, and the
    // conversions and the resampler read no lookup table: the coefficient
    // block and the kernel level are all they need.
    qbo::CsInitCoefficients();
    qbo::InitKernelTableFromEnvironment();
    return true;
  }();
  (void)ready;
}

intptr_t Convert24To32Split(intptr_t dst0, intptr_t dst_pitch0, intptr_t dst1,
                            intptr_t dst_pitch1, intptr_t src, intptr_t src_pitch,
                            intptr_t width, intptr_t height, intptr_t, intptr_t, intptr_t flip) {
  EnsureKernelsReady();
  // Destination rows: each half gets every other source row.
  RunInBands((int64_t{Int(height)} + 1) / 2, [&](int32_t begin, int32_t end) {
    qbo::Rgb24To32SplitRows(Ptr<void>(dst0), Int(dst_pitch0), Ptr<void>(dst1), Int(dst_pitch1),
                            Ptr<const void>(src), Int(src_pitch), Int(width), Int(height),
                            Int(flip), begin, end);
  });
  return 1;
}

intptr_t ConvertYuyvToBgraFrame(intptr_t dst, intptr_t dst_pitch, intptr_t src,
                                intptr_t src_pitch, intptr_t width, intptr_t height,
                                intptr_t bt601, intptr_t, intptr_t, intptr_t, intptr_t flip) {
  EnsureKernelsReady();
  RunInBands(Int(height), [&](int32_t begin, int32_t end) {
    qbo::YuyvToBgraFrameRows(Ptr<void>(dst), Int(dst_pitch), Ptr<const void>(src),
                             Int(src_pitch), Int(width), Int(height), Int(bt601) == 0 ? 1 : 0,
                             Int(flip), begin, end);
  });
  return 1;
}

intptr_t Convert420To422Split(intptr_t dst_top, intptr_t top_pitch, intptr_t dst_bottom,
                              intptr_t bottom_pitch, intptr_t src_y, intptr_t y_pitch,
                              intptr_t src_u, intptr_t u_pitch, intptr_t src_v, intptr_t v_pitch,
                              intptr_t width, intptr_t height, intptr_t, intptr_t) {
  EnsureKernelsReady();
  // Field rows: both fields' row r are written by the same band.
  RunInBands(Int(height) / 2, [&](int32_t begin, int32_t end) {
    qbo::Yuv420To422SplitRows(Ptr<void>(dst_top), Int(top_pitch), Ptr<void>(dst_bottom),
                              Int(bottom_pitch), Ptr<const void>(src_y), Int(y_pitch),
                              Ptr<const void>(src_u), Int(u_pitch), Ptr<const void>(src_v),
                              Int(v_pitch), Int(width), Int(height), begin, end);
  });
  return 1;
}

namespace {

// The table the loader reads: ScaleEntries, then ConvertEntries; entries
// the module does not serve are null, so the library runs its own path.
struct EntryTable {
  void* const* scale_entries;
  void* const* convert_entries;
};

template <typename Fn>
void* Entry(Fn fn) {
  return reinterpret_cast<void*>(fn);
}

void* const kScaleEntries[8] = {nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr, Entry(&ResampleFrame)};

struct ConvertArray {
  void* entries[74] = {};
  ConvertArray() {
    entries[16] = Entry(&Convert24To32Split);
    entries[21] = Entry(&ConvertYuyvToBgraFrame);
    entries[73] = Entry(&Convert420To422Split);
  }
};

}  // namespace
}  // namespace velavid

#if defined(_WIN32)
#define VELAVID_EXPORT
#else
#define VELAVID_EXPORT __attribute__((visibility("default")))
#endif

extern "C" VELAVID_EXPORT void* VLV_GetAPIStuPtr() {
  static const velavid::ConvertArray convert;
  static const velavid::EntryTable table = {velavid::kScaleEntries, convert.entries};
  velavid::EnsureKernelsReady();
  return const_cast<velavid::EntryTable*>(&table);
}
