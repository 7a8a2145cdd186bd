// VMs that start, and the messages of those that do not.
#include <ThisSystem.h>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

#include "java/realvm/OwnProcess.h"
#include "java/runtimes/Headers.h"

namespace tests {
namespace {

using java::StartFailure;
using java::StartVm;
using java::VmSettings;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string TextOf(jobject string) { return java::detail::ReadUtf8(java::detail::Env(), static_cast<jstring>(string)); }

std::string Property(const char* name) {
  JNIEnv* const env = java::detail::Env();
  const auto type = java::Adopt<java::Class>(env->FindClass("java/lang/System"));
  const auto system = static_cast<jclass>(type.Get());
  const jmethodID get = env->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
  const auto key = NewText(name);
  const auto value = java::Adopt(env->CallStaticObjectMethod(system, get, key.Get()));
  return value ? TextOf(value.Get()) : "(null)";
}

TEST(VmStartTest, SettingsReachTheVm) {
  // On Windows a VM takes its options in the system's code page, which may have no more than ASCII.
  static constexpr const char* Text = OnThisSystem("Zurich = 1", "Z\xC3\xBCrich = 1");
  InOwnProcess([] {
    VmSettings settings = FixtureSettings();
    settings.Property("fixture.empty", "").Property("fixture.text", Text).Option("-Dfixture.option=2");
    settings.Option("-XX:+UseSerialGC").Option("-XX:-UseSerialGC").Option("-XX:+UseG1GC");  // the last counts
    const java::Vm vm = StartVm(settings.MaximumHeap(BeforeJava9() ? "48m" : "0x30m"));
    EXPECT_EQ(Property("fixture.empty"), "");
    EXPECT_EQ(Property("fixture.text"), Text);
    EXPECT_EQ(Property("fixture.option"), "2");
    EXPECT_THAT(Property("java.class.path"), HasSubstr("classes"));
    EXPECT_EQ(CallStaticInt("fixture/Vms", "heapMegabytes", "()I"), 48);
  });
}

// Where Java itself says that it is: a kit of version 8 has a runtime in it.
std::string JavaHomeIn(const std::filesystem::path& home) {
  return (exists(home / "jre/lib/rt.jar") ? home / "jre" : home).string();
}

TEST(VmStartTest, WithoutARuntimeTheOneOfTheMachineIsTaken) {
  const std::filesystem::path library = std::getenv("TORVAN_TEST_LIBJVM");
  std::filesystem::path home = library.parent_path().parent_path().parent_path().make_preferred();
  if (BeforeJava9()) {
    while (home.has_relative_path() && !exists(home / "release")) home = home.parent_path();
    if (!home.has_relative_path()) GTEST_SKIP() << "this runtime does not tell its version: it has no release file";
  }
  InOwnProcess([&] {
    SetVariable("JAVA_HOME", home.string().c_str());
    const java::Vm vm = StartVm();
    EXPECT_EQ(Property("java.home"), JavaHomeIn(home));
  });
  InOwnProcess([] {
    const java::Vm vm = StartVm(VmSettings().Runtime(java::ChooseRuntime()));
    EXPECT_EQ(Property("java.home"), JavaHomeIn(java::ChooseRuntime().Home()));
  });
}

TEST(VmStartTest, TheCreatingThreadIsADaemonWithAContextClassLoader) {
  InOwnProcess([] {
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(CallStaticInt("fixture/Vms", "isDaemon", "()I"), 1);
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 1);
  });
}

// As Java's own launcher takes it.
TEST(VmStartTest, AStarMeansTheArchivesOfTheFolder) {
  const std::filesystem::path folder = std::filesystem::absolute("archives");
  std::filesystem::create_directory(folder);
  for (const char* name : {"b.JAR", "a.jar", "c.txt"}) std::ofstream(folder / name) << "none";
  for (const std::filesystem::path& part : {folder / "*", std::filesystem::path("*")}) {
    SCOPED_TRACE(part);
    InOwnProcess([&] {
      VmSettings settings;
      if (const char* const library = std::getenv("TORVAN_TEST_LIBJVM")) settings.Runtime(library);
      std::filesystem::current_path(folder);
      settings.ClassPath({part});
      const java::Vm vm = StartVm(settings);
      EXPECT_THAT(Property("java.class.path"), testing::MatchesRegex(".*a\\.jar.*b\\.JAR"));
    });
  }
  std::filesystem::remove_all(folder);
}

TEST(VmStartTest, APathThatJavaCannotReadInTheLocaleIsRefused) {
  if (OnWindows) GTEST_SKIP() << "paths do not depend on a locale here";
  const std::filesystem::path folder = std::filesystem::absolute("Z\xC3\xBCrich");
  std::filesystem::create_directory(folder);
  InOwnProcess([&] {
    SetVariable("LC_ALL", "C");
    EXPECT_THAT(WhatOf<StartFailure>([&] { const java::Vm vm = StartVm(FixtureSettings().ClassPath({folder})); }),
                AllOf(StartsWith("The option -Djava.class.path="), HasSubstr("Z\xC3\xBCrich has a character that ")));
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(WhatOf<java::Misuse>([&] { java::ClassLoader::OfJars({folder}); }),
              "Java does not find " + folder.string() +
                  ", which is there: it takes the names of files in ANSI_X3.4-1968, the encoding of this process's "
                  "locale");
  });
  InOwnProcess([&] {
    SetVariable("LC_ALL", "C.UTF-8");
    const java::Vm vm = StartVm(FixtureSettings().ClassPath({folder}));
    EXPECT_THAT(Property("java.class.path"), HasSubstr(folder.string()));
    java::ClassLoader::OfJars({folder});
  });
  std::filesystem::remove(folder);
}

// The settings must be refused with a text that begins so, and the process must be able to start a VM afterwards.
void ExpectRefused(const std::function<void(VmSettings&)>& set, const std::string& text) {
  InOwnProcess([&] {
    VmSettings settings = FixtureSettings();
    set(settings);
    EXPECT_THAT(WhatOf<StartFailure>([&] { const java::Vm vm = StartVm(settings); }), StartsWith(text));
    EXPECT_EQ(WhatOf<java::Misuse>([] { const java::Thread thread; }), "No Java VM runs: call StartVm or JoinVm first");
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(CallStaticInt("fixture/Vms", "isDaemon", "()I"), 1);
  });
}

TEST(VmStartTest, WhatIsRefusedIsNamedAndAVmCanStillBeStarted) {
  const Note noLibrary;
  std::ofstream(noLibrary.Path()) << "no library";
  const struct {
    const char* name;
    std::function<void(VmSettings&)> set;
    std::string text;
  } rows[] = {
      {"no runtime", [](VmSettings& s) { s.Runtime("no/such/folder"); },
       "The Java runtime no/such/folder is not there"},
      {"a folder without a VM", [](VmSettings& s) { s.Runtime("."); }, "No Java runtime that will do is in "},
      {"no library at all", [&](VmSettings& s) { s.Runtime(noLibrary.Path()); },
       "The Java VM library " + noLibrary.Path() + " cannot be loaded: "},
      {"a class path part", [](VmSettings& s) { s.ClassPath({"no/such.jar"}); },
       "The class path part no/such.jar is not there"},
      {"a folder of archives", [](VmSettings& s) { s.ClassPath({"no/such/*"}); },
       "The class path part no/such is not there"},
      {"a file of archives", [&](VmSettings& s) { s.ClassPath({noLibrary.Path() + "/*"}); },
       "The class path part " + noLibrary.Path() + " cannot be read: "},
      {"a module path part", [](VmSettings& s) { s.ModulePath({"no/such"}); },
       "The module path part no/such is not there"},
      {"several parts in one", [](VmSettings& s) { s.ClassPath({OnThisSystem("a.jar;b.jar", "a.jar:b.jar")}); },
       OnThisSystem("The class path part a.jar;b.jar is not there: give each part by itself",
                    "The class path part a.jar:b.jar is not there: give each part by itself")},
      {"two collectors", [](VmSettings& s) { s.Option("-XX:+UseSerialGC").Option("-XX:+UseParallelGC"); },
       "The option -XX:+UseParallelGC cannot be used: a Java VM has one garbage collector, and -XX:+UseSerialGC is "
       "given, too"},
      {"a hexadecimal size too small", [](VmSettings& s) { s.MaximumHeap("0x1fFk"); },
       "The option -Xmx0x1fFk cannot be used: the heap has 2 MiB at least"},
      {"a hexadecimal size beyond 64 bits", [](VmSettings& s) { s.MaximumHeap("0x10000000000000000"); },
       "The option -Xmx0x10000000000000000 cannot be used: a size is"},
      {"hexadecimal digits alone", [](VmSettings& s) { s.MaximumHeap("40a"); },
       "The option -Xmx40a cannot be used: a size is"},
      {"a size in words", [](VmSettings& s) { s.MaximumHeap("much"); },
       "The option -Xmxmuch cannot be used: a size is a number of bytes, or a number with k, m, g or t"},
      {"a size of an unknown unit", [](VmSettings& s) { s.MaximumHeap("64q"); },
       "The option -Xmx64q cannot be used: a size is a number of bytes, or a number with k, m, g or t"},
      {"a size beyond 64 bits", [](VmSettings& s) { s.MaximumHeap("99999999999999999999"); },
       "The option -Xmx99999999999999999999 cannot be used: a size is"},
      {"a heap too small", [](VmSettings& s) { s.MaximumHeap("1k"); },
       "The option -Xmx1k cannot be used: the heap has 2 MiB at least"},
      {"a heap too large", [](VmSettings& s) { s.MaximumHeap("100000t"); },
       "The option -Xmx100000t cannot be used: the system has no address space of that size"},
      {"more at first than at most", [](VmSettings& s) { s.MaximumHeap("64m").Option("-Xms128m"); },
       "The option -Xms128m cannot be used: it is more than -Xmx64m"},
      {"the same in other words",
       [](VmSettings& s) { s.Option("-XX:MaxHeapSize=64m").Option("-XX:InitialHeapSize=128m"); },
       "The option -XX:InitialHeapSize=128m cannot be used: it is more than -XX:MaxHeapSize=64m"},
      {"an agent's archive", [](VmSettings& s) { s.Agent("no/such.jar", "a=b"); },
       "The option -javaagent:no/such.jar=a=b cannot be used: there is no file no/such.jar"},
      {"an agent's library", [](VmSettings& s) { s.Agent("no/such.so"); },
       "The option -agentpath:no/such.so cannot be used: there is no file no/such.so"},
      {"an agent by name", [](VmSettings& s) { s.Agent("nosuch"); },
       "The option -agentlib:nosuch cannot be used: no library "},
      {"an empty option", [](VmSettings& s) { s.Option(""); },
       "An option of the Java VM is empty or has a NUL in it: \"\""},
      {"a NUL", [](VmSettings& s) { s.Property("a", std::string_view("b\0c", 3)); },
       "An option of the Java VM is empty or has a NUL in it: \"-Da=b\""},
      {"no name", [](VmSettings& s) { s.Property("a=b", "c"); }, "\"a=b\" is no name of a system property"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectRefused(row.set, row.text);
  }
}

TEST(VmStartTest, ALibraryThatIsNoVmSaysWhatItLacks) {
  const Note other;
  std::ofstream(other.Path(), std::ios::binary) << ElfHeader(183);  // aarch64
  const struct {
    std::string library;
    std::string text;
  } rows[] = {
      {TORVAN_TEST_WITHOUT_CREATE, TORVAN_TEST_WITHOUT_CREATE " is no Java VM library: it has no JNI_CreateJavaVM"},
      {TORVAN_TEST_WITHOUT_LIST, TORVAN_TEST_WITHOUT_LIST " is no Java VM library: it has no JNI_GetCreatedJavaVMs"},
      {other.Path(),
       "The Java VM library " + other.Path() + " cannot be loaded: it is for aarch64, and this program for "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.library);
    ExpectRefused([&](VmSettings& s) { s.Runtime(row.library); }, row.text);
  }
}

TEST(VmStartTest, AModuleThatTheRuntimeDoesNotHaveIsNamed) {
  SKIP_BEFORE_JAVA_9("there are no modules");
  ExpectRefused([](VmSettings& s) { s.Option("--add-modules=java.base,no.such"); },
                "The option --add-modules=java.base,no.such cannot be used: the runtime has no module no.such, and no "
                "module path is given");
}

// The table of JNI's functions is exchanged while threads call through it.
TEST(VmStartTest, FailuresAreMadeReadableWhileThreadsCall) {
  InOwnProcess([] {
    const java::Vm vm = StartVm(FixtureSettings());
    std::atomic<bool> isReadable{false};
    std::atomic<int> calling{0};
    std::vector<torvan::jni::CJavaObject> objects;  // one for each thread, made here: handles count without atomics
    for (int i = 0; i < 4; ++i) objects.push_back(java::Handle(java::NewString("a")));
    std::vector<std::thread> threads;
    for (const torvan::jni::CJavaObject& object : objects) {
      threads.emplace_back([&] {
        const java::Thread thread;  // a daemon, which the end does not wait for
        for (int more = 1000; more > 0; more -= isReadable ? 1 : 0) {
          const java::LocalFrame frame;
          if (object.CallIntMethod("hashCode", "()I") != 'a') std::abort();
          ++calling;
        }
      });
    }
    while (calling < 1000) std::this_thread::yield();
    EXPECT_TRUE(java::MakeFailuresReadable());
    isReadable = true;
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(java::MakeFailuresReadable());
    // What the fixed interface asks for, and a VM has only then.
    JNIEnv* const env = java::detail::Env();
    const jmethodID id = env->GetMethodID(static_cast<jclass>(java::detail::ClassOf<java::Object>(env)), "getClass",
                                          "()Ljava/lang/String;");
    EXPECT_NE(id, nullptr);
    env->ExceptionClear();
  });
}

TEST(VmStartTest, AVmWithoutJvmtiSaysThatTheReasonIsLost) {
  InOwnProcess([] {
    SetVariable("TORVAN_TEST_VM_OPTION", "");  // checks would report how the fixed interface reads what is pending
    const java::Vm vm = StartVm(FixtureSettings());
    JavaVM* const raw = java::detail::runningVm;
    static const JNIInvokeInterface_* const real = raw->functions;
    static JNIInvokeInterface_ table = *real;
    table.GetEnv = [](JavaVM* asked, void** env, jint version) -> jint {
      constexpr jint toolsInterface = 0x30000000;
      return (version & toolsInterface) != 0 ? JNI_EVERSION : real->GetEnv(asked, env, version);
    };
    raw->functions = &table;
    const java::LocalFrame frame;
    EXPECT_FALSE(java::MakeFailuresReadable());
    const torvan::jni::CJavaVm& fixed = vm.Handle();
    const auto call = [&] { fixed.FindClass("fixture/Throwing").CallStaticIntMethod("sharedInt", "()I"); };
    EXPECT_EQ(WhatOf<java::Failure>([&] { java::Guard(call); }),
              "Java threw an exception that the fixed interface could not read; this Java VM does not let it");
    EXPECT_EQ(WhatOf<java::Error>([&] { java::Guard([&] { fixed.FindClass("no/Such"); }); }),
              "java.lang.NoClassDefFoundError: no/Such");
  });
}

// What the VM itself refuses, with its words, the option and the runtime.
TEST(VmStartTest, WhatTheVmRefusesIsToldWithItsOwnWords) {
  const struct {
    const char* name;
    std::function<void(VmSettings&)> set;
    std::vector<std::string> parts;
  } rows[] = {
      {"an option",
       [](VmSettings& s) { s.Option("-foo"); },
       {"The Java VM was not created: it refuses the options (JNI_ERR). It printed: Unrecognized option: -foo. "
        "The runtime is "}},
      {"a switch",
       [](VmSettings& s) { s.Option("-XX:+Nope"); },
       {"it refuses the options (JNI_EINVAL). It printed: Unrecognized VM option 'Nope'. The option is -XX:+Nope. "}},
      {"a version of JNI",
       [](VmSettings& s) { s.JniVersion(0x00200000); },
       {"The Java VM was not created: it does not offer the JNI version that was asked for (JNI_EVERSION). The "}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    InOwnProcess(
        [&] {
          VmSettings settings = FixtureSettings();
          row.set(settings);
          const std::string text = WhatOf<StartFailure>([&] { const java::Vm vm = StartVm(settings); });
          for (const std::string& part : row.parts) EXPECT_THAT(text, HasSubstr(part));
        },
        {0, testing::Not(HasSubstr("Unrecognized"))});
  }
}

// The VM would start, and find no class.
TEST(VmStartTest, AfterOptionsThatTheVmRefusedAClassPathIsRefused) {
  InOwnProcess([] {
    EXPECT_THAT(WhatOf<StartFailure>([] { const java::Vm vm = StartVm(FixtureSettings().Option("-foo")); }),
                HasSubstr("Unrecognized option: -foo"));
    EXPECT_EQ(WhatOf<StartFailure>([] { const java::Vm vm = StartVm(FixtureSettings()); }),
              "The Java VM has refused options in this process before, and would ignore the class path now: start it "
              "in another process, or without a class path");
    VmSettings settings;
    if (const char* const library = std::getenv("TORVAN_TEST_LIBJVM")) settings.Runtime(library);
    EXPECT_THAT(WhatOf<StartFailure>([&] {
                  const java::Vm vm = StartVm(VmSettings(settings).Property("java.library.path", TORVAN_TEST_CLASSES));
                }),
                HasSubstr("would ignore the library path now"));
    const java::Vm vm = StartVm(settings);
    EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -7), 7);
    EXPECT_NE(WhatOf<java::Error>([] { java::FindClass("fixture/Vms"); }), "nothing");
    java::ClassLoader::OfJars({TORVAN_TEST_CLASSES}).FindClass("fixture/Vms");
  });
}

TEST(VmStartTest, AfterAVersionThatTheVmRefusedAClassPathCounts) {
  InOwnProcess([] {
    EXPECT_NE(WhatOf<StartFailure>([] { const java::Vm vm = StartVm(FixtureSettings().JniVersion(0x00200000)); }),
              "nothing");
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(CallStaticInt("fixture/Vms", "isDaemon", "()I"), 1);
  });
}

TEST(VmStartTest, ASecondVmIsRefusedAndTheFirstGoesOn) {
  InOwnProcess([] {
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(WhatOf<StartFailure>([] { const java::Vm second = StartVm(FixtureSettings()); }),
              "This process has a Java VM already; a process can have one, and only once");
    EXPECT_EQ(CallStaticInt("fixture/Vms", "isDaemon", "()I"), 1);
  });
}

TEST(VmStartTest, AVmOfTheFixedInterfaceIsNotStartedAgainButJoined) {
  InOwnProcess([] {
    const torvan::jni::CJavaVm fixed = FixedVm();
    EXPECT_EQ(WhatOf<StartFailure>([] { const java::Vm second = StartVm(FixtureSettings()); }),
              "This process has a Java VM already; a process can have one, and only once; join it with JoinVm()");
    java::Vm vm = java::JoinVm();
    EXPECT_TRUE(vm.Handle() == fixed);
    EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -7), 7);
    EXPECT_EQ(WhatOf<java::Misuse>([&] { vm.End(); }),
              "This Vm does not own the Java VM: it was joined, released or moved");
    const java::Vm again = java::JoinVm(fixed);
    EXPECT_TRUE(again.Handle() == fixed);
  });
}

