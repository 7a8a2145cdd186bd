// Start options, as Java sees them.
#include "fakes/Failure.h"
#include "realvm/OwnProcess.h"

namespace tests {
namespace {

using torvan::jni::CJavaClass;
using torvan::jni::CJavaVm;
using namespace torvan::jni::options;

CJavaVm VmWith(const COptions& options) { return Runtime().CreateJavaVm(options, false); }

TEST(OptionsTest, ClassesAreFoundInEveryFolderOfTheClassPath) {
  InOwnProcess([] {
    CClassPath classPath;
    classPath.AddPath(RX_TEXT("") TORVAN_TEST_CLASSES);
    classPath.AddPath(RX_TEXT("") TORVAN_TEST_OTHER_CLASSES);
    const CJavaVm vm = VmWith(With(classPath));
    const std::string separator = Property(vm, RX_TEXT("path.separator"));
    EXPECT_EQ(Property(vm, RX_TEXT("java.class.path")),
              TORVAN_TEST_CLASSES + separator + TORVAN_TEST_OTHER_CLASSES + separator);
    EXPECT_EQ(vm.FindClass("fixture/Kinds$Counter").NewObject("()V").GetIntField("count", "I"), 0);
    EXPECT_EQ(vm.FindClass("fixture/Elsewhere").CallStaticIntMethod("answer", "()I"), 42);
  });
}

TEST(OptionsTest, AClassThatIsNotInTheClassPathIsNotFound) {
  InOwnProcess([] {
    CClassPath classPath;
    classPath.AddPath(RX_TEXT("") TORVAN_TEST_CLASSES);
    const CJavaVm vm = VmWith(With(classPath));
    EXPECT_THROW(vm.FindClass("fixture/Elsewhere"), torvan::jni::CJavaVmException);
    EXPECT_EQ(TakePending(vm.Attach()), "java.lang.NoClassDefFoundError");
  });
}

TEST(OptionsTest, NativeLibrariesAreFoundInTheLibraryPath) {
  InOwnProcess([] {
    CLibraryPath libraryPath;
    libraryPath.AddPath(RX_TEXT("nowhere"));
    libraryPath.AddPath(RX_TEXT("") TORVAN_TEST_NATIVE_FOLDER);
    COptions options = FixtureOptions();
    options.AddOption(libraryPath);
    const CJavaVm vm = VmWith(options);
    EXPECT_EQ(vm.FindClass("fixture/NativeAnswer").CallStaticIntMethod("answer", "(I)I", 20), 41);
  });
}

TEST(OptionsTest, WithoutTheLibraryPathANativeLibraryIsNotFound) {
  InOwnProcess([] {
    const CJavaVm vm = VmWith(FixtureOptions());
    EXPECT_THROW(vm.FindClass("fixture/NativeAnswer"), torvan::jni::CJavaVmException);
    EXPECT_EQ(TakePending(vm.Attach()), "java.lang.UnsatisfiedLinkError");
  });
}

// The VM takes option texts in the encoding of the system, which is UTF-8 where these tests run.
TEST(OptionsTest, SystemPropertiesReachJava) {
  InOwnProcess([] {
    const struct {
      const RX::UniChar* name;
      const RX::UniChar* value;
      const char* expected;
    } rows[] = {
        {RX_TEXT("torvan.plain"), RX_TEXT("a value = with signs;:"), "a value = with signs;:"},
        {RX_TEXT("torvan.latin"), RX_TEXT("gr\u00F6\u00DFe"),
         "gr\xC3\xB6\xC3\x9F"
         "e"},
        {RX_TEXT("torvan.han"), RX_TEXT("\u6F22\u5B57"), "\xE6\xBC\xA2\xE5\xAD\x97"},
        {RX_TEXT("torvan.emoji"), RX_TEXT("\U0001F600"), "\xF0\x9F\x98\x80"},
        {RX_TEXT("torvan.\u00E9"), RX_TEXT("name"), "name"},
    };
    COptions options;
    AddOptionFromEnvironment(options);
    for (const auto& row : rows) options.AddOption(CSystemProperty(row.name, row.value));
    const CJavaVm vm = VmWith(options);
    ASSERT_EQ(Property(vm, RX_TEXT("sun.jnu.encoding")), "UTF-8");
    for (const auto& row : rows) EXPECT_EQ(Property(vm, row.name), row.expected);
    EXPECT_EQ(Property(vm, RX_TEXT("torvan.none")), "(null)");
  });
}

TEST(OptionsTest, TheLaterOfTwoEqualOptionsCounts) {
  InOwnProcess([] {
    COptions options = With(CSystemProperty(RX_TEXT("torvan.twice"), RX_TEXT("first")));
    options.AddOption(CSystemProperty(RX_TEXT("torvan.twice"), RX_TEXT("second")));
    EXPECT_EQ(Property(VmWith(options), RX_TEXT("torvan.twice")), "second");
  });
}

TEST(OptionsTest, ACustomOptionReachesTheVm) {
  InOwnProcess([] {
    const CJavaVm vm = VmWith(With(CCustomOption(RX_TEXT("-Xmx64m"))));
    const torvan::jni::CJavaObject runtime =
        vm.FindClass("java/lang/Runtime").CallStaticObjectMethod("getRuntime", "()Ljava/lang/Runtime;");
    // Some collectors do not count all of it.
    EXPECT_EQ(runtime.CallLongMethod("maxMemory", "()J") / (48 * 1024 * 1024), 1);
  });
}

// Current VMs know each report by itself, and accept a list of them without any report.
TEST(OptionsTest, VerboseVmsReport) {
  const struct {
    unsigned int flags;
    bool classes;
    bool garbage;
  } rows[] = {{1, true, false}, {2, false, true}, {3, false, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.flags);
    InOwnProcess([&row] {
      COptions options = With(CVerbose(row.flags));
      options.AddOption(CVfprintfHook(&TakeVmText));
      VmWith(options).FindClass("java/lang/System").CallStaticVoidMethod("gc", "()V");
      const std::string text = VmText();
      EXPECT_EQ(text.find("java.lang.Object") != std::string::npos, row.classes);
      // The second is Java 8's.
      EXPECT_EQ(text.find("[gc") != std::string::npos || text.find("GC (System.gc())") != std::string::npos,
                row.garbage);
    });
  }
}

}  // namespace
}  // namespace tests
