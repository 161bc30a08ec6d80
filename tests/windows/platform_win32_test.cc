// The Win32 platform layer against the real file system, environment,
// loader and memory manager (under wine in cross builds).
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/platform.h"

namespace qbo::test {
namespace {

std::wstring Widen(const char* s) { return std::wstring(s, s + std::char_traits<char>::length(s)); }

// A fresh folder under the temp directory holding sub\ and file.txt.
class Win32PlatformTest : public ::testing::Test {
 protected:
  void SetUp() override {
    wchar_t temp[MAX_PATH];
    const DWORD n = GetTempPathW(MAX_PATH, temp);
    ASSERT_GT(n, 0u);
    root_ = std::wstring(temp, n) + L"qbo_platform_" + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(CreateDirectoryW(root_.c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW((root_ + L"\\sub").c_str(), nullptr));
    HANDLE f = CreateFileW((root_ + L"\\file.txt").c_str(), GENERIC_WRITE, 0, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(f, INVALID_HANDLE_VALUE);
    CloseHandle(f);
  }
  void TearDown() override {
    DeleteFileW((root_ + L"\\file.txt").c_str());
    RemoveDirectoryW((root_ + L"\\sub").c_str());
    RemoveDirectoryW(root_.c_str());
  }

  Platform& platform_ = NativePlatform();
  std::wstring root_;
};

TEST_F(Win32PlatformTest, HostPathIsThisProgram) {
  const PathString path = platform_.HostExecutablePath();
  wchar_t buf[MAX_PATH];
  EXPECT_EQ(path, std::wstring(buf, GetModuleFileNameW(nullptr, buf, MAX_PATH)));
  ASSERT_GE(path.size(), 4u);
  EXPECT_EQ(_wcsicmp(path.substr(path.size() - 4).c_str(), L".exe"), 0);
  EXPECT_GE(std::count(path.begin(), path.end(), L'\\'), 2);
}

TEST_F(Win32PlatformTest, SearchPathRoundTripsAndReportsAbsence) {
  PathString saved;
  const bool was_set = platform_.GetSearchPath(&saved);
  ASSERT_TRUE(was_set) << "a Windows process always has Path";

  struct Case {
    PathString value;
  };
  // Empty, ordinary, and longer than the loader's own 4,095-character
  // buffer: the platform hands back all of it.
  const Case cases[] = {{L""}, {L"C:\\a;C:\\b;"}, {PathString(5000, L'x') + L";"}};
  for (const Case& c : cases) {
    ASSERT_TRUE(platform_.SetSearchPath(c.value));
    PathString read;
    EXPECT_TRUE(platform_.GetSearchPath(&read));
    EXPECT_EQ(read, c.value) << "length " << c.value.size();
  }

  ASSERT_TRUE(SetEnvironmentVariableW(L"Path", nullptr));
  PathString read = L"stale";
  EXPECT_FALSE(platform_.GetSearchPath(&read));
  EXPECT_TRUE(read.empty());
  ASSERT_TRUE(platform_.SetSearchPath(saved));
}

TEST_F(Win32PlatformTest, PagesAreReadWriteAndReleased) {
  for (std::size_t bytes : {std::size_t{1}, std::size_t{4096}, std::size_t{3 << 20}}) {
    auto* p = static_cast<unsigned char*>(platform_.AllocPages(bytes));
    ASSERT_NE(p, nullptr) << bytes;
    p[0] = 1;
    p[bytes - 1] = 2;
    MEMORY_BASIC_INFORMATION info;
    ASSERT_NE(VirtualQuery(p, &info, sizeof(info)), 0u);
    EXPECT_EQ(info.Protect, static_cast<DWORD>(PAGE_READWRITE)) << "data pages, never executable";
    EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 4096, 0u);
    EXPECT_TRUE(platform_.FreePages(p));
  }
  EXPECT_FALSE(platform_.FreePages(nullptr));
}

TEST_F(Win32PlatformTest, ModulesLoadResolveAndUnload) {
  const PathString path = Widen(QBO_FAKE_VELA_VID_PATH);
  ModuleHandle module = platform_.LoadModule(path);
  ASSERT_NE(module, nullptr);
  EXPECT_NE(platform_.FindSymbol(module, "VLV_GetAPIStuPtr"), nullptr);
  EXPECT_EQ(platform_.FindSymbol(module, "VLM_GetAPIStuPtr"), nullptr);
  EXPECT_EQ(platform_.FindSymbol(nullptr, "VLV_GetAPIStuPtr"), nullptr);
  EXPECT_EQ(GetModuleHandleW(L"VelaVid.dll"), module);
  platform_.UnloadModule(module);
  EXPECT_EQ(GetModuleHandleW(L"VelaVid.dll"), nullptr);
  platform_.UnloadModule(nullptr);

  EXPECT_EQ(platform_.LoadModule(root_ + L"\\missing.dll"), nullptr);
  EXPECT_EQ(platform_.LoadModule(L"NoSuchModuleAnywhere.dll"), nullptr);
}


}  // namespace
}  // namespace qbo::test
