// Attach and detach, step by step, through the scripted platform.
#include <gtest/gtest.h>

#include <cstring>

#include "frame/accel.h"
#include "frame/attach.h"
#include "frame/coef_block.h"
#include "frame/lookup_tables.h"
#include "tests/support/fake_platform.h"

namespace qbo::test {
namespace {

// A host installed as the player is, and the module file the loader asks
// for first, in the platform's own spelling.
#if defined(_WIN32)
const PathString kHostPath = L"C:\\player\\bin\\host.exe";
const char kVelaMemFile[] = "VelaMem.dll";
#else
const PathString kHostPath = "/opt/player/bin/host";
const char kVelaMemFile[] = "libVelaMem.so";
#endif

// Every test starts from a library that was never attached and leaves it
// attached natively again for the other tests.
class AttachTest : public ::testing::Test {
 protected:
  void SetUp() override {
    FreeLookupTables(NativePlatform());
    g_accel = AccelState{};
    platform_.host_path = kHostPath;
  }
  void TearDown() override {
    g_accel = AccelState{};
    FreeLookupTables(NativePlatform());
    ASSERT_TRUE(LibraryAttach(NativePlatform(), DefaultFramework(), nullptr));
  }

  FakePlatform platform_;
  FakeFramework framework_;
};

TEST_F(AttachTest, AttachRunsItsStepsInOrderAndSucceeds) {
  int instance = 0;
  ASSERT_TRUE(LibraryEntry(platform_, framework_, &instance, kProcessAttach));
  EXPECT_EQ(framework_.instance_seen, &instance);
  EXPECT_EQ(framework_.log, (std::vector<std::string>{"init", "create"}));
  // Table, temporary reciprocal row (freed), InvByteTable, OverShareTable;
  // then the loader tries the default search for both modules.
  const std::vector<std::string> head(platform_.log.begin(), platform_.log.begin() + 5);
  EXPECT_EQ(head, (std::vector<std::string>{"alloc 262144", "alloc 1024", "free", "alloc 1024",
                                            "alloc 262144"}));
  EXPECT_EQ(platform_.log[5], std::string("load ") + kVelaMemFile + " -> fail");
  EXPECT_NE(g_tables.rcp_product, nullptr);
  EXPECT_NE(g_tables.inv_byte, nullptr);
  EXPECT_NE(g_tables.over_share, nullptr);
  EXPECT_EQ(g_accel.vela_vid_api, nullptr);
  EXPECT_EQ(g_accel.vela_mem_api, nullptr);
}

TEST_F(AttachTest, SecondAttachReusesTwoTablesAndRebuildsTheShareTable) {
  ASSERT_TRUE(LibraryAttach(platform_, framework_, nullptr));
  float* rcp = g_tables.rcp_product;
  float* inv = g_tables.inv_byte;
  platform_.log.clear();
  ASSERT_TRUE(LibraryAttach(platform_, framework_, nullptr));
  EXPECT_EQ(g_tables.rcp_product, rcp);
  EXPECT_EQ(g_tables.inv_byte, inv);
  // Only the temporary row and a fresh share table are allocated; the
  // replaced share table is freed, not lost.
  const std::vector<std::string> head(platform_.log.begin(), platform_.log.begin() + 4);
  EXPECT_EQ(head, (std::vector<std::string>{"alloc 1024", "free", "alloc 262144", "free"}));
}

TEST_F(AttachTest, DetachFreesTablesReleasesVelaVidAndUnregisters) {
  ASSERT_TRUE(LibraryAttach(platform_, framework_, nullptr));
  FakePlatform::Module vid;
  g_accel.module_handle = &vid;
  platform_.log.clear();
  framework_.log.clear();
  EXPECT_TRUE(LibraryEntry(platform_, framework_, nullptr, kProcessDetach));
  EXPECT_EQ(platform_.log, (std::vector<std::string>{"free", "free", "free"}));
  EXPECT_EQ(platform_.unloaded, 1);
  EXPECT_EQ(g_accel.module_handle, nullptr);
  EXPECT_EQ(g_tables.rcp_product, nullptr);
  EXPECT_EQ(g_tables.inv_byte, nullptr);
  EXPECT_EQ(g_tables.over_share, nullptr);
  EXPECT_EQ(framework_.log, std::vector<std::string>{"term"});
  EXPECT_EQ(platform_.live_aligned, 0);
}

TEST_F(AttachTest, CoefficientBlockIsRestoredAfterTheLoader) {
  // A module whose entry point scribbles on the block: the second fill
  // puts the vectors back.
  static auto scribble = []() -> void* {
    std::memset(&g_coef.BFromU601, 0x7F, sizeof(g_coef.BFromU601));
    std::memset(&g_coef.FloatGTerms709, 0x7F, sizeof(g_coef.FloatGTerms709));
    return g_table_a;
  };
  CsInitCoefficients();
  const CsCoefBlock expected = g_coef;
  const std::string file = kVelaMemFile;
  platform_.modules[PathString(file.begin(), file.end())].symbols["VLM_GetAPIStuPtr"] =
      reinterpret_cast<void*>(+scribble);
  ASSERT_TRUE(LibraryAttach(platform_, framework_, nullptr));
  EXPECT_EQ(g_accel.vela_mem_api, g_table_a);
  EXPECT_EQ(std::memcmp(&expected, &g_coef, sizeof(g_coef)), 0);
}


}  // namespace
}  // namespace qbo::test
