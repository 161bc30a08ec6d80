// The acceleration loader against a scripted file system and loader.
#include <gtest/gtest.h>

#include "frame/accel.h"
#include "tests/support/fake_platform.h"

// The scripted paths use the POSIX separators and module names.
#if !defined(_WIN32)

namespace qbo::test {
namespace {

const PathString kRoot = QBO_PATH("/opt/player/dll");
const PathString kCore = QBO_PATH("/opt/player/dll/CoreDLL");
const PathString kX86 = QBO_PATH("/opt/player/dll/CoreDLL/CPURelease/x86");

class AccelLoaderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = g_accel;
    g_accel = AccelState{};
    platform_.host_path = QBO_PATH("/opt/player/bin/host");
  }
  void TearDown() override { g_accel = saved_; }

  // Installs the modules where the player keeps them.
  void InstallModules(void* (*mem_entry)(), void* (*vid_entry)()) {
    platform_.directories.insert(kCore);
    platform_.directories.insert(kX86);
    platform_.modules[kX86 + QBO_PATH("/libVelaMem.so")].symbols["VLM_GetAPIStuPtr"] =
        reinterpret_cast<void*>(mem_entry);
    platform_.modules[kX86 + QBO_PATH("/libVelaVid.so")].symbols["VLV_GetAPIStuPtr"] =
        reinterpret_cast<void*>(vid_entry);
  }

  ModuleHandle Handle(const PathString& path) { return &platform_.modules[path]; }

  FakePlatform platform_;
  AccelState saved_;
};

TEST_F(AccelLoaderTest, FindsBothModulesBelowCoreDll) {
  InstallModules(ReturnTableA, ReturnTableB);
  LoadAccelerationModules(platform_);
  EXPECT_EQ(g_accel.vela_mem_api, g_table_a);
  EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);
  // Only VelaVid's handle is kept.
  EXPECT_EQ(g_accel.module_handle, Handle(kX86 + QBO_PATH("/libVelaVid.so")));
  EXPECT_EQ(platform_.search_path, kCore + QBO_PATH(":") + kX86);
  // Per module: bare name, bare name again after the path change, then the
  // added folders by full path, in order.
  EXPECT_EQ(platform_.load_attempts,
            (std::vector<PathString>{
                QBO_PATH("libVelaMem.so"), QBO_PATH("libVelaMem.so"),
                kCore + QBO_PATH("/libVelaMem.so"), kX86 + QBO_PATH("/libVelaMem.so"),
                QBO_PATH("libVelaVid.so"), QBO_PATH("libVelaVid.so"),
                kCore + QBO_PATH("/libVelaVid.so"), kX86 + QBO_PATH("/libVelaVid.so")}));
}

TEST_F(AccelLoaderTest, SearchPathGainsEachFolderOnce) {
  InstallModules(ReturnTableA, ReturnTableB);
  platform_.search_path_set = true;
  platform_.search_path = QBO_PATH("/usr/lib:") + kCore;
  LoadAccelerationModules(platform_);
  // The folder already last in the variable is matched as a whole entry and
  // not added again; no empty entry (the current directory) ever appears.
  EXPECT_EQ(platform_.search_path, QBO_PATH("/usr/lib:") + kCore + QBO_PATH(":") + kX86);
}

TEST_F(AccelLoaderTest, NullTableUnloadsTheModule) {
  InstallModules(ReturnNullTable, ReturnTableB);
  LoadAccelerationModules(platform_);
  EXPECT_EQ(g_accel.vela_mem_api, nullptr);
  EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);
  EXPECT_EQ(platform_.unloaded, 1);
}

TEST_F(AccelLoaderTest, MissingEntryPointUnloads) {
  InstallModules(ReturnTableA, ReturnTableB);
  platform_.modules[kX86 + QBO_PATH("/libVelaMem.so")].symbols.clear();
  const PathString sub[] = {QBO_PATH("CPURelease")};
  void* table = g_table_b;
  EXPECT_EQ(FindAndLoadModule(platform_, kRoot, sub, 1, "VelaMem", "VLM_GetAPIStuPtr", &table),
            nullptr);
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(platform_.unloaded, 1);
}

TEST_F(AccelLoaderTest, WithoutRootSearchesBesideAndBelowTheHostFolder) {
  // Host at /opt/player/bin/host: the base folder is /opt/; CoreDLL is not
  // directly there, so its sub-folders are tried in enumeration order.
  const PathString base = QBO_PATH("/opt/");
  platform_.listings[base] = {{QBO_PATH("."), true},
                              {QBO_PATH("readme"), false},
                              {QBO_PATH("other"), true},
                              {QBO_PATH("player"), true}};
  platform_.directories.insert(QBO_PATH("/opt/player/CoreDLL"));
  platform_.directories.insert(QBO_PATH("/opt/readme/CoreDLL"));  // not a directory entry
  const PathString module = QBO_PATH("/opt/player/CoreDLL/CPURelease/x86/libVelaVid.so");
  platform_.modules[module].symbols["VLV_GetAPIStuPtr"] = reinterpret_cast<void*>(ReturnTableB);
  const PathString sub[] = {QBO_PATH("CPURelease")};
  void* table = nullptr;
  EXPECT_EQ(FindAndLoadModule(platform_, PathString(), sub, 1, "VelaVid", "VLV_GetAPIStuPtr",
                              &table),
            Handle(module));
  EXPECT_EQ(table, g_table_b);
  EXPECT_EQ(platform_.search_path,
            QBO_PATH("/opt/player/CoreDLL:/opt/player/CoreDLL/CPURelease/x86"));
}

TEST_F(AccelLoaderTest, LongSearchPathIsNeverOverrun) {
  InstallModules(ReturnTableA, ReturnTableB);
  platform_.search_path_set = true;
  platform_.search_path = PathString(4080, QBO_PATH('a'));
  LoadAccelerationModules(platform_);
  EXPECT_LE(platform_.search_path.size(), 4095u);
  // The explicit folder tries still find the modules.
  EXPECT_EQ(static_cast<void*>(g_accel.vela_vid_api), g_table_b);

  // A value already longer than the buffer is never cut and written back.
  const PathString huge(5000, QBO_PATH('b'));
  platform_.search_path = huge;
  LoadAccelerationModules(platform_);
  EXPECT_EQ(platform_.search_path, huge);
}


}  // namespace
}  // namespace qbo::test

#endif  // !_WIN32
