#include "platform/linux/JavaRuntimes.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <utility>

#include "fakes/DebugOut.h"
#include "fakes/WideText.h"
#include "platform/linux/Fixtures.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;
using namespace torvan::platform;

constexpr const char* Runtimes = "Software\\JavaSoft\\Java Runtime Environment\\";
constexpr const char* Kits = "Software\\JavaSoft\\Java Development Kit\\";

class JavaRuntimesTest : public testing::Test {
 protected:
  void Look(const std::string& javaHome = {}) {
    AddJavaRuntimes(javaHome.empty() ? nullptr : javaHome.c_str(), folder.Path().c_str(), registry);
  }

  std::vector<std::string> Versions(const std::string& key) const {
    std::vector<std::string> names;
    for (unsigned int index = 0;; ++index) {
      const auto name = registry.GetSubKeyName(Widen(key).c_str(), index);
      if (name.GetLength() == 0) return names;
      names.push_back(Narrow(name));
    }
  }

  std::string Value(const std::string& key, const char* name) const {
    const auto* value = registry.FindValue(Widen(key).c_str(), Widen(name).c_str());
    return value != nullptr ? Narrow(*value) : "(none)";
  }

  TemporaryFolder folder;
  Registry registry;
};

TEST_F(JavaRuntimesTest, ARuntimeIsListedUnderItsVersionWithHomeAndLibrary) {
  AddRuntime(folder, "some jre", "17.0.15", false);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.15"));
  EXPECT_EQ(folder.Path("some jre"), Value(std::string(Runtimes) + "17.0.15\\", "JavaHome"));
  EXPECT_EQ(folder.Path("some jre/lib/server/libjvm.so"), Value(std::string(Runtimes) + "17.0.15\\", "RuntimeLib"));
  EXPECT_EQ("17.0.15", Value(Runtimes, "CurrentVersion"));
  EXPECT_FALSE(registry.HasKey(Widen(Kits).c_str()));
}

TEST_F(JavaRuntimesTest, ARuntimeWithACompilerIsADevelopmentKitToo) {
  AddRuntime(folder, "a", "17.0.15", true);
  AddRuntime(folder, "b", "21.0.1", false);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.15", "21.0.1"));
  EXPECT_THAT(Versions(Kits), ElementsAre("17.0.15"));
  EXPECT_EQ(folder.Path("a"), Value(std::string(Kits) + "17.0.15\\", "JavaHome"));
  EXPECT_EQ("17.0.15", Value(Kits, "CurrentVersion"));
  EXPECT_EQ("21.0.1", Value(Runtimes, "CurrentVersion"));
}

TEST_F(JavaRuntimesTest, NothingIsRegisteredWhereNoRuntimeIs) {
  Look(folder.Path("missing"));
  EXPECT_FALSE(registry.HasKey(Widen("Software\\").c_str()));
  AddJavaRuntimes("", folder.Path("missing").c_str(), registry);
  EXPECT_FALSE(registry.HasKey(u""));
}

TEST_F(JavaRuntimesTest, AFolderThatLacksSomethingIsNoRuntime) {
  folder.AddFile("no release/lib/server/libjvm.so");
  folder.AddFile("no library/release", "JAVA_VERSION=\"1.0\"\n");
  AddRuntime(folder, "no version", "", false);
  folder.AddFile("other key/release", "OTHER_JAVA_VERSION=\"2.0\"\nJAVA_VERSION_DATE=\"3.0\"\n");
  folder.AddFile("other key/lib/server/libjvm.so");
  AddRuntime(folder, "no name for a key", "1\\2", false);
  AddRuntime(folder, "\xFF not UTF-8", "5.0", false);
  AddRuntime(folder, ".hidden", "6.0", false);
  folder.AddFile("a file");
  Look(folder.Path("no library"));
  EXPECT_THAT(Versions(Runtimes), IsEmpty());
}

TEST_F(JavaRuntimesTest, ReleaseFilesAreReadLineByLine) {
  const std::string text = "IMPLEMENTOR=\"x\"\nMODULES=\"" + std::string(10000, 'm') + "\"\nJAVA_VERSION=";
  for (const auto& [name, version] :
       {std::pair("a", "\"1.1\"\n"), {"b", "\"1.2\"\r\n"}, {"c", "1.3\n"}, {"d", "\"1.4\""}}) {
    folder.AddFile(std::string(name) + "/release", text + version);
    folder.AddFile(std::string(name) + "/lib/server/libjvm.so");
  }
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("1.1", "1.2", "1.3", "1.4"));
}

class JavaRuntimesDeviceTest : public JavaRuntimesTest {
 protected:
  JavaRuntimesDeviceTest() {
    AddRuntime(folder, "usual", "17.0.15", false);
    AddRuntime(folder, "odd", "", false);
    std::filesystem::remove(release);
  }

