// Test main: attaches the library once, as the process entry of the shared
// library would, so the tables and the kernel table are in place.
#include <gtest/gtest.h>

#include "frame/attach.h"

namespace {

class LibraryEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    ASSERT_TRUE(qbo::LibraryAttach(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr));
  }
  void TearDown() override { qbo::LibraryDetach(qbo::NativePlatform(), qbo::DefaultFramework()); }
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new LibraryEnvironment);
  return RUN_ALL_TESTS();
}
