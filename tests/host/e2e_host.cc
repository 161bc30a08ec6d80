// A host laid out as the player installs it: <root>/bin/host, the modules
// under <root>/dll/CoreDLL/CPURelease/x86. It loads the library like the
// player does and checks that attach found both acceleration modules by
// extending the search-path variable once per folder, and that detach
// releases VelaVid only.
//
// usage: host LIBRARY [--vela-mem-null]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
  std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
  if (!ok) ++g_failures;
}

// The few loader and environment calls the checks need, per platform.
#if defined(_WIN32)
using Library = HMODULE;
using MemsetFn = int32_t(WINAPI*)(void*, uint32_t, int32_t);
const char kSep = '\\';
const char* const kVar = "Path";
const char* const kMem = "VelaMem.dll";
const char* const kVid = "VelaVid.dll";
std::wstring Wide(const std::string& s) { return std::wstring(s.begin(), s.end()); }
std::string SelfPath() {
  char buf[MAX_PATH];
  return std::string(buf, GetModuleFileNameA(nullptr, buf, MAX_PATH));
}
std::string ReadVar() {
  const DWORD n = GetEnvironmentVariableA(kVar, nullptr, 0);
  std::string value(n, '\0');
  value.resize(n ? GetEnvironmentVariableA(kVar, value.data(), n) : 0);
  return value;
}
// The library adds one ';' after the value read, then each folder with its own.
std::string Extended(const std::string& before, const std::string& core, const std::string& x86) {
  return before + ";" + core + ";" + x86 + ";";
}
void AskForNullVelaMemTable() { _putenv("FAKE_VELA_NULL_TABLE=VelaMem"); }
Library Load(const std::string& path) { return LoadLibraryW(Wide(path).c_str()); }
void Unload(Library lib) { FreeLibrary(lib); }
void* Symbol(Library lib, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(lib, name));
}
// The module loaded from exactly `path`, without taking a reference.
Library Loaded(const std::string& path) { return GetModuleHandleW(Wide(path).c_str()); }
#else
using Library = void*;
using MemsetFn = int32_t (*)(void*, uint32_t, int32_t);
const char kSep = '/';
const char* const kVar = "LD_LIBRARY_PATH";
const char* const kMem = "libVelaMem.so";
const char* const kVid = "libVelaVid.so";
std::string SelfPath() {
  char buf[4096];
  const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf);
  return std::string(buf, n > 0 ? static_cast<std::size_t>(n) : 0);
}
std::string ReadVar() {
  const char* value = std::getenv(kVar);
  return value ? value : "";
}
// Unset before the load, so the value is exactly the two folders.
std::string Extended(const std::string&, const std::string& core, const std::string& x86) {
  return core + ":" + x86;
}
void AskForNullVelaMemTable() { setenv("FAKE_VELA_NULL_TABLE", "VelaMem", 1); }
Library Load(const std::string& path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }
void Unload(Library lib) { dlclose(lib); }
void* Symbol(Library lib, const char* name) { return dlsym(lib, name); }
Library Loaded(const std::string& path) {
  void* h = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (h) dlclose(h);  // still mapped: the library holds its own reference
  return h;
}
#endif

std::string Folder(const std::string& path) { return path.substr(0, path.rfind(kSep)); }

// How often a loaded fake module's entry point ran; -1 when not loaded.
int ApiCalls(const std::string& path) {
  Library h = Loaded(path);
  auto fn = h ? reinterpret_cast<int (*)()>(Symbol(h, "FakeVela_ApiCalls")) : nullptr;
  return fn ? fn() : -1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s LIBRARY [--vela-mem-null]\n", argv[0]);
    return 2;
  }
  const bool mem_null = argc > 2 && std::strcmp(argv[2], "--vela-mem-null") == 0;
  if (mem_null) AskForNullVelaMemTable();
#if !defined(_WIN32)
  unsetenv(kVar);  // a search path that cannot find the modules by name
#endif
  const std::string sep(1, kSep);
  const std::string core = Folder(Folder(SelfPath())) + sep + "dll" + sep + "CoreDLL";
  const std::string x86 = core + sep + "CPURelease" + sep + "x86";
  const std::string mem = x86 + sep + kMem, vid = x86 + sep + kVid;
  const std::string before = ReadVar();
  Check(before.find(core) == std::string::npos, "the search path lacks the module folders");
  Check(!Loaded(mem) && !Loaded(vid), "no module loaded before the library");

  Library lib = Load(argv[1]);
  Check(lib != nullptr, "library loads");
  if (!lib) return 1;
  const std::string after = ReadVar();
  std::printf("%s after attach: %s\n", kVar, after.c_str());
  Check(after == Extended(before, core, x86),
        "the search path gains CoreDLL and CoreDLL/CPURelease/x86, once each");
  // A VelaMem unloaded for its null table cannot be asked.
  Check(mem_null || ApiCalls(mem) == 1, "VelaMem entry point called once");
  Check(ApiCalls(vid) == 1, "VelaVid entry point called once, loaded from x86");
  Check((Loaded(mem) != nullptr) == !mem_null,
        mem_null ? "VelaMem with a null table unloaded" : "VelaMem kept loaded");

  auto memset_dword = reinterpret_cast<MemsetFn>(Symbol(lib, "QN_MemsetDWORD"));
  uint32_t words[3] = {0, 0, 0};
  Check(memset_dword && memset_dword(words, 0xDEADBEEF, 2) == 1 && words[1] == 0xDEADBEEF &&
            words[2] == 0,
        "an export runs");

  Unload(lib);
  Check(!Loaded(argv[1]), "library unloaded");
  Check(!Loaded(vid), "detach released VelaVid");
  Check((Loaded(mem) != nullptr) == !mem_null, "detach left VelaMem as it was");
  Check(ReadVar() == after, "the search path change stays in the process");
  return g_failures == 0 ? 0 : 1;
}
