#include "frame/attach.h"

#include "frame/accel.h"
#include "frame/coef_block.h"
#include "frame/no_destroy.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"

namespace qbo {

Framework& DefaultFramework() {
  return NoDestroy<NoFramework>();
}

bool LibraryAttach(Platform& platform, Framework& framework, void* instance) {
  if (!framework.InitExtensionModule(instance)) return false;
  if (!BuildRcpProductTable(platform)) return false;
  if (!BuildInvByteAndOverShareTables(platform)) return false;
  CsInitCoefficients();
  LoadAccelerationModules(platform);
  // Whatever the loaded modules did to it, the block ends in its defined
  // state.
  CsInitCoefficients();
  InitKernelTableFromEnvironment();
  framework.CreateDynLinkLibrary();
  return true;
}

bool LibraryDetach(Platform& platform, Framework& framework) {
  FreeLookupTables(platform);
  if (g_accel.module_handle) {
    platform.UnloadModule(g_accel.module_handle);
    g_accel.module_handle = nullptr;
  }
  framework.TermExtensionModule();
  return true;
}

bool LibraryEntry(Platform& platform, Framework& framework, void* instance, unsigned reason) {
  switch (reason) {
    case kProcessAttach:
      return LibraryAttach(platform, framework, instance);
    case kProcessDetach:
      return LibraryDetach(platform, framework);
    default:
      return true;
  }
}

}  // namespace qbo
