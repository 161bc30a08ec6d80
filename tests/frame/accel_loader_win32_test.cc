// The acceleration loader with Windows paths: backslashes, VelaMem.dll and
// VelaVid.dll, and a Path variable that the scripted loader searches the way
// LoadLibraryW does (bare names are found only in folders on Path).
#include <gtest/gtest.h>

#include "frame/accel.h"
#include "tests/support/fake_platform.h"

#if defined(_WIN32)

namespace qbo::test {
namespace {

const PathString kRoot = L"C:\\Player\\dll";
const PathString kCore = L"C:\\Player\\dll\\CoreDLL";
const PathString kX86 = L"C:\\Player\\dll\\CoreDLL\\CPURelease\\x86";

// Modules live in folders; a bare file name loads only from a folder that
// Path lists at the moment of the load.
class PathSearchingPlatform : public FakePlatform {
 public:
  ModuleHandle LoadModule(const PathString& file) override {
    if (file.find(L'\\') != PathString::npos) return FakePlatform::LoadModule(file);
    load_attempts.push_back(file);
    std::size_t start = 0;
    while (search_path_set && start <= search_path.size()) {
      std::size_t end = search_path.find(L';', start);
      if (end == PathString::npos) end = search_path.size();
      const PathString folder = search_path.substr(start, end - start);
      auto it = modules.find(folder + L"\\" + file);
      if (!folder.empty() && it != modules.end()) {
        ++loaded;
        return &it->second;
      }
      start = end + 1;
    }
    return nullptr;
  }
};

class AccelLoaderWin32Test : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = g_accel;
    g_accel = AccelState{};
    platform_.host_path = L"C:\\Player\\bin\\host.exe";
  }
  void TearDown() override { g_accel = saved_; }

  void InstallModules(void* (*mem_entry)(), void* (*vid_entry)()) {
    platform_.directories.insert(kCore);
    platform_.directories.insert(kX86);
    platform_.modules[kX86 + L"\\VelaMem.dll"].symbols["VLM_GetAPIStuPtr"] =
        reinterpret_cast<void*>(mem_entry);
    platform_.modules[kX86 + L"\\VelaVid.dll"].symbols["VLV_GetAPIStuPtr"] =
        reinterpret_cast<void*>(vid_entry);
  }

  ModuleHandle Handle(const PathString& path) { return &platform_.modules[path]; }

  PathSearchingPlatform platform_;
  AccelState saved_;
};

TEST_F(AccelLoaderWin32Test, FindsBothModulesThroughPath) {
  InstallModules(ReturnTableA, ReturnTableB);
  platform_.search_path_set = true;
  platform_.search_path = L"C:\\Windows\\system32";
  LoadAccelerationModules(platform_);
  EXPECT_EQ(g_accel.vela_mem_api, g_table_a);
  EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);
  EXPECT_EQ(g_accel.module_handle, Handle(kX86 + L"\\VelaVid.dll"));
  EXPECT_EQ(platform_.search_path,
            L"C:\\Windows\\system32;" + kCore + L";" + kX86 + L";");
  // VelaMem: default search, then again with the folders on Path. VelaVid
  // is found by the default search at once, since Path now lists x86.
  EXPECT_EQ(platform_.load_attempts,
            (std::vector<PathString>{L"VelaMem.dll", L"VelaMem.dll", L"VelaVid.dll"}));
}

TEST_F(AccelLoaderWin32Test, PathGainsEachFolderOnce) {
  struct Case {
    const char* what;
    bool set;
    PathString before;
    PathString after;
  };
  const Case cases[] = {
      {"unset", false, L"", L";" + kCore + L";" + kX86 + L";"},
      {"empty", true, L"", L";" + kCore + L";" + kX86 + L";"},
      // The ';' appended before the test lets a folder that is already
      // last match as a whole entry.
      {"CoreDLL last", true, L"C:\\W;" + kCore, L"C:\\W;" + kCore + L";" + kX86 + L";"},
      // Found by the default search: Path is not touched at all.
      {"both present", true, kCore + L";" + kX86 + L";C:\\W",
       kCore + L";" + kX86 + L";C:\\W"},
      // A value ending in ';' still gets its one ';' appended: the empty
      // entry is kept as the loader has always written it.
      {"trailing separator", true, L"C:\\W;", L"C:\\W;;" + kCore + L";" + kX86 + L";"},
      // A longer folder name holding ours is not ours.
      {"prefix only", true, kCore + L"Old;", kCore + L"Old;;" + kCore + L";" + kX86 + L";"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g_accel = AccelState{};
    platform_ = PathSearchingPlatform{};
    platform_.host_path = L"C:\\Player\\bin\\host.exe";
    InstallModules(ReturnTableA, ReturnTableB);
    platform_.search_path_set = c.set;
    platform_.search_path = c.before;
    LoadAccelerationModules(platform_);
    EXPECT_EQ(platform_.search_path, c.after);
    EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);
  }
}

TEST_F(AccelLoaderWin32Test, NullTableUnloadsVelaMem) {
  InstallModules(ReturnNullTable, ReturnTableB);
  LoadAccelerationModules(platform_);
  EXPECT_EQ(g_accel.vela_mem_api, nullptr);
  EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);
  EXPECT_EQ(platform_.unloaded, 1);
}

TEST_F(AccelLoaderWin32Test, FullPathIsNeverOverrun) {
  // No room left for the folders: the value stays within the loader's
  // buffer and the modules are simply not found.
  InstallModules(ReturnTableA, ReturnTableB);
  platform_.search_path_set = true;
  platform_.search_path = PathString(4090, L'a');
  LoadAccelerationModules(platform_);
  EXPECT_LE(platform_.search_path.size(), 4095u);
  EXPECT_EQ(g_accel.vela_vid_api, nullptr);
  EXPECT_EQ(g_accel.module_handle, nullptr);
}


}  // namespace
}  // namespace qbo::test

#endif  // _WIN32
