// VMs that are created, refused and listed.
#include <cstdlib>

#include "fakes/Failure.h"
#include "realvm/OwnProcess.h"

namespace tests {
namespace {

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;
using torvan::jni::options::COptions;
using Vms = mirel::util::CVector<CJavaVm>;

const Failure refused = Throws<CJavaRuntimeException>("jni/DynamicJavaRuntimeImpl", 70,
                                                      "Failed to create Java VM with the specified options.");

TEST(CreationTest, WithoutAVmNoneIsCollected) {
  InOwnProcess([] {
    Vms vms(0, 1);
    EXPECT_EQ(Runtime().GetCreatedJavaVms(vms), 0u);
    EXPECT_EQ(vms.GetSize(), 0u);
  });
}

TEST(CreationTest, TheCreatedVmIsCollectedEachTimeAnew) {
  InOwnProcess([] {
    CDynamicJavaRuntime runtime = Runtime();
    const CJavaVm vm = runtime.CreateJavaVm(FixtureOptions(), false);
    Vms vms(0, 1);
    EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
    EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
    ASSERT_EQ(vms.GetSize(), 2u);
    EXPECT_TRUE(vms[0] == vm);
    EXPECT_TRUE(vms[1] == vm);
  });
}

// The VM allows one creation. After it has refused the second it no longer counts the first, which still runs; only a
// Java 8 does.
TEST(CreationTest, ASecondVmIsRefusedAndTheFirstNoLongerCollected) {
  InOwnProcess([] {
    CDynamicJavaRuntime runtime = Runtime();
    const CJavaVm vm = runtime.CreateJavaVm(FixtureOptions(), false);
    Vms vms(0, 1);
    EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
    EXPECT_EQ(FailureOf([&] { runtime.CreateJavaVm(FixtureOptions(), false); }), refused);
    const unsigned int counted = Property(vm, RX_TEXT("java.specification.version")) == "1.8" ? 1 : 0;
    EXPECT_EQ(runtime.GetCreatedJavaVms(vms), counted);
    EXPECT_EQ(vms.GetSize(), 1 + counted);
    EXPECT_EQ(vms[0].FindClass("java/lang/Math").CallStaticIntMethod("abs", "(I)I", -4), 4);
  });
}

TEST(CreationTest, AnUnsupportedJniVersionIsHandedOnAndRefused) {
  InOwnProcess([] {
    CDynamicJavaRuntime runtime = Runtime(0x00010003);
    EXPECT_EQ(runtime.GetJniVersion(), 0x00010003);
    EXPECT_EQ(FailureOf([&] { runtime.CreateJavaVm(FixtureOptions(), false); }), refused);
  });
}

TEST(CreationTest, UnrecognisedOptionsAreRefusedUnlessIgnored) {
  const struct {
    const char* name;
    void (*add)(COptions& options);
  } rows[] = {
      {"an empty class path", [](COptions& options) { options.AddOption(torvan::jni::options::CClassPath()); }},
      {"an empty library path", [](COptions& options) { options.AddOption(torvan::jni::options::CLibraryPath()); }},
      {"a text that says nothing",
       [](COptions& options) { options.AddOption(torvan::jni::options::CCustomOption(RX_TEXT("_nothing"))); }},
  };
  for (const auto& row : rows) {
    for (const bool ignoreUnrecognized : {false, true}) {
      SCOPED_TRACE(row.name);
      InOwnProcess([&] {
        COptions options = FixtureOptions();
        row.add(options);
        const Failure expected = ignoreUnrecognized ? Failure() : refused;
        EXPECT_EQ(FailureOf([&] { Runtime().CreateJavaVm(options, ignoreUnrecognized); }), expected);
      });
    }
  }
}

TEST(CreationTest, NoOptionsAreNeeded) {
  InOwnProcess([] {
    const CJavaVm vm = Runtime().CreateJavaVm(COptions(), false);
    EXPECT_EQ(Property(vm, RX_TEXT("java.class.path")), "");
  });
}

TEST(CreationTest, TheVmSurvivesAllHandlesAndIsFoundAgain) {
  InOwnProcess([] {
    Runtime()
        .CreateJavaVm(FixtureOptions(), false)
        .FindClass("fixture/Kinds$Counter")
        .SetStaticIntField("shared", "I", 5);
    Vms vms(0, 1);
    EXPECT_EQ(Runtime().GetCreatedJavaVms(vms), 1u);
    EXPECT_EQ(vms[0].FindClass("fixture/Kinds$Counter").GetStaticIntField("shared", "I"), 5);
  });
}

// The library stays loaded for an object alone.
TEST(CreationTest, AnObjectOutlivesTheHandlesThatMadeIt) {
  InOwnProcess([] {
    const CJavaString text = Runtime().CreateJavaVm(FixtureOptions(), false).NewString(RX_TEXT("text"));
    EXPECT_EQ(Utf8(text), "text");
    EXPECT_EQ(text.CallIntMethod("length", "()I"), 4);
  });
}

// A static double is read as a char. A checking VM (-Xcheck:jni) aborts at that; the abort is seen in the hook.
TEST(CreationTest, ReadingAStaticDoubleAbortsAVmThatChecks) {
  constexpr int ExitWithReport = 40;
  InOwnProcess(
      [] {
        using namespace torvan::jni::options;
        COptions options;
        options.AddOption(CCustomOption(RX_TEXT("-Xcheck:jni")));
        options.AddOption(CVfprintfHook(&TakeVmText));
        options.AddOption(CAbortHook([] {
          std::_Exit(VmText().find("FATAL ERROR in native method: ") != std::string::npos ? ExitWithReport : 0);
        }));
        Runtime().CreateJavaVm(options, false).FindClass("java/lang/Math").GetStaticDoubleField("PI", "D");
      },
      ExitWithReport);
}

}  // namespace
}  // namespace tests
