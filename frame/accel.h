// The optional acceleration modules: VelaMem (memory operations, loaded and
// kept only) and VelaVid (video operations, called by a few exports).
#ifndef QBO_FRAME_ACCEL_H_
#define QBO_FRAME_ACCEL_H_

#include <cstdint>

#include "frame/platform.h"

namespace qbo {

// The VelaVid entry table as the library reads it: two arrays of entry
// points. Entries are called with the platform's default C convention.
struct VelaVidApi {
  void* const* ScaleEntries;
  void* const* ConvertEntries;
};

// Indices of the entries the library calls.
inline constexpr int kResampleFrameEntry = 7;          // ScaleEntries
inline constexpr int kConvert24To32SplitEntry = 16;    // ConvertEntries
inline constexpr int kConvertYuyvToBgraFrameEntry = 21;  // ConvertEntries
inline constexpr int kConvert420To422SplitEntry = 73;  // ConvertEntries

struct AccelState {
  void* vela_mem_api = nullptr;
  VelaVidApi* vela_vid_api = nullptr;
  // Both loads store into this one slot, VelaVid last, so only VelaVid's
  // handle is kept and released at detach; VelaMem stays loaded for the
  // life of the process.
  ModuleHandle module_handle = nullptr;
};

extern AccelState g_accel;

// Entry `index` of VelaVid's ConvertEntries / ScaleEntries cast to `Fn`, or
// null when the module, its table, the array or the entry is missing.
template <typename Fn>
Fn VelaVidConvertEntry(int index) {
  const VelaVidApi* api = g_accel.vela_vid_api;
  if (!api || !api->ConvertEntries || !api->ConvertEntries[index]) return nullptr;
  return reinterpret_cast<Fn>(api->ConvertEntries[index]);
}
template <typename Fn>
Fn VelaVidScaleEntry(int index) {
  const VelaVidApi* api = g_accel.vela_vid_api;
  if (!api || !api->ScaleEntries || !api->ScaleEntries[index]) return nullptr;
  return reinterpret_cast<Fn>(api->ScaleEntries[index]);
}

// Loads VelaMem then VelaVid from beside the host executable.
void LoadAccelerationModules(Platform& platform);

// Finds and loads one module; stores its entry table in *table_out and
// returns the handle, or null (with *table_out null) when it cannot.
// `root` may be empty: the CoreDLL folder is then searched for around the
// host executable.
ModuleHandle FindAndLoadModule(Platform& platform, const PathString& root,
                               const PathString* subfolders, int subfolder_count,
                               const char* module_name, const char* entry_name,
                               void** table_out);

}  // namespace qbo

#endif  // QBO_FRAME_ACCEL_H_
