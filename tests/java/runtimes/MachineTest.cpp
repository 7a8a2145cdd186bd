// What the real system answers.
#include "java/runtimes/Machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

class MachineTest : public testing::Test {
 protected:
  std::filesystem::path Path(const std::string& name = {}) { return ToPath(folder.Path(name)); }

  const Machine& machine = ThisMachine();
  MadeUpMachine folder;
};

TEST_F(MachineTest, AVariableIsUtf8AndAnEmptyOneIsNotSet) {
  EXPECT_EQ(machine.Variable("TORVAN_MACHINE_TEST"), std::nullopt);
  SetVariable("TORVAN_MACHINE_TEST", "some text");
  EXPECT_EQ(machine.Variable("TORVAN_MACHINE_TEST"), "some text");
  SetVariable("TORVAN_MACHINE_TEST", "");
  EXPECT_EQ(machine.Variable("TORVAN_MACHINE_TEST"), std::nullopt);
}

TEST_F(MachineTest, FilesAndFoldersAreToldApart) {
  folder.AddFile("a/file");
  EXPECT_TRUE(machine.IsFolder(Path("a")));
  EXPECT_FALSE(machine.IsFile(Path("a")));
  EXPECT_TRUE(machine.IsFile(Path("a/file")));
  EXPECT_FALSE(machine.IsFolder(Path("a/file")));
  EXPECT_FALSE(machine.IsFile(Path("a/none")));
  EXPECT_FALSE(machine.IsFolder(Path("a/none")));
  EXPECT_FALSE(machine.IsFile(Path("a/file/below")));
  EXPECT_FALSE(machine.IsFile(Path()));
  EXPECT_FALSE(machine.IsFile(ToPath("")));
  EXPECT_FALSE(machine.IsFolder(ToPath("")));
}

TEST_F(MachineTest, WhetherAPathIsThereIsTold) {
  folder.AddFile("a/file");
  for (const char* name : {"", "a", "a/file", "a/none", "none/none", "a/file/below"}) {
    EXPECT_EQ(machine.Hindrance(Path(name)), "") << name;
  }
}

TEST_F(MachineTest, APathIsLocatedWithoutDetours) {
  folder.AddFile("a/file");
  folder.AddFile("b/file");
  EXPECT_EQ(ToText(machine.Locate(Path("a/../b/./file")).path), folder.Path("b/file"));
  EXPECT_EQ(ToText(machine.Locate(Path("b/")).path), folder.Path("b"));
  EXPECT_EQ(machine.Locate(Path("b")).reason, "");
  EXPECT_TRUE(machine.Locate(ToPath(".")).path.is_absolute());
  for (const std::string& name : {std::string("none"), std::string("a/file/below"), std::string(5000, 'x')}) {
    EXPECT_TRUE(machine.Locate(Path(name)).path.empty());
    EXPECT_NE(machine.Locate(Path(name)).reason, "");
  }
  EXPECT_TRUE(machine.Locate(ToPath("")).path.empty());
}

TEST_F(MachineTest, TheFoldersInAFolderAreSorted) {
  for (const char* name : {"c/x", "a/x", "b \u00E4/x", "file"}) folder.AddFile(name);
  EXPECT_THAT(machine.FoldersIn(Path()).names, ElementsAre("a", "b \u00E4", "c"));
  EXPECT_THAT(machine.FoldersIn(Path("a")).names, IsEmpty());
  for (const char* name : {"", "a"}) EXPECT_EQ(machine.FoldersIn(Path(name)).reason, "") << name;
  for (const char* name : {"file", "none"}) {
    EXPECT_THAT(machine.FoldersIn(Path(name)).names, IsEmpty());
    EXPECT_NE(machine.FoldersIn(Path(name)).reason, "") << name;
  }
}

TEST_F(MachineTest, TheFrontOfAFileIsRead) {
  folder.AddFile("file", std::string("0123\0\r\n\x1A", 8) + std::string(100000, 'x'));
  folder.AddFile("empty");
  EXPECT_EQ(machine.ReadFront(Path("file"), 8), std::string("0123\0\r\n\x1A", 8));
  EXPECT_EQ(machine.ReadFront(Path("file"), 1000000)->size(), 100008u);
  EXPECT_EQ(machine.ReadFront(Path("empty"), 8), "");
  EXPECT_EQ(machine.ReadFront(Path("none"), 8), std::nullopt);
  EXPECT_EQ(machine.ReadFront(Path(), 8), std::nullopt);
}

}  // namespace
}  // namespace tests
