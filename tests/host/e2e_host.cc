// A host laid out as the player installs it (<root>/bin/host, modules under
// <root>/dll/CoreDLL/CPURelease/x86). It loads the library, checks that the
// library's attach found both acceleration modules through the folder
// search, and that detach releases VelaVid only.
//
// usage: host LIBRARY VELAMEM_PATH VELAVID_PATH [--vela-mem-null]
#include <dlfcn.h>

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

// Whether the module at `path` is loaded in this process, without keeping
// a reference to it.
bool IsLoaded(const char* path) {
  void* h = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (!h) return false;
  dlclose(h);
  return true;
}

int ApiCalls(const char* path) {
  void* h = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (!h) return -1;
  auto fn = reinterpret_cast<int (*)()>(dlsym(h, "FakeVela_ApiCalls"));
  const int n = fn ? fn() : -1;
  dlclose(h);
  return n;
}

std::string Folder(const char* path) {
  std::string s(path);
  return s.substr(0, s.rfind('/'));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: %s LIBRARY VELAMEM VELAVID [--vela-mem-null]\n", argv[0]);
    return 2;
  }
  const char* library = argv[1];
  const char* vela_mem = argv[2];
  const char* vela_vid = argv[3];
  const bool mem_null = argc > 4 && std::strcmp(argv[4], "--vela-mem-null") == 0;
  // Start from a search path that cannot find the modules by name.
  unsetenv("LD_LIBRARY_PATH");

  Check(!IsLoaded(vela_mem) && !IsLoaded(vela_vid), "no module loaded before the library");
  void* lib = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  Check(lib != nullptr, "library loads");
  if (!lib) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }

  const std::string x86 = Folder(vela_vid);
  const std::string core = Folder(Folder(x86.c_str()).c_str());
  const char* path_var = std::getenv("LD_LIBRARY_PATH");
  const std::string value = path_var ? path_var : "";
  std::printf("LD_LIBRARY_PATH after attach: %s\n", value.c_str());
  Check(value == core + ":" + x86,
        "search path gains CoreDLL and CoreDLL/CPURelease/x86, once each");

  // An unloaded VelaMem cannot be asked; its null table shows in the unload.
  Check(mem_null || ApiCalls(vela_mem) == 1, "VelaMem entry point called once");
  Check(ApiCalls(vela_vid) == 1, "VelaVid entry point called once");
  Check(IsLoaded(vela_vid), "VelaVid kept loaded");
  Check(IsLoaded(vela_mem) == !mem_null,
        mem_null ? "VelaMem with a null table unloaded" : "VelaMem kept loaded");

  auto memset_dword =
      reinterpret_cast<int32_t (*)(void*, uint32_t, int32_t)>(dlsym(lib, "QN_MemsetDWORD"));
  uint32_t words[3] = {0, 0, 0};
  Check(memset_dword && memset_dword(words, 0xDEADBEEF, 2) == 1 && words[1] == 0xDEADBEEF &&
            words[2] == 0,
        "an export runs");

  dlclose(lib);
  Check(!IsLoaded(library), "library unloaded");
  Check(!IsLoaded(vela_vid), "detach released VelaVid");
  Check(IsLoaded(vela_mem) == !mem_null, "detach left VelaMem as it was");
  return g_failures == 0 ? 0 : 1;
}
