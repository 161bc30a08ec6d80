// 32-bit calling contract of the library's exports, checked at the machine
// level: who pops the arguments (on Windows the header's QBO_CALLEE /
// QBO_CALLER, on Linux always the caller), the registers every caller
// expects back, and correct results when the caller's stack is only 4-byte
// aligned, as MSVC, Delphi and VB6 hosts leave it. The Linux build runs the
// same code generation as the DLL, so the library's own exports are
// checked there too; the Windows fixture DLL only on Windows.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>

#include "tests/windows/export_list.h"
#else
#include <dlfcn.h>
#endif

extern "C" int32_t QboCallWithStack(const void* fn, const uint32_t* args, int32_t argc,
                                    int32_t misalign, int32_t* report);

// Controls that show the thunk itself measures right.
extern "C" __attribute__((stdcall)) int32_t QboStdcallControl(int32_t a, int32_t b, int32_t c) {
  return a * 100 + b * 10 + c;
}
extern "C" __attribute__((cdecl)) int32_t QboCdeclControl(int32_t a, int32_t b, int32_t c) {
  return a * 100 + b * 10 + c;
}

namespace qbo::test {
namespace {

constexpr int32_t kMisalignments[] = {0, 4, 8, 12};

struct CallResult {
  int32_t value;
  int32_t esp_delta;
  bool registers_kept;
};

CallResult Call(const void* fn, const std::vector<uint32_t>& args, int32_t misalign) {
  int32_t report[2] = {-1, -1};
  const int32_t value = QboCallWithStack(fn, args.data(), static_cast<int32_t>(args.size()),
                                         misalign, report);
  return {value, report[0], report[1] == 1};
}

uint32_t Word(const void* p) { return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(p)); }

TEST(StackContract, ThunkMeasuresBothConventions) {
  struct Case {
    const char* name;
    const void* fn;
    int32_t expected_delta;
  };
  const Case cases[] = {
      {"stdcall", reinterpret_cast<const void*>(&QboStdcallControl), 0},
      {"cdecl", reinterpret_cast<const void*>(&QboCdeclControl), -12},
  };
  for (const Case& c : cases) {
    for (int32_t misalign : kMisalignments) {
      const CallResult r = Call(c.fn, {1, 2, 3}, misalign);
      EXPECT_EQ(r.value, 123) << c.name << " misalign " << misalign;
      EXPECT_EQ(r.esp_delta, c.expected_delta) << c.name << " misalign " << misalign;
      EXPECT_TRUE(r.registers_kept) << c.name;
    }
  }
}

// One export call with real buffers: the arguments, and a check of what
// the call did. Buffer sizes reach the SIMD rows and their tails.
struct ExportCall {
  const wchar_t* module;
  std::string name;
  std::function<std::vector<uint32_t>()> args;
  std::function<void(int32_t result)> check;
};

constexpr const wchar_t* kLibrary = L"QuillonBufferOperaU.dll";
constexpr const wchar_t* kFixture = L"qbo_exports_fixture.dll";

// Where an export is and how far a call moves esp: 0 when the callee pops
// its arguments, -4 per argument word when the caller does.
struct Entry {
  const void* fn;
  int32_t expected_delta;
};

#if defined(_WIN32)
Entry Lookup(const wchar_t* module, const std::string& name, std::size_t words) {
  const std::vector<ExportInfo>& list = module == kLibrary ? ExportList() : FixtureExportList();
  for (const ExportInfo& e : list) {
    if (e.name != name) continue;
    EXPECT_EQ(static_cast<std::size_t>(e.arg_count), words) << name;
    HMODULE dll = GetModuleHandleW(module);
    return {dll ? reinterpret_cast<const void*>(GetProcAddress(dll, name.c_str())) : nullptr,
            e.callee_pops ? 0 : -4 * e.arg_count};
  }
  ADD_FAILURE() << name << " is no longer declared";
  return {nullptr, 0};
}
#else
// The library as a host loads it.
Entry Lookup(const wchar_t*, const std::string& name, std::size_t words) {
  static void* const library = dlopen(QBO_LIBRARY_PATH, RTLD_NOW);
  return {library ? dlsym(library, name.c_str()) : nullptr, -4 * static_cast<int32_t>(words)};
}
#endif

class ExportCalls {
 public:
  ExportCalls() : words_(1031), src_(4099), dst_(4099), image_(4 * 37 * 5) {}

