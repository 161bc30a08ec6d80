// Installs the fake VelaVid module's table as the library's acceleration
// table for the lifetime of the object, so dispatching exports can be
// checked argument by argument.
#ifndef QBO_TESTS_SUPPORT_FAKE_VELA_VID_H_
#define QBO_TESTS_SUPPORT_FAKE_VELA_VID_H_

#include "tests/fakes/fake_vela.h"

namespace qbo::test {

class FakeVelaVid {
 public:
  FakeVelaVid();
  ~FakeVelaVid();
  FakeVelaVid(const FakeVelaVid&) = delete;
  FakeVelaVid& operator=(const FakeVelaVid&) = delete;

  int call_count() const;
  const FakeVelaCall& last_call() const;
  void SetResult(intptr_t result);
  void SetEntryPresent(int array, int index, bool present);
  void SetArrayNull(int array, bool is_null);
  // The library sees no VelaVid table at all (module absent).
  void RemoveTable();

 private:
  void* module_;
  void* saved_api_;
};

}  // namespace qbo::test

#endif  // QBO_TESTS_SUPPORT_FAKE_VELA_VID_H_
