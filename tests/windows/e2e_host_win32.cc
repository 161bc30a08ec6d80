// A Windows host laid out as the player installs it: <root>\bin\host.exe,
// the modules under <root>\dll\CoreDLL\CPURelease\x86. It loads the DLL
// like the player does and checks that the DLL's attach found both fake
// modules by extending Path, once per folder, and that detach released
// VelaVid only.
//
// usage: host.exe DLL [--vela-mem-null]
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
  std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
  if (!ok) ++g_failures;
}

std::wstring ReadPath() {
  const DWORD n = GetEnvironmentVariableW(L"Path", nullptr, 0);
  if (n == 0) return {};
  std::wstring value(n, L'\0');
  const DWORD got = GetEnvironmentVariableW(L"Path", value.data(), n);
  value.resize(got);
  return value;
}

std::wstring Widen(const char* s) {
  const int n = MultiByteToWideChar(CP_ACP, 0, s, -1, nullptr, 0);
  std::wstring out(n > 0 ? n - 1 : 0, L'\0');
  if (n > 1) MultiByteToWideChar(CP_ACP, 0, s, -1, out.data(), n);
  return out;
}

std::string Narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out.push_back(c < 128 ? static_cast<char>(c) : '?');
  return out;
}

// <root> from this program's own path <root>\bin\host.exe.
std::wstring Root() {
  wchar_t buf[MAX_PATH];
  std::wstring path(buf, GetModuleFileNameW(nullptr, buf, MAX_PATH));
  path.resize(path.rfind(L'\\'));
  path.resize(path.rfind(L'\\'));
  return path;
}

// Asks a loaded module (without taking a reference) how often its entry
// point ran; -1 when it is not loaded.
int ApiCalls(const wchar_t* module) {
  HMODULE h = GetModuleHandleW(module);
  if (!h) return -1;
  auto fn = reinterpret_cast<int (*)()>(
      reinterpret_cast<void*>(GetProcAddress(h, "FakeVela_ApiCalls")));
  return fn ? fn() : -1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s DLL [--vela-mem-null]\n", argv[0]);
    return 2;
  }
  const std::wstring library = Widen(argv[1]);
  const bool mem_null = argc > 2 && std::strcmp(argv[2], "--vela-mem-null") == 0;
  if (mem_null) {
    // Through the C runtime so the fake modules' getenv sees it too.
    _putenv("FAKE_VELA_NULL_TABLE=VelaMem");
  }
  const std::wstring before = ReadPath();
  const std::wstring core = Root() + L"\\dll\\CoreDLL";
  const std::wstring x86 = core + L"\\CPURelease\\x86";
  Check(before.find(core) == std::wstring::npos, "Path does not hold the module folders yet");

  Check(!GetModuleHandleW(L"VelaMem.dll") && !GetModuleHandleW(L"VelaVid.dll"),
        "no module loaded before the DLL");
  HMODULE lib = LoadLibraryW(library.c_str());
  Check(lib != nullptr, "DLL loads");
  if (!lib) {
    std::fprintf(stderr, "LoadLibraryW(%s) failed: %lu\n", argv[1], GetLastError());
    return 1;
  }

  // The value read gains one ';', then each folder with its own ';'.
  const std::wstring after = ReadPath();
  std::printf("Path after attach: %s\n", Narrow(after).c_str());
  Check(after == before + L";" + core + L";" + x86 + L";",
        "Path gains CoreDLL and CoreDLL\\CPURelease\\x86, once each");

  Check(mem_null || ApiCalls(L"VelaMem.dll") == 1, "VelaMem entry point called once");
  Check(ApiCalls(L"VelaVid.dll") == 1, "VelaVid entry point called once");
  Check(GetModuleHandleW(L"VelaVid.dll") != nullptr, "VelaVid kept loaded");
  Check((GetModuleHandleW(L"VelaMem.dll") != nullptr) == !mem_null,
        mem_null ? "VelaMem with a null table unloaded" : "VelaMem kept loaded");
  wchar_t found[MAX_PATH];
  const DWORD n = GetModuleFileNameW(GetModuleHandleW(L"VelaVid.dll"), found, MAX_PATH);
  Check(_wcsicmp(std::wstring(found, n).c_str(), (x86 + L"\\VelaVid.dll").c_str()) == 0,
        "VelaVid came from CoreDLL\\CPURelease\\x86");

  auto memset_dword = reinterpret_cast<int32_t(WINAPI*)(void*, uint32_t, int32_t)>(
      reinterpret_cast<void*>(GetProcAddress(lib, "QN_MemsetDWORD")));
  uint32_t words[3] = {0, 0, 0};
  Check(memset_dword && memset_dword(words, 0xDEADBEEF, 2) == 1 && words[1] == 0xDEADBEEF &&
            words[2] == 0,
        "an export runs");

  FreeLibrary(lib);
  Check(GetModuleHandleW(library.c_str()) == nullptr, "DLL unloaded");
  Check(GetModuleHandleW(L"VelaVid.dll") == nullptr, "detach released VelaVid");
  Check((GetModuleHandleW(L"VelaMem.dll") != nullptr) == !mem_null,
        "detach left VelaMem as it was");
  Check(ReadPath() == after, "the Path change stays in the process");
  return g_failures == 0 ? 0 : 1;
}