  void ExpectPassedOver() {
    const DebugOut debugOut;
    const int descriptors = CountDescriptors();
    registry = Registry();
    Look(folder.Path("odd"));
    EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.15"));
    EXPECT_EQ("torvan: JAVA_HOME is passed over: " + folder.Path("odd") +
                  ": its release file is missing or has no JAVA_VERSION\n",
              debugOut.Text());
    EXPECT_EQ(descriptors, CountDescriptors());
  }

  const std::string release = folder.Path("odd/release");
};

TEST_F(JavaRuntimesDeviceTest, APipeIsNoReleaseFileAndIsNotWaitedFor) {
  ASSERT_EQ(0, mkfifo(release.c_str(), 0600));
  ExpectPassedOver();

  const std::string line = "JAVA_VERSION=\"1\"\n";
  const int pipe = open(release.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(static_cast<ssize_t>(line.size()), write(pipe, line.data(), line.size()));
  ExpectPassedOver();
  close(pipe);
}

// The first line of /dev/zero would take all memory.
TEST_F(JavaRuntimesDeviceTest, ADeviceIsNoReleaseFile) {
  for (const char* device : {"/dev/zero", "/dev/full", "/dev/null", "/dev/tty", "/proc/self"}) {
    SCOPED_TRACE(device);
    std::filesystem::create_symlink(device, release);
    ExpectPassedOver();
    std::filesystem::remove(release);
  }
}

TEST_F(JavaRuntimesTest, OfAReleaseFileTheFirst256KiBAreRead) {
  const std::string first = "\nJAVA_VERSION=\"1\"\n";
  const std::string second = "\nJAVA_VERSION=\"2\"\n";
  const std::string most(256 * 1024, 'x');
  AddRuntime(folder, "a", "", false);
  AddRuntime(folder, "b", "", false);
  folder.AddFile("a/release", most.substr(first.size()) + first);
  folder.AddFile("b/release", most + second);
  std::filesystem::resize_file(folder.Path("b/release"), std::uintmax_t{1} << 32);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("1"));
  EXPECT_EQ(folder.Path("a"), Value(std::string(Runtimes) + "1\\", "JavaHome"));
}

TEST_F(JavaRuntimesTest, AZeroEndsNoLineOfAReleaseFile) {
  AddRuntime(folder, "a", "", false);
  folder.AddFile("a/release", "x\0JAVA_VERSION=\"1\"\nJAVA_VERSION=\"2\"\n"s);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("2"));
}

TEST_F(JavaRuntimesTest, LayoutsOfVersion8AreKnown) {
  const char* const libraries[] = {"jre/lib/amd64/server/libjvm.so", "jre/lib/aarch64/server/libjvm.so",
                                   "lib/amd64/server/libjvm.so", "lib/aarch64/server/libjvm.so"};
  for (const char* library : libraries) {
    const TemporaryFolder other;
    AddRuntime(other, "java-8", "1.8.0_402", true, library);
    Registry found;
    AddJavaRuntimes(nullptr, other.Path().c_str(), found);
    const auto* path =
        found.FindValue(Widen(std::string(Runtimes) + "1.8.0_402\\").c_str(), Widen("RuntimeLib").c_str());
    ASSERT_NE(nullptr, path) << library;
    EXPECT_EQ(other.Path("java-8/") + library, Narrow(*path));
  }
}

TEST_F(JavaRuntimesTest, SeveralLinksToOneFolderAreOneRuntime) {
  AddRuntime(folder, "real", "17.0.15", false);
  std::filesystem::create_directory_symlink("real", folder.Path("a link before"));
  std::filesystem::create_directory_symlink("real", folder.Path("z link at the end"));
  Look(folder.Path("z link at the end") + "/");
  EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.15"));
  EXPECT_EQ(folder.Path("real"), Value(std::string(Runtimes) + "17.0.15\\", "JavaHome"));
}

TEST_F(JavaRuntimesTest, OfRuntimesOfOneVersionTheFirstIsListed) {
  AddRuntime(folder, "b", "17.0.15", false);
  AddRuntime(folder, "a", "17.0.15", false);
  AddRuntime(folder, "c", "17.0.15", false);
  Look();
  EXPECT_EQ(folder.Path("a"), Value(std::string(Runtimes) + "17.0.15\\", "JavaHome"));

  registry = Registry();
  Look(folder.Path("c"));
  EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.15"));
  EXPECT_EQ(folder.Path("c"), Value(std::string(Runtimes) + "17.0.15\\", "JavaHome"));
}

TEST_F(JavaRuntimesTest, TheNewestIsCurrentByNumberAndNamesAreInOrderOfText) {
  AddRuntime(folder, "a", "9.0.4", true);
  AddRuntime(folder, "b", "17.0.9", true);
  AddRuntime(folder, "c", "17.0.15", true);
  AddRuntime(folder, "d", "1.8.0_402", true);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("1.8.0_402", "17.0.15", "17.0.9", "9.0.4"));
  EXPECT_EQ("17.0.15", Value(Runtimes, "CurrentVersion"));
  EXPECT_EQ("17.0.15", Value(Kits, "CurrentVersion"));
}

