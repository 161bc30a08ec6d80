// Win32 implementation of the platform layer.
#if defined(_WIN32)

#include <windows.h>

#include <malloc.h>

#include "frame/no_destroy.h"
#include "frame/platform.h"

namespace qbo {
namespace {

// The host path is read into a buffer of the platform's path limit; a
// longer path is reported as unknown rather than cut, which would name
// some other folder.
constexpr DWORD kMaxPath = MAX_PATH;

class Win32Platform final : public Platform {
 public:
  PathString HostExecutablePath() override {
    wchar_t buf[kMaxPath];
    DWORD n = GetModuleFileNameW(nullptr, buf, kMaxPath);
    if (n == 0 || n >= kMaxPath) return {};
    return PathString(buf, n);
  }

  ModuleHandle LoadModule(const PathString& file) override {
    return LoadLibraryW(file.c_str());
  }

  void UnloadModule(ModuleHandle module) override {
    if (module) FreeLibrary(static_cast<HMODULE>(module));
  }

  void* FindSymbol(ModuleHandle module, const char* name) override {
    if (!module) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
  }

  bool GetSearchPath(PathString* value) override {
    // The whole value, however long: the loader bounds what it writes back,
    // and a value cut short here would lose the host's own folders.
    value->clear();
    DWORD size = GetEnvironmentVariableW(L"Path", nullptr, 0);
    while (size != 0) {
      value->resize(size);
      const DWORD n = GetEnvironmentVariableW(L"Path", value->data(), size);
      if (n < size) {
        value->resize(n);
        return true;
      }
      size = n;  // grew between the two reads
    }
    return GetLastError() != ERROR_ENVVAR_NOT_FOUND;
  }

  bool SetSearchPath(const PathString& value) override {
    return SetEnvironmentVariableW(L"Path", value.c_str()) != 0;
  }

  // A search for exactly `path`: an entry must come back and carry the
  // directory attribute.
  bool IsDirectory(const PathString& path) override {
    WIN32_FIND_DATAW data;
    HANDLE h = FindFirstFileW(path.c_str(), &data);
    if (h == INVALID_HANDLE_VALUE) return false;
    FindClose(h);
    return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  std::vector<DirEntry> ListDirectory(const PathString& folder) override {
    std::vector<DirEntry> entries;
    PathString pattern = folder + L"*.*";
    WIN32_FIND_DATAW data;
    HANDLE h = FindFirstFileW(pattern.c_str(), &data);
    if (h == INVALID_HANDLE_VALUE) return entries;
    do {
      DirEntry entry;
      entry.name = data.cFileName;
      entry.is_directory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
      entries.push_back(std::move(entry));
    } while (FindNextFileW(h, &data));
    FindClose(h);
    return entries;
  }

  void* AllocPages(std::size_t bytes) override {
    return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  }

  bool FreePages(void* pages) override {
    return pages && VirtualFree(pages, 0, MEM_RELEASE) != 0;
  }

  void* AlignedAlloc(std::size_t bytes, std::size_t alignment) override {
    return _aligned_malloc(bytes, alignment);
  }

  void AlignedFree(void* block) override { _aligned_free(block); }

  void ShowMessage(const char* text) override {
    MessageBoxA(nullptr, text, "QuillonBufferOperaU", MB_OK | MB_ICONERROR);
  }
};

}  // namespace

Platform& NativePlatform() {
  return NoDestroy<Win32Platform>();
}

}  // namespace qbo

#endif  // _WIN32
