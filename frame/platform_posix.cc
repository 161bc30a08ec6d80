// POSIX implementation of the platform layer.
#if !defined(_WIN32)

#include <dirent.h>
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "frame/no_destroy.h"
#include "frame/platform.h"

namespace qbo {
namespace {

constexpr char kSearchPathVariable[] = "LD_LIBRARY_PATH";

class PosixPlatform final : public Platform {
 public:
  PathString HostExecutablePath() override {
    char buf[4096];
    ssize_t n = readlink("/proc/self/exe", buf, sizeof(buf) - 1);
    if (n <= 0) return {};
    return PathString(buf, static_cast<std::size_t>(n));
  }

  ModuleHandle LoadModule(const PathString& file) override {
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  }

  void UnloadModule(ModuleHandle module) override {
    if (module) dlclose(module);
  }

  void* FindSymbol(ModuleHandle module, const char* name) override {
    return module ? dlsym(module, name) : nullptr;
  }

  bool GetSearchPath(PathString* value) override {
    const char* v = std::getenv(kSearchPathVariable);
    if (!v) {
      value->clear();
      return false;
    }
    *value = v;
    return true;
  }

  bool SetSearchPath(const PathString& value) override {
    return setenv(kSearchPathVariable, value.c_str(), 1) == 0;
  }

  bool IsDirectory(const PathString& path) override {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
  }

  std::vector<DirEntry> ListDirectory(const PathString& folder) override {
    std::vector<DirEntry> entries;
    DIR* dir = opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return entries;
    while (dirent* e = readdir(dir)) {
      DirEntry entry;
      entry.name = e->d_name;
      entry.is_directory = IsDirectory(folder + "/" + entry.name);
      entries.push_back(std::move(entry));
    }
    closedir(dir);
    return entries;
  }

  void* AllocPages(std::size_t bytes) override {
    if (bytes == 0) return nullptr;
    // Remember the mapping size in front of the block so FreePages needs
    // only the pointer, as VirtualFree does.
    std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    if (bytes > SIZE_MAX - page) return nullptr;
    std::size_t total = bytes + page;
    void* p = mmap(nullptr, total, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) return nullptr;
    *static_cast<std::size_t*>(p) = total;
    return static_cast<char*>(p) + page;
  }

  bool FreePages(void* pages) override {
    if (!pages) return false;
    std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    char* base = static_cast<char*>(pages) - page;
    return munmap(base, *reinterpret_cast<std::size_t*>(base)) == 0;
  }

  void* AlignedAlloc(std::size_t bytes, std::size_t alignment) override {
    void* p = nullptr;
    if (posix_memalign(&p, alignment, bytes) != 0) return nullptr;
    return p;
  }

  void AlignedFree(void* block) override { std::free(block); }

  void ShowMessage(const char* text) override {
    std::fprintf(stderr, "%s\n", text);
  }
};

}  // namespace

Platform& NativePlatform() {
  return NoDestroy<PosixPlatform>();
}

}  // namespace qbo

#endif  // !_WIN32