TEST(VmStartTest, JoiningLeavesWhatIsPending) {
  InOwnProcess([] {
    JNIEnv* const env = FixedVm().Attach();
    env->ThrowNew(env->FindClass("java/lang/IllegalStateException"), "left pending");
    const java::Vm vm = java::JoinVm();
    EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
    const auto pending = java::TakePending();
    ASSERT_TRUE(pending.has_value());
    EXPECT_STREQ(pending->what(), "java.lang.IllegalStateException: left pending");
  });
}

TEST(VmStartTest, WithoutAVmNothingIsJoined) {
  InOwnProcess([] { EXPECT_EQ(WhatOf<StartFailure>([] { java::JoinVm(); }), "No Java VM runs in this process"); });
  InOwnProcess([] {
    EXPECT_EQ(WhatOf<StartFailure>([] { java::JoinVm(static_cast<JavaVM*>(nullptr)); }),
              "null is passed as the Java VM to join");
  });
}

TEST(VmStartTest, AnAgentRunsAndHasItsOptions) {
  static constexpr const char* Options = "first=1,second=two words";
  InOwnProcess([] {
    const java::Vm vm = StartVm(FixtureSettings().Property("fixture.agent", "").Agent(TORVAN_TEST_AGENT, Options));
    EXPECT_EQ(Property("fixture.agent"), Options);
  });
  InOwnProcess([] {
    const java::Vm vm = StartVm(FixtureSettings().Property("fixture.agent", "").Agent(TORVAN_TEST_AGENT));
    EXPECT_EQ(Property("fixture.agent"), "no options");
  });
}

}  // namespace
}  // namespace tests
