// Paths of more than MAX_PATH units.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;

TEST(MachineLongPathTest, ARuntimeIsFoundThere) {
  MadeUpMachine machine;
  const std::wstring home = ToPath(machine.AddRuntime("jdk", "17")).wstring();
  const std::wstring top = ToPath(machine.Path()).wstring();
  const std::wstring name(200, L'd');
  const std::wstring folders[] = {top + L'\\' + name, top + L'\\' + name + L'\\' + name};
  const std::wstring prefix = L"\\\\?\\";
  for (const std::wstring& folder : folders) ASSERT_TRUE(CreateDirectoryW((prefix + folder).c_str(), nullptr));
  const std::wstring moved = folders[1] + L"\\jdk";
  ASSERT_TRUE(MoveFileW(home.c_str(), (prefix + moved).c_str()));

  const std::string found = ToText(std::filesystem::path(moved));
  machine.Set("JAVA_HOME", found);
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(found + " 17 JAVA_HOME"));
  EXPECT_THAT(machine.FoldersIn(std::filesystem::path(folders[1])).names, ElementsAre("jdk"));

  EXPECT_TRUE(MoveFileW((prefix + moved).c_str(), home.c_str()));
  EXPECT_TRUE(RemoveDirectoryW((prefix + folders[1]).c_str()));
  EXPECT_TRUE(RemoveDirectoryW((prefix + folders[0]).c_str()));
}

}  // namespace
}  // namespace tests
