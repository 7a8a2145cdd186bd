// Symbolic links and junctions, and names in other letter case.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <winioctl.h>

#include <cstring>
#include <ostream>
#include <vector>

#include "java/processes/Surroundings.h"
#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::SizeIs;

struct LinkKind {
  const char* name;
  bool (*make)(const std::wstring& link, const std::wstring& target);
};
void PrintTo(const LinkKind& kind, std::ostream* out) { *out << kind.name; }

bool MakeSymbolicLink(const std::wstring& link, const std::wstring& target) {
  constexpr DWORD Unprivileged = 2;
  return CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY | Unprivileged) != 0;
}

// What a folder holds that is a junction: these eight numbers, then the target as the kernel names it and as people do.
bool MakeJunction(const std::wstring& link, const std::wstring& target) {
  if (!CreateDirectoryW(link.c_str(), nullptr)) return false;
  const HANDLE folder = CreateFileW(link.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (folder == INVALID_HANDLE_VALUE) return false;
  const std::wstring kernels = L"\\??\\" + target;
  const auto size = [](const std::wstring& text) { return static_cast<USHORT>(text.size() * sizeof(wchar_t)); };
  const USHORT second = static_cast<USHORT>(size(kernels) + sizeof(wchar_t));
  const USHORT texts = static_cast<USHORT>(second + size(target) + sizeof(wchar_t));
  const USHORT numbers[8] = {0x0003, 0xA000, static_cast<USHORT>(texts + 8), 0, 0, size(kernels), second, size(target)};
  std::vector<char> data(sizeof(numbers) + texts);
  std::memcpy(data.data(), numbers, sizeof(numbers));
  std::memcpy(data.data() + sizeof(numbers), kernels.c_str(), size(kernels));
  std::memcpy(data.data() + sizeof(numbers) + second, target.c_str(), size(target));
  DWORD written = 0;
  const bool isMade = DeviceIoControl(folder, FSCTL_SET_REPARSE_POINT, data.data(), static_cast<DWORD>(data.size()),
                                      nullptr, 0, &written, nullptr) != 0;
  const DWORD error = GetLastError();
  CloseHandle(folder);
  SetLastError(error);
  return isMade;
}

class MachineLinksTest : public testing::TestWithParam<LinkKind> {
 protected:
  void SetUp() override {
    machine.Set(UserVariable, machine.Path("user"));
    machine.AddFile("user/.jdks/file");
    std::filesystem::create_directories(ToPath(machine.Path("probe")));
    SetLastError(ERROR_SUCCESS);
    const bool isMade = Link("link", "probe");
    const DWORD error = GetLastError();
    const DWORD found = GetFileAttributesW(m_links.back().c_str());
    const bool isLink = found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!isMade || !isLink) {
      GTEST_SKIP() << "this system or user makes no " << GetParam().name << ": " << ReasonOf(error);
    }
  }
  // Windows removes a link by itself, and must not be led elsewhere by it.
  void TearDown() override {
    for (const std::wstring& link : m_links) RemoveDirectoryW(link.c_str());
  }

  bool Link(const std::string& name, const std::string& target) {
    m_links.push_back(ToPath(machine.Path(name)).wstring());
    return GetParam().make(m_links.back(), ToPath(machine.Path(target)).wstring());
  }
  std::vector<std::string> Found() { return Lines(SearchOf(machine)); }

  MadeUpMachine machine;

 private:
  std::vector<std::wstring> m_links;
};

INSTANTIATE_TEST_SUITE_P(Kinds, MachineLinksTest,
                         testing::Values(LinkKind{"symbolic link", MakeSymbolicLink},
                                         LinkKind{"junction", MakeJunction}));

TEST_P(MachineLinksTest, TheHomeIsTheRealOne) {
  const std::string home = machine.AddRuntime("store/jdk", "17");
  ASSERT_TRUE(Link("user/.jdks/default", "store/jdk"));
  ASSERT_TRUE(Link("user/.jdks/other", "user/.jdks/default"));
  EXPECT_THAT(Found(), ElementsAre(home + " 17 " + machine.Path("user/.jdks")));
  machine.Set("JAVA_HOME", machine.Path("user/.jdks/other"));
  machine.Set("JDK_HOME", home);
  EXPECT_THAT(Found(), ElementsAre(home + " 17 JAVA_HOME"));
}

TEST_P(MachineLinksTest, LoopsAreSurvived) {
  ASSERT_TRUE(Link("a", "b"));
  ASSERT_TRUE(Link("b", "a"));
  ASSERT_TRUE(Link("user/.jdks/up", "user"));
  machine.Set("JAVA_HOME", machine.Path("a"));
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  const Runtimes runtimes = SearchOf(machine);
  ASSERT_THAT(Lines(runtimes), SizeIs(2));
  EXPECT_EQ(Lines(runtimes)[0], home + " 17 " + machine.Path("user/.jdks"));
  EXPECT_EQ(ToText(runtimes.refused[0].Home()), machine.Path("a"));
  EXPECT_NE(runtimes.refused[0].Reason(), "");
  EXPECT_NE(machine.Hindrance(ToPath(machine.Path("a"))), "");
}

TEST(MachineLinksLetterCaseTest, AHomeInOtherLettersIsListedOnce) {
  MadeUpMachine machine;
  const std::string home = machine.AddRuntime("Folder/jdk-17", "17");
  std::string upper = home;
  for (char& unit : upper) unit = unit >= 'a' && unit <= 'z' ? static_cast<char>(unit - 'a' + 'A') : unit;
  std::string lower = home;
  for (char& unit : lower) unit = unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit - 'A' + 'a') : unit;
  machine.Set("JAVA_HOME", upper);
  machine.Set("JDK_HOME", lower);
  machine.Set("PATH", home + "\\bin");
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(home + " 17 JAVA_HOME"));
}

}  // namespace
}  // namespace tests
