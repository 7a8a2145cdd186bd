// Which Java runtimes are found, and what the system is asked for.

#include "jvmlauncher/InstalledJavaVm.h"

#include <gmock/gmock.h>
#include <mirel/base/MemoryException.h>

#include "fakes/Allocations.h"
#include "fakes/WideText.h"
#include "jvmlauncher/Installation.h"
#include "platform/System.h"

namespace tests {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using torvan::jvmlauncher::EnumerateInstalledJavaVms;
using torvan::jvmlauncher::GetInstalledJavaVms;
using torvan::jvmlauncher::InstalledJavaVm;
using torvan::jvmlauncher::InstalledJavaVms;
using torvan::platform::SystemScope;

namespace {

class InstalledJavaVmTest : public testing::Test {
 protected:
  // What the enumeration lists, each as "version at home".
  std::vector<std::string> Enumerate() { return Listed(&EnumerateInstalledJavaVms); }
  std::vector<std::string> GetSorted() { return Listed(&GetInstalledJavaVms); }

  // The same for a list that already holds a runtime, version 1.5 at /before.
  std::vector<std::string> EnumerateAfterOne() { return Listed(&EnumerateInstalledJavaVms, ListWithOne()); }
  std::vector<std::string> GetSortedAfterOne() { return Listed(&GetInstalledJavaVms, ListWithOne()); }

  FakeSystem m_system;

 private:
  static InstalledJavaVms ListWithOne() {
    InstalledJavaVms vms(10, 5);
    vms.Add({RX_TEXT("1.5"), RX_TEXT("/before")});
    return vms;
  }

  std::vector<std::string> Listed(int (*list)(InstalledJavaVms&), InstalledJavaVms vms = {10, 5}) {
    const int count = list(vms);
    EXPECT_EQ(count, static_cast<int>(vms.GetSize()));
    EXPECT_THAT(m_system.OpenKeys(), IsEmpty());
    std::vector<std::string> found;
    for (unsigned int i = 0; i < vms.GetSize(); ++i) {
      found.push_back(Narrow(vms[i].version) + " at " + Narrow(vms[i].home));
    }
    return found;
  }

