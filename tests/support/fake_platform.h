// A scripted platform for driving the frame step by step: an in-memory
// directory tree, modules that load from given paths, a search-path
// variable, allocations that can be made to fail, and a log of every call.
#ifndef QBO_TESTS_SUPPORT_FAKE_PLATFORM_H_
#define QBO_TESTS_SUPPORT_FAKE_PLATFORM_H_

#include <map>
#include <set>
#include <string>
#include <vector>

#include "frame/attach.h"
#include "frame/platform.h"

namespace qbo::test {

// Entry points the fake modules can export.
void* ReturnTableA();
void* ReturnTableB();
void* ReturnNullTable();
extern int g_table_a[4];
extern int g_table_b[4];

class FakePlatform : public Platform {
 public:
  struct Module {
    std::map<std::string, void*> symbols;
  };

  // Script.
  PathString host_path;
  std::set<PathString> directories;
  // Directory listings for the enumeration fallback, in order.
  std::map<PathString, std::vector<DirEntry>> listings;
  // File name or full path -> module that loads from it.
  std::map<PathString, Module> modules;
  bool search_path_set = false;
  PathString search_path;
  // Fails the n-th aligned allocation (1-based); 0 never fails.
  int fail_aligned_alloc_at = 0;
  bool fail_pages = false;

  // Record.
  std::vector<std::string> log;
  std::vector<PathString> load_attempts;
  int loaded = 0;
  int unloaded = 0;
  int aligned_allocs = 0;
  int live_aligned = 0;

  PathString HostExecutablePath() override;
  ModuleHandle LoadModule(const PathString& file) override;
  void UnloadModule(ModuleHandle module) override;
  void* FindSymbol(ModuleHandle module, const char* name) override;
  bool GetSearchPath(PathString* value) override;
  bool SetSearchPath(const PathString& value) override;
  bool IsDirectory(const PathString& path) override;
  std::vector<DirEntry> ListDirectory(const PathString& folder) override;
  void* AllocPages(std::size_t bytes) override;
  bool FreePages(void* pages) override;
  void* AlignedAlloc(std::size_t bytes, std::size_t alignment) override;
  void AlignedFree(void* block) override;
  void ShowMessage(const char* text) override;

  std::vector<std::string> messages;
};

class FakeFramework : public Framework {
 public:
  bool init_result = true;
  bool create_result = true;
  std::vector<std::string> log;
  void* instance_seen = nullptr;

  bool InitExtensionModule(void* instance) override {
    instance_seen = instance;
    log.push_back("init");
    return init_result;
  }
  bool CreateDynLinkLibrary() override {
    log.push_back("create");
    return create_result;
  }
  void TermExtensionModule() override { log.push_back("term"); }
};

}  // namespace qbo::test

#endif  // QBO_TESTS_SUPPORT_FAKE_PLATFORM_H_