TEST_F(JavaRuntimesTest, TheRuntimeOfJavaHomeIsCurrentEvenIfOlder) {
  AddRuntime(folder, "a", "9.0.4", false);
  AddRuntime(folder, "b", "17.0.9", true);
  Look(folder.Path("a"));
  EXPECT_THAT(Versions(Runtimes), ElementsAre("17.0.9", "9.0.4"));
  EXPECT_EQ("9.0.4", Value(Runtimes, "CurrentVersion"));
  EXPECT_EQ("17.0.9", Value(Kits, "CurrentVersion")) << "it is not a kit";
}

TEST_F(JavaRuntimesTest, OfSeveralKitsTheNewestIsCurrentWhenJavaHomeIsNone) {
  AddRuntime(folder, "a", "11.0.2", true);
  AddRuntime(folder, "b", "17.0.9", true);
  AddRuntime(folder, "c", "9.0.4", true);
  AddRuntime(folder, "d", "21.0.1", false);
  Look(folder.Path("d"));
  EXPECT_EQ("21.0.1", Value(Runtimes, "CurrentVersion"));
  EXPECT_EQ("17.0.9", Value(Kits, "CurrentVersion"));
}

TEST_F(JavaRuntimesTest, AJavaHomeThatIsNoRuntimeIsPassedOverAndTheDebugStreamSaysWhy) {
  AddRuntime(folder, "a", "9.0.4", false);
  AddRuntime(folder, "b", "17.0.9", false);
  folder.AddFile("no version/lib/server/libjvm.so");
  folder.AddFile("no name/release", "JAVA_VERSION=\"1\\2\"\n");
  folder.AddFile("no library/release", "JAVA_VERSION=\"1\"\n");
  AddRuntime(folder, "\xFF not UTF-8", "5.0", false);
  const std::pair<const char*, const char*> rows[] = {
      {"missing", "there is no such folder"},
      {"no version", "its release file is missing or has no JAVA_VERSION"},
      {"no name", "the JAVA_VERSION of its release file cannot be used"},
      {"no library", "it has no VM library (libjvm.so) where runtimes have theirs"},
      {"\xFF not UTF-8", "its path is not UTF-8"},
  };
  for (const auto& [name, reason] : rows) {
    const DebugOut debugOut;
    registry = Registry();
    Look(folder.Path() + "/" + name);
    EXPECT_EQ("torvan: JAVA_HOME is passed over: " + folder.Path() + "/" + name + ": " + reason + "\n",
              debugOut.Text());
    EXPECT_EQ("17.0.9", Value(Runtimes, "CurrentVersion"));
  }
}

TEST_F(JavaRuntimesTest, NothingIsSaidOfAJavaHomeThatIsARuntimeNorOfOtherFolders) {
  AddRuntime(folder, "a", "9.0.4", false);
  folder.AddFile("b/release");
  const DebugOut debugOut;
  Look(folder.Path("a"));
  Look();
  AddJavaRuntimes("", folder.Path().c_str(), registry);
  EXPECT_EQ("", debugOut.Text());
}

TEST_F(JavaRuntimesTest, AHostWithoutADebugStreamIsToldNothing) {
  const DebugOut debugOut;
  mirel::base::CSystem::debugOut = nullptr;
  Look(folder.Path("missing"));
  EXPECT_EQ("", debugOut.Text());
}

// The registry of Windows has no longer names, and callers that enumerate have no room for them.
TEST_F(JavaRuntimesTest, AVersionThatIsTooLongForTheNameOfAKeyHidesNoOther) {
  AddRuntime(folder, "long", "1." + std::string(253, '0'), false);
  AddRuntime(folder, "longer", "1." + std::string(254, '0'), false);
  AddRuntime(folder, "usual", "17.0.15", false);
  Look();
  EXPECT_THAT(Versions(Runtimes), ElementsAre("1." + std::string(253, '0'), "17.0.15"));
}

TEST(JavaRuntimesNumbersTest, NumbersAreComparedInTurn) {
  struct Row {
    const RX::UniChar* left;
    const RX::UniChar* right;
    int expected;
  };
  const Row rows[] = {
      {u"17.0.15", u"17.0.15", 0},
      {u"17.0.15", u"17.0.9", 1},
      {u"9.0.4", u"17", -1},
      {u"17", u"17.0", -1},
      {u"1.8.0_402", u"1.8.0_51", 1},
      {u"21-ea", u"21", 0},
      {u"21", u"20.9.9", 1},
      {u"1.8.0-402", u"1.8.0_402", 0},
      {u"", u"", 0},
      {u"", u"0", -1},
      {u"x", u"1", -1},
      {u"99999999999999999999", u"1", 1},
      {u"0017", u"17", 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, CompareNumbersInTurn(row.left, row.right))
        << Narrow(row.left) << " and " << Narrow(row.right);
    EXPECT_EQ(-row.expected, CompareNumbersInTurn(row.right, row.left))
        << Narrow(row.right) << " and " << Narrow(row.left);
  }
}

}  // namespace
}  // namespace tests