  SystemScope m_scope{m_system};
};

TEST_F(InstalledJavaVmTest, AsksBothSourcesInOrderAndClosesWhatItOpened) {
  const std::string home64 = OnThisSystem("C:\\jre64", "/jre64");
  const std::string home32 = OnThisSystem("C:\\jre32", "/jre32");
  Install(m_system, Source64, "1.6", home64);
  Install(m_system, Source32, "1.5", home32);
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at " + home64, "1.5 at " + home32));

  const std::string first = "Software\\JavaSoft\\Java Runtime Environment";
  const std::string second = "Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment";
  EXPECT_THAT(
      m_system.Log(),
      ElementsAre("OpenKey(HKLM, " + first + ", 0x20019)",                                                    //
                  "EnumerateKey(" + first + ", 0, 256)",                                                      //
                  "OpenKey(" + first + ", 1.6, 0x20019)",                                                     //
                  "QueryValue(" + first + "\\1.6, JavaHome, 1024)",                                           //
                  "QueryValue(" + first + "\\1.6, RuntimeLib, 1024)",                                         //
                  std::string("FileAttributes(") + OnThisSystem("C:\\jre64\\jvm.dll)", "/jre64/libjvm.so)"),  //
                  std::string("FileAttributes(") + OnThisSystem("C:\\jre64\\bin\\java.exe)", "/jre64/bin/java)"),
                  "CloseKey(" + first + "\\1.6)",                     //
                  "EnumerateKey(" + first + ", 1, 256)",              //
                  "CloseKey(" + first + ")",                          //
                  "OpenKey(HKLM, " + second + ", 0x20019)",           //
                  "EnumerateKey(" + second + ", 0, 256)",             //
                  "OpenKey(" + second + ", 1.5, 0x20019)",            //
                  "QueryValue(" + second + "\\1.5, JavaHome, 1024)",  //
                  "QueryValue(" + second + "\\1.5, RuntimeLib, 1024)",
                  std::string("FileAttributes(") + OnThisSystem("C:\\jre32\\jvm.dll)", "/jre32/libjvm.so)"),
                  std::string("FileAttributes(") + OnThisSystem("C:\\jre32\\bin\\java.exe)", "/jre32/bin/java)"),
                  "CloseKey(" + second + "\\1.5)",         //
                  "EnumerateKey(" + second + ", 1, 256)",  //
                  "CloseKey(" + second + ")"));
}

TEST_F(InstalledJavaVmTest, ASourceThatCannotBeOpenedIsPassedOver) {
  EXPECT_THAT(Enumerate(), IsEmpty());
  EXPECT_THAT(m_system.Log(),
              ElementsAre("OpenKey(HKLM, Software\\JavaSoft\\Java Runtime Environment, 0x20019)",
                          "OpenKey(HKLM, Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment, 0x20019)"));
  Install(m_system, Source64, "1.6", "/jre");
  Install(m_system, Source32, "1.5", "/old");
  m_system.FailOpen(Source64, 5);
  EXPECT_THAT(Enumerate(), ElementsAre("1.5 at /old"));
}

TEST_F(InstalledJavaVmTest, ASubkeyThatCannotBeOpenedIsSkipped) {
  Install(m_system, Source64, "1.5", "/a");
  Install(m_system, Source64, "1.6", "/b");
  m_system.FailOpen(KeyOf(Source64, "1.5"), 5);
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at /b"));
}

TEST_F(InstalledJavaVmTest, ARuntimeInBothSourcesIsListedTwice) {
  Install(m_system, Source64, "1.6", "/jre");
  Install(m_system, Source32, "1.6", "/jre");
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at /jre", "1.6 at /jre"));
}

TEST_F(InstalledJavaVmTest, AHomeThatEndsWithASeparatorGetsNoSecondOne) {
  const std::string home = OnThisSystem("C:\\jre\\", "/jre/");
  m_system.SetValue(KeyOf(Source64, "1.6"), "JavaHome", home);
  m_system.SetValue(KeyOf(Source64, "1.6"), "RuntimeLib", "/libjvm.so");
  m_system.AddFile("/libjvm.so");
  m_system.AddFile(OnThisSystem("C:\\jre\\bin\\java.exe", "/jre/bin/java"));
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at " + home));
}

TEST_F(InstalledJavaVmTest, ASubkeyNameMayHave255UnitsAndNoMore) {
  const std::string longest = "1." + std::string(253, '7');
  Install(m_system, Source64, longest, "/a");
  EXPECT_THAT(Enumerate(), ElementsAre(longest + " at /a"));
  Install(m_system, Source64, longest + "7", "/b");
  EXPECT_THAT(Enumerate(), IsEmpty());
}

// --- Values that make a subkey count or not ---

struct ValueRow {
  const char* name;
  void (*script)(FakeSystem& system, const std::string& key);
  bool listed;
};

std::string Home() { return "/jre"; }

// A text as the registry stores it, without a final zero.
std::string BytesOf(const std::string& text) {
  const WideText units = Widen(text);
  return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(RX::UniChar)};
}

class InstalledJavaVmValuesTest : public InstalledJavaVmTest, public testing::WithParamInterface<ValueRow> {};

TEST_P(InstalledJavaVmValuesTest, DecideWhetherTheSubkeyIsListed) {
  Install(m_system, Source64, "1.6", Home());
  GetParam().script(m_system, KeyOf(Source64, "1.6"));
  // A second subkey shows that only the first is skipped.
  Install(m_system, Source64, "1.7", "/next");
  std::vector<std::string> expected;
  if (GetParam().listed) expected.push_back("1.6 at /jre");
  expected.push_back("1.7 at /next");
  EXPECT_THAT(Enumerate(), ElementsAreArray(expected));
}

const ValueRow ValueRows[] = {
    {"AllThere", [](FakeSystem&, const std::string&) {}, true},
    {"HomeNotReadable", [](FakeSystem& system, const std::string& key) { system.FailQuery(key, "JavaHome", 2); },
     false},
    {"LibraryNotReadable", [](FakeSystem& system, const std::string& key) { system.FailQuery(key, "RuntimeLib", 2); },
     false},
    {"HomeEmpty", [](FakeSystem& system, const std::string& key) { system.SetValue(key, "JavaHome", ""); }, false},
    {"LibraryEmpty", [](FakeSystem& system, const std::string& key) { system.SetValue(key, "RuntimeLib", ""); }, false},
    {"HomeWithoutAByte", [](FakeSystem& system, const std::string& key) { system.SetRawValue(key, "JavaHome", {}); },
     false},
    {"HomeWithoutFinalZero",
     [](FakeSystem& system, const std::string& key) { system.SetRawValue(key, "JavaHome", Widen("/jre")); }, true},
    {"HomeWithHalfAUnitAfterIt",
     [](FakeSystem& system, const std::string& key) { system.SetBytes(key, "JavaHome", BytesOf("/jre") + "x"); }, true},
    {"LibraryWithHalfAUnitAfterIt",
     [](FakeSystem& system, const std::string& key) {
       system.SetBytes(key, "RuntimeLib", BytesOf(LibraryIn(Home())) + "x");
     },
     true},
    {"HomeOfHalfAUnit", [](FakeSystem& system, const std::string& key) { system.SetBytes(key, "JavaHome", "x"); },
     false},
    {"LibraryMissing", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 2); },
     false},
    {"LibraryIsAFolder", [](FakeSystem& system, const std::string&) { system.AddDirectory(LibraryIn(Home())); }, false},
    {"LibraryDenied", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 5); },
     true},
    {"LibraryShared", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 32); },
     true},
    {"LibraryLocked", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 33); },
     true},
    {"LibraryRefusedBeyond16Bits",
     [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 65536 + 5); }, false},
    {"LibraryPathNotFound", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 3); },
     false},
    {"LibraryNotReady", [](FakeSystem& system, const std::string&) { system.FailAttributes(LibraryIn(Home()), 21); },
     false},
    {"ProgramMissing",
     [](FakeSystem& system, const std::string&) { system.FailAttributes(ConsoleProgramIn(Home()), 2); }, false},
    {"ProgramIsAFolder", [](FakeSystem& system, const std::string&) { system.AddDirectory(ConsoleProgramIn(Home())); },
     false},
    {"ProgramShared",
     [](FakeSystem& system, const std::string&) { system.FailAttributes(ConsoleProgramIn(Home()), 32); }, true},
};