  std::vector<ExportCall> All() {
    return {
        {kLibrary, "QN_MemsetDWORD",
         [this] {
           std::fill(words_.begin(), words_.end(), 0u);
           return std::vector<uint32_t>{Word(words_.data()), 0xC0FFEE01u, 1030};
         },
         [this](int32_t result) {
           EXPECT_EQ(result, 1);
           EXPECT_EQ(words_[0], 0xC0FFEE01u);
           EXPECT_EQ(words_[1029], 0xC0FFEE01u);
           EXPECT_EQ(words_[1030], 0u);
         }},
        {kLibrary, "QN_Memcpy",
         [this] {
           for (std::size_t i = 0; i < src_.size(); ++i) src_[i] = static_cast<uint8_t>(i * 7);
           std::fill(dst_.begin(), dst_.end(), 0);
           return std::vector<uint32_t>{Word(dst_.data() + 1), Word(src_.data() + 3), 4093};
         },
         [this](int32_t result) {
           EXPECT_EQ(static_cast<uint32_t>(result), Word(dst_.data() + 1));
           EXPECT_EQ(std::memcmp(dst_.data() + 1, src_.data() + 3, 4093), 0);
           EXPECT_EQ(dst_[0], 0);
           EXPECT_EQ(dst_[4094], 0);
         }},
        {kLibrary, "QN_Clear",
         [this] {
           std::fill(image_.begin(), image_.end(), 0);
           // 37-pixel rows, columns 2..34 of rows 1..3 (bottom is inclusive).
           return std::vector<uint32_t>{Word(image_.data()), 4 * 37, 2, 1, 33, 3, 0x11223344u};
         },
         [this](int32_t result) {
           EXPECT_EQ(static_cast<uint32_t>(result), Word(image_.data()));
           uint32_t px;
           std::memcpy(&px, &image_[4 * (37 * 3 + 34)], 4);
           EXPECT_EQ(px, 0x11223344u);
           std::memcpy(&px, &image_[4 * (37 * 4 + 34)], 4);
           EXPECT_EQ(px, 0u);
           std::memcpy(&px, &image_[4 * (37 * 1 + 1)], 4);
           EXPECT_EQ(px, 0u);
         }},
        {kLibrary, "QN_OverTurnSelf",
         [this] {
           for (std::size_t i = 0; i < image_.size(); ++i) image_[i] = static_cast<uint8_t>(i / 148);
           return std::vector<uint32_t>{Word(image_.data()), 148, 5};
         },
         [this](int32_t result) {
           EXPECT_EQ(result, 1);
           EXPECT_EQ(image_[0], 4);
           EXPECT_EQ(image_[147], 4);
           EXPECT_EQ(image_[148 * 2], 2);
           EXPECT_EQ(image_[148 * 4 + 5], 0);
         }},
        {kLibrary, "QN_ColorMixLine", [] { return std::vector<uint32_t>{0, 0, 0}; },
         [](int32_t result) { EXPECT_EQ(result, 1); }},
        {kLibrary, "QN_CalMask", [] { return std::vector<uint32_t>(10, 0u); }, [](int32_t) {}},
#if defined(_WIN32)
        // The fixture DLL: caller-pops entries and second names of both
        // conventions, through the same export machinery.
        {kFixture, "FxStdWeigh3", [] { return std::vector<uint32_t>{1, 2, 3}; },
         [](int32_t result) { EXPECT_EQ(result, 321); }},
        {kFixture, "FxStdWeigh3Again", [] { return std::vector<uint32_t>{3, 2, 1}; },
         [](int32_t result) { EXPECT_EQ(result, 123); }},
        {kFixture, "FxStdNone", [] { return std::vector<uint32_t>{}; },
         [](int32_t result) { EXPECT_EQ(result, 42); }},
        {kFixture, "FxCdeclDiff2", [] { return std::vector<uint32_t>{9, 4}; },
         [](int32_t result) { EXPECT_EQ(result, 5); }},
        {kFixture, "FxCdeclDiff2Again", [] { return std::vector<uint32_t>{4, 9}; },
         [](int32_t result) { EXPECT_EQ(result, -5); }},
#endif
    };
  }

 private:
  std::vector<uint32_t> words_;
  std::vector<uint8_t> src_, dst_, image_;
};

TEST(StackContract, ExportsPopAsDeclaredAndRunOnMisalignedStacks) {
  ExportCalls calls;
  for (const ExportCall& call : calls.All()) {
    const Entry entry = Lookup(call.module, call.name, call.args().size());
    ASSERT_NE(entry.fn, nullptr) << call.name;
    for (int32_t misalign : kMisalignments) {
      SCOPED_TRACE(call.name + " misaligned by " + std::to_string(misalign));
      const std::vector<uint32_t> args = call.args();
      const CallResult r = Call(entry.fn, args, misalign);
      EXPECT_EQ(r.esp_delta, entry.expected_delta);
      EXPECT_TRUE(r.registers_kept);
      call.check(r.value);
    }
  }
}

}  // namespace
}  // namespace qbo::test
