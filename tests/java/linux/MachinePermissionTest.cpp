// Folders that this user may not read or enter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using std::filesystem::perms;
using testing::ElementsAre;

// The superuser, who may do all, is another user while this lives.
class OtherUser {
 public:
  OtherUser() : m_error(geteuid() == 0 && seteuid(65534) != 0 ? errno : 0) {}
  ~OtherUser() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
  }
  OtherUser(const OtherUser&) = delete;
  OtherUser& operator=(const OtherUser&) = delete;

  int Error() const { return m_error; }

 private:
  const int m_error;
};

class MachinePermissionTest : public testing::Test {
 protected:
  void SetUp() override {
    const OtherUser user;
    if (user.Error() != 0) GTEST_SKIP() << "the user cannot be changed: " << std::strerror(user.Error());
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    if (euidaccess(folder.c_str(), X_OK) != 0) {
      GTEST_SKIP() << "another user cannot reach " << folder << ": " << std::strerror(errno);
    }
  }
  void TearDown() override {
    for (const std::string& folder : m_closed) std::filesystem::permissions(folder, perms::owner_all);
  }
  void Close(const std::string& folder, perms left = perms::none) {
    std::filesystem::permissions(folder, left);
    m_closed.push_back(folder);
  }

  MadeUpMachine machine;

 private:
  std::vector<std::string> m_closed;
};

TEST_F(MachinePermissionTest, AHomeThatMayNotBeEnteredIsRefusedForThat) {
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("JAVA_HOME", home);
  Close(home);
  const OtherUser user;
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(home + ": its VM library cannot be reached: " + home +
                                                    "/lib/server/libjvm.so: Permission denied (JAVA_HOME)"));
}

TEST_F(MachinePermissionTest, AFolderThatMayNotBeListedIsRefusedForThat) {
  const std::string home = machine.AddRuntime("here/jdk", "17");
  const std::string here = machine.Path("here");
  Close(here, perms::all & ~(perms::owner_read | perms::group_read | perms::others_read));
  const OtherUser user;
  Search search(machine);
  search.LookInto(here);
  EXPECT_THAT(Lines(search.Result()), ElementsAre(here + ": Permission denied (" + here + ")"));
  search.LookAt(home, "place");  // which may be entered
  EXPECT_EQ(search.Result().found.size(), 1u);
}

TEST_F(MachinePermissionTest, AFileThatMayNotBeReadIsRefusedForThat) {
  const std::string home = machine.AddRuntime("jdk", "17");
  machine.Set("JAVA_HOME", home);
  Close(home + "/release");
  const OtherUser user;
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(home + ": its release file cannot be read (JAVA_HOME)"));
}

}  // namespace
}  // namespace tests