INSTANTIATE_TEST_SUITE_P(Values, InstalledJavaVmValuesTest, testing::ValuesIn(ValueRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(InstalledJavaVmTest, AValueMayHave1024BytesAndNoMore) {
  // 511 units and the final zero.
  const std::string longest = "/" + std::string(510, 'h');
  Install(m_system, Source64, "1.6", longest);
  m_system.SetValue(KeyOf(Source64, "1.6"), "RuntimeLib", "/lib");
  m_system.AddFile("/lib");
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at " + longest));
  // 512 units that fill the buffer without a final zero.
  Install(m_system, Source64, "1.6", longest + "h");
  m_system.SetRawValue(KeyOf(Source64, "1.6"), "JavaHome", Widen(longest + "h"));
  m_system.SetValue(KeyOf(Source64, "1.6"), "RuntimeLib", "/lib");
  EXPECT_THAT(Enumerate(), ElementsAre("1.6 at " + longest + "h"));
  m_system.SetValue(KeyOf(Source64, "1.6"), "JavaHome", longest + "h");
  EXPECT_THAT(Enumerate(), IsEmpty());
}

TEST_F(InstalledJavaVmTest, TheLibraryIsLookedForBeforeTheProgramAndAloneWhenMissing) {
  Register(m_system, Source64, "1.6", "/jre");
  EXPECT_THAT(Enumerate(), IsEmpty());
  const std::vector<std::string>& log = m_system.Log();
  EXPECT_THAT(log, testing::Contains("FileAttributes(" + LibraryIn("/jre") + ")"));
  EXPECT_THAT(log, testing::Contains("LastError()"));
  EXPECT_THAT(log, testing::Not(testing::Contains("FileAttributes(" + ConsoleProgramIn("/jre") + ")")));
}

TEST_F(InstalledJavaVmTest, NoFileIsLookedForWhereAValueIsEmptyOrCannotBeRead) {
  const std::string key = KeyOf(Source64, "1.6");
  for (const char* missing : {"JavaHome", "RuntimeLib"}) {
    for (const int status : {0, 2, 65536}) {
      SCOPED_TRACE(std::string(missing) + " " + std::to_string(status));
      Install(m_system, Source64, "1.6", "/jre");
      if (status == 0) {
        m_system.SetValue(key, missing, "");
      } else {
        m_system.FailQuery(key, missing, status);
      }
      m_system.ClearLog();
      EXPECT_THAT(Enumerate(), IsEmpty());
      EXPECT_THAT(m_system.Log(), testing::Contains("QueryValue(" + key + ", RuntimeLib, 1024)"));
      EXPECT_THAT(m_system.Log(), testing::Not(testing::Contains(testing::StartsWith("FileAttributes("))));
    }
  }
}

// --- The end of an enumeration ---

TEST_F(InstalledJavaVmTest, ABrokenEnumerationEmptiesTheListAndLeavesTheSecondSourceAlone) {
  Install(m_system, Source64, "1.5", "/a");
  Install(m_system, Source64, "1.6", "/b");
  Install(m_system, Source32, "1.7", "/c");
  m_system.FailEnumeration(Source64, 1, 234);
  EXPECT_THAT(Enumerate(), IsEmpty());
  EXPECT_EQ(m_system.Log().back(), "CloseKey(Software\\JavaSoft\\Java Runtime Environment)");
}

TEST_F(InstalledJavaVmTest, ABreakInTheSecondSourceDropsTheFirstOnesRuntimesToo) {
  Install(m_system, Source64, "1.5", "/a");
  Install(m_system, Source32, "1.6", "/b");
  m_system.FailEnumeration(Source32, 1, 1018);
  EXPECT_THAT(GetSorted(), IsEmpty());
  EXPECT_EQ(m_system.Log().back(), "CloseKey(Software\\Wow6432Node\\JavaSoft\\Java Runtime Environment)");
}

TEST_F(InstalledJavaVmTest, OnlyTheWholeStatusTellsTheEndFromABreak) {
  for (const int status : {65536, 65536 + 259}) {
    SCOPED_TRACE(status);
    Install(m_system, Source64, "1.5", "/a");
    m_system.FailEnumeration(Source64, 1, status);
    EXPECT_THAT(Enumerate(), IsEmpty());
  }
}

// --- A list that is not empty ---

TEST_F(InstalledJavaVmTest, RuntimesAreAppendedAndAllAreCounted) {
  Install(m_system, Source64, "1.6", "/b");
  Install(m_system, Source32, "1.4", "/a");
  EXPECT_THAT(EnumerateAfterOne(), ElementsAre("1.5 at /before", "1.6 at /b", "1.4 at /a"));
  EXPECT_THAT(GetSortedAfterOne(), ElementsAre("1.4 at /a", "1.5 at /before", "1.6 at /b"));
}

TEST_F(InstalledJavaVmTest, WithoutARuntimeTheListStaysAsItIs) {
  EXPECT_THAT(EnumerateAfterOne(), ElementsAre("1.5 at /before"));
}

TEST_F(InstalledJavaVmTest, ABrokenEnumerationLeavesNothingInTheList) {
  Install(m_system, Source64, "1.6", "/b");
  m_system.FailEnumeration(Source64, 1, 234);
  EXPECT_THAT(EnumerateAfterOne(), IsEmpty());
}

// --- The order ---

TEST_F(InstalledJavaVmTest, EnumeratingKeepsTheRegistrysOrderAndGettingSortsByVersion) {
  Install(m_system, Source64, "1.10", "/c");
  Install(m_system, Source64, "1.4.2", "/a");
  Install(m_system, Source64, "17", "/d");
  Install(m_system, Source32, "1.9", "/b");
  EXPECT_THAT(Enumerate(), ElementsAre("1.10 at /c", "1.4.2 at /a", "17 at /d", "1.9 at /b"));
  EXPECT_THAT(GetSorted(), ElementsAre("1.4.2 at /a", "1.9 at /b", "1.10 at /c", "17 at /d"));
}

TEST_F(InstalledJavaVmTest, MoreRuntimesThanTheListWasMadeForAreListed) {
  std::vector<std::string> expected;
  for (int i = 99; i >= 10; --i) {
    Install(m_system, Source64, "1." + std::to_string(i), "/jre" + std::to_string(i));
    expected.insert(expected.begin(), "1." + std::to_string(i) + " at /jre" + std::to_string(i));
  }
  EXPECT_THAT(GetSorted(), ElementsAreArray(expected));
}

TEST_F(InstalledJavaVmTest, WhenMemoryRunsOutEveryKeyIsClosed) {
  Install(m_system, Source64, "1.6", "/b");
  Install(m_system, Source32, "1.5", "/a");
  const int failures = FailEachAllocation(
      [&] {
        try {
          InstalledJavaVms vms(1, 1);
          EXPECT_EQ(GetInstalledJavaVms(vms), 2);
        } catch (const mirel::base::CMemoryException&) {
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_THAT(m_system.OpenKeys(), IsEmpty());
        EXPECT_EQ(allocations.Live(), 0u);
      });
  EXPECT_GE(failures, 10);
}

}  // namespace
}  // namespace tests
