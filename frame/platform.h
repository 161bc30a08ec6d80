// The one doorway to the operating system. Every service the library takes
// from the platform (host path, module loading, the search-path variable,
// directories, page memory, aligned scratch, the message box) goes through a
// Platform object, so the frame can be driven step by step in tests and the
// same loader logic serves POSIX and Win32.
#ifndef QBO_FRAME_PLATFORM_H_
#define QBO_FRAME_PLATFORM_H_

#include <cstddef>
#include <string>
#include <vector>

namespace qbo {

#if defined(_WIN32)
using PathChar = wchar_t;
#define QBO_PATH(s) L##s
#else
using PathChar = char;
#define QBO_PATH(s) s
#endif
using PathString = std::basic_string<PathChar>;

using ModuleHandle = void*;

struct DirEntry {
  PathString name;
  bool is_directory = false;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Full path of the host executable; empty when it cannot be had.
  virtual PathString HostExecutablePath() = 0;

  // Loads a module by bare file name (platform default search) or by path.
  virtual ModuleHandle LoadModule(const PathString& file) = 0;
  virtual void UnloadModule(ModuleHandle module) = 0;
  virtual void* FindSymbol(ModuleHandle module, const char* name) = 0;

  // The process's module search-path variable (Path on Windows,
  // LD_LIBRARY_PATH on POSIX). Get returns false when it is not set.
  virtual bool GetSearchPath(PathString* value) = 0;
  virtual bool SetSearchPath(const PathString& value) = 0;

  // True when `path` names an existing directory (a search for exactly that
  // name finds an entry carrying the directory attribute).
  virtual bool IsDirectory(const PathString& path) = 0;
  // Entries of `folder` in the order the platform enumerates them, "." and
  // ".." included where the platform reports them.
  virtual std::vector<DirEntry> ListDirectory(const PathString& folder) = 0;

  // Committed read-write page memory for large temporaries.
  virtual void* AllocPages(std::size_t bytes) = 0;
  virtual bool FreePages(void* pages) = 0;

  // Scratch memory aligned to `alignment` (a power of two); null on failure.
  virtual void* AlignedAlloc(std::size_t bytes, std::size_t alignment) = 0;
  virtual void AlignedFree(void* block) = 0;

  // The library's one user-visible message.
  virtual void ShowMessage(const char* text) = 0;
};

// The real platform of this build (POSIX or Win32).
Platform& NativePlatform();

// The platform the exports use; the native one unless a test swapped it.
Platform& CurrentPlatform();
// Test hook: routes the exports' platform calls through `platform`
// (null restores the native one). Never exported.
void SetPlatformForTesting(Platform* platform);

// Scratch memory for exports, 16-byte aligned, through CurrentPlatform().
void* AllocScratch(std::size_t bytes);
void FreeScratch(void* block);

// Owns one scratch block for the duration of a call.
class ScratchBuffer {
 public:
  explicit ScratchBuffer(std::size_t bytes) : data_(AllocScratch(bytes)) {}
  ~ScratchBuffer() { FreeScratch(data_); }
  ScratchBuffer(const ScratchBuffer&) = delete;
  ScratchBuffer& operator=(const ScratchBuffer&) = delete;
  void* get() const { return data_; }
  explicit operator bool() const { return data_ != nullptr; }

 private:
  void* data_;
};

}  // namespace qbo

#endif  // QBO_FRAME_PLATFORM_H_
