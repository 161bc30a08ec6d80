#include "frame/accel.h"

namespace qbo {

AccelState g_accel;

namespace {

#if defined(_WIN32)
constexpr PathChar kSep = L'\\';
constexpr PathChar kListSep = L';';
// Windows' loader rereads Path on every load, so the bare name suffices.
constexpr bool kTryAddedFoldersExplicitly = false;
#else
constexpr PathChar kSep = '/';
constexpr PathChar kListSep = ':';
// The dynamic loader reads LD_LIBRARY_PATH once at process start, so a
// folder added now is also tried by its full path.
constexpr bool kTryAddedFoldersExplicitly = true;
#endif

// Limits of the platform's fixed buffers: a path, and the search-path value.
constexpr std::size_t kMaxPath = 260;
constexpr std::size_t kMaxSearchPath = 4095;

PathString Widen(const char* ascii) {
  PathString out;
  for (const char* p = ascii; *p; ++p) out.push_back(static_cast<PathChar>(*p));
  return out;
}

PathString ModuleFileName(const char* module_name) {
#if defined(_WIN32)
  return Widen(module_name) + L".dll";
#else
  return "lib" + Widen(module_name) + ".so";
#endif
}

// Removes the last component and its separator; false when there is no
// separator left to cut at.
bool CutLastComponent(PathString* path) {
  const std::size_t at = path->rfind(kSep);
  if (at == PathString::npos) return false;
  path->resize(at);
  return true;
}

// Appends `text` unless the value would outgrow the platform's buffer: the
// value is never longer than the loader could have read or written.
void AppendBounded(PathString* value, const PathString& text) {
  if (value->size() + text.size() <= kMaxSearchPath) *value += text;
}

#if defined(_WIN32)
// Path entries each end with ';'. One ';' is appended to the value read
// before any test, so a folder already last in Path matches too.
void BeginSearchPathEdit(PathString* value) { AppendBounded(value, PathString(1, kListSep)); }

void AddSearchPathEntry(PathString* value, const PathString& folder) {
  const PathString entry = folder + kListSep;
  if (value->find(entry) == PathString::npos) AppendBounded(value, entry);
}
#else
// An empty element of LD_LIBRARY_PATH means the current directory, which a
// child process would then search; entries are therefore joined with ':'
// and no leading, doubled or trailing separator is ever written.
void BeginSearchPathEdit(PathString*) {}

void AddSearchPathEntry(PathString* value, const PathString& folder) {
  const PathString wrapped = kListSep + *value + kListSep;
  if (wrapped.find(kListSep + folder + kListSep) != PathString::npos) return;
  AppendBounded(value, value->empty() ? folder : kListSep + folder);
}
#endif

using GetApiFn = void* (*)();

// Looks up and calls the entry point; keeps the module only when it hands
// back a non-null table.
ModuleHandle TakeTable(Platform& platform, ModuleHandle module, const char* entry_name,
                       void** table_out) {
  *table_out = nullptr;
  auto entry = reinterpret_cast<GetApiFn>(platform.FindSymbol(module, entry_name));
  if (entry) *table_out = entry();
  if (*table_out) return module;
  platform.UnloadModule(module);
  return nullptr;
}

enum class CoreDll { kFound, kNotFound, kNoHostFolder };

// Locates the CoreDLL folder. When found, `folder` ends with a separator
// and folder + "CoreDLL" is the CoreDLL directory. Without a root, a host
// path too short to have a parent folder ends the search altogether.
CoreDll FindCoreDllFolder(Platform& platform, const PathString& root, PathString* folder) {
  const PathString core = QBO_PATH("CoreDLL");
  if (!root.empty()) {
    *folder = root + kSep;
    return platform.IsDirectory(*folder + core) ? CoreDll::kFound : CoreDll::kNotFound;
  }
  PathString base = platform.HostExecutablePath();
  if (base.size() > kMaxPath - 1) base.resize(kMaxPath - 1);
  if (!CutLastComponent(&base) || !CutLastComponent(&base)) return CoreDll::kNoHostFolder;
  base += kSep;
  if (platform.IsDirectory(base + core)) {
    *folder = base;
    return CoreDll::kFound;
  }
  for (const DirEntry& entry : platform.ListDirectory(base)) {
    if (!entry.is_directory) continue;
    const PathString candidate = base + entry.name + kSep;
    if (platform.IsDirectory(candidate + core)) {
      *folder = candidate;
      return CoreDll::kFound;
    }
  }
  return CoreDll::kNotFound;
}

// Puts folder/CoreDLL and each folder/CoreDLL/<sub>/x86 on the search
// path (once each) and returns them in that order.
std::vector<PathString> ExtendSearchPath(Platform& platform, const PathString& folder,
                                         const PathString* subfolders, int subfolder_count) {
  std::vector<PathString> added;
  PathString value;
  platform.GetSearchPath(&value);
  // A value longer than the loader's buffer is left as it is: writing back
  // a cut copy would drop the folders at its end from the process.
  const bool keep_value = value.size() > kMaxSearchPath;
  BeginSearchPathEdit(&value);

  const PathString core = folder + QBO_PATH("CoreDLL");
  added.push_back(core);
  AddSearchPathEntry(&value, core);

  for (int i = 0; subfolders && i < subfolder_count; ++i) {
    const PathString dir = core + kSep + subfolders[i] + kSep + QBO_PATH("x86");
    added.push_back(dir);
    AddSearchPathEntry(&value, dir);
    if (!keep_value) platform.SetSearchPath(value);
  }
  return added;
}

}  // namespace

ModuleHandle FindAndLoadModule(Platform& platform, const PathString& root,
                               const PathString* subfolders, int subfolder_count,
                               const char* module_name, const char* entry_name,
                               void** table_out) {
  if (!module_name || !entry_name) return nullptr;
  const PathString file = ModuleFileName(module_name);

  if (ModuleHandle module = platform.LoadModule(file)) {
    if (TakeTable(platform, module, entry_name, table_out)) return module;
  }

  PathString folder;
  ModuleHandle module = nullptr;
  const CoreDll core = FindCoreDllFolder(platform, root, &folder);
  if (core == CoreDll::kNoHostFolder) return nullptr;
  if (core == CoreDll::kFound) {
    const std::vector<PathString> added =
        ExtendSearchPath(platform, folder, subfolders, subfolder_count);
    module = platform.LoadModule(file);
    if (kTryAddedFoldersExplicitly) {
      for (std::size_t i = 0; !module && i < added.size(); ++i) {
        module = platform.LoadModule(added[i] + kSep + file);
      }
    }
  } else {
    module = platform.LoadModule(file);
  }
  if (!module) return nullptr;
  return TakeTable(platform, module, entry_name, table_out);
}

void LoadAccelerationModules(Platform& platform) {
  PathString path = platform.HostExecutablePath();
  if (path.size() > kMaxPath) path.resize(kMaxPath);
  // Root = the folder "dll" beside the folder that holds the executable:
  // cut at the second separator from the end.
  if (!CutLastComponent(&path) || !CutLastComponent(&path)) return;
  const PathString root = path + kSep + QBO_PATH("dll");

  const PathString subfolders[] = {QBO_PATH("CPURelease")};
  void* mem_api = nullptr;
  void* vid_api = nullptr;
  g_accel.module_handle = FindAndLoadModule(platform, root, subfolders, 1, "VelaMem",
                                            "VLM_GetAPIStuPtr", &mem_api);
  g_accel.vela_mem_api = mem_api;
  g_accel.module_handle = FindAndLoadModule(platform, root, subfolders, 1, "VelaVid",
                                            "VLV_GetAPIStuPtr", &vid_api);
  g_accel.vela_vid_api = static_cast<VelaVidApi*>(vid_api);
}

}  // namespace qbo
