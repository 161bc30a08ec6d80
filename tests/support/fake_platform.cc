#include "tests/support/fake_platform.h"

#include <cstdlib>

namespace qbo::test {

int g_table_a[4];
int g_table_b[4];
void* ReturnTableA() { return g_table_a; }
void* ReturnTableB() { return g_table_b; }
void* ReturnNullTable() { return nullptr; }

namespace {
std::string Narrow(const PathString& s) { return std::string(s.begin(), s.end()); }
}  // namespace

PathString FakePlatform::HostExecutablePath() { return host_path; }

ModuleHandle FakePlatform::LoadModule(const PathString& file) {
  load_attempts.push_back(file);
  auto it = modules.find(file);
  log.push_back("load " + Narrow(file) + (it == modules.end() ? " -> fail" : " -> ok"));
  if (it == modules.end()) return nullptr;
  ++loaded;
  return &it->second;
}

void FakePlatform::UnloadModule(ModuleHandle module) {
  for (auto& [name, m] : modules) {
    if (&m == module) log.push_back("unload " + Narrow(name));
  }
  ++unloaded;
}

void* FakePlatform::FindSymbol(ModuleHandle module, const char* name) {
  auto* m = static_cast<Module*>(module);
  auto it = m->symbols.find(name);
  return it == m->symbols.end() ? nullptr : it->second;
}

bool FakePlatform::GetSearchPath(PathString* value) {
  *value = search_path_set ? search_path : PathString();
  return search_path_set;
}

bool FakePlatform::SetSearchPath(const PathString& value) {
  log.push_back("set path " + Narrow(value));
  search_path_set = true;
  search_path = value;
  return true;
}

bool FakePlatform::IsDirectory(const PathString& path) { return directories.count(path) != 0; }

std::vector<DirEntry> FakePlatform::ListDirectory(const PathString& folder) {
  auto it = listings.find(folder);
  return it == listings.end() ? std::vector<DirEntry>{} : it->second;
}

void* FakePlatform::AllocPages(std::size_t bytes) {
  if (fail_pages) return nullptr;
  return NativePlatform().AllocPages(bytes);
}

bool FakePlatform::FreePages(void* pages) { return NativePlatform().FreePages(pages); }

void* FakePlatform::AlignedAlloc(std::size_t bytes, std::size_t alignment) {
  ++aligned_allocs;
  log.push_back("alloc " + std::to_string(bytes));
  if (aligned_allocs == fail_aligned_alloc_at) return nullptr;
  void* p = NativePlatform().AlignedAlloc(bytes, alignment);
  if (p) ++live_aligned;
  return p;
}

void FakePlatform::AlignedFree(void* block) {
  log.push_back("free");
  --live_aligned;
  NativePlatform().AlignedFree(block);
}

void FakePlatform::ShowMessage(const char* text) { messages.emplace_back(text); }

}  // namespace qbo::test
