// Process attach and detach of the library.
#ifndef QBO_FRAME_ATTACH_H_
#define QBO_FRAME_ATTACH_H_

#include "frame/platform.h"

namespace qbo {

// The application framework's extension-module registration. Where the
// library is built without that framework, NoFramework stands in: every
// step succeeds and does nothing.
class Framework {
 public:
  virtual ~Framework() = default;
  virtual bool InitExtensionModule(void* instance) = 0;
  // Creates the framework's link object for the module; false when it
  // could not be created (the attach goes on regardless).
  virtual bool CreateDynLinkLibrary() = 0;
  virtual void TermExtensionModule() = 0;
};

class NoFramework final : public Framework {
 public:
  bool InitExtensionModule(void*) override { return true; }
  bool CreateDynLinkLibrary() override { return true; }
  void TermExtensionModule() override {}
};

Framework& DefaultFramework();

// Entry-point reasons, as the platform loader numbers them.
enum AttachReason : unsigned {
  kProcessDetach = 0,
  kProcessAttach = 1,
  kThreadAttach = 2,
  kThreadDetach = 3,
};

// Attach: registration, tables, coefficient block, acceleration loader,
// coefficient block again, link object. False only when the registration or
// a checked table allocation fails; nothing is rolled back then.
bool LibraryAttach(Platform& platform, Framework& framework, void* instance);
// Detach: frees the tables, releases the kept module handle, unregisters.
// Always true.
bool LibraryDetach(Platform& platform, Framework& framework);

// The whole entry point: dispatches on `reason`.
bool LibraryEntry(Platform& platform, Framework& framework, void* instance, unsigned reason);

}  // namespace qbo

#endif  // QBO_FRAME_ATTACH_H_
