// What a host sees of the shared libraries through the public headers alone.
#include <fakes/Failure.h>
#include <torvan/Torvan.h>

#include <gtest/gtest.h>

#include <string>

namespace tests {
namespace {

using mirel::base::CClass;
using mirel::base::CException;
using mirel::base::CIllegalArgumentException;
using mirel::base::CObject;
using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJniException;
using torvan::jvmlauncher::CJavaVmLauncher;
using torvan::jvmlauncher::CJavaVmLauncherException;
namespace options = torvan::jni::options;
namespace launcher = torvan::jvmlauncher::options;

void LoadWhatIsNotThere() { CDynamicJavaRuntime(RX_TEXT("no such folder/no such library"), JNI_VERSION_1_6); }
void LaunchWhatIsNotInstalled() { CJavaVmLauncher(RX_TEXT("4000000000")); }

TEST(BorderTest, FailuresHaveTheirExactClassPlaceAndMessage) {
  EXPECT_EQ(FailureOf(LoadWhatIsNotThere),
            Throws<CJavaRuntimeException>("jni/WinJavaRuntimeLibraryImpl", 135, "Java Runtime library not found."));
  EXPECT_EQ(FailureOf([] { options::CVerbose(0); }),
            Throws<CIllegalArgumentException>("jni/options/Verbose", 41, "Invalid verbose flags."));
  EXPECT_EQ(FailureOf([] { CJavaVmLauncher(nullptr); }),
            Throws<CIllegalArgumentException>("jvmlauncher/JavaVmLauncherImplWin", 133, "Invalid vm version."));
  EXPECT_EQ(FailureOf([] { options::CClassPath().GetPathAt(0); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST(BorderTest, AFailureOfJniIsCaughtByItsClassAndByEveryBase) {
  EXPECT_THROW(LoadWhatIsNotThere(), CJavaRuntimeException);
  EXPECT_THROW(LoadWhatIsNotThere(), CJniException);
  EXPECT_THROW(LoadWhatIsNotThere(), CException);
  EXPECT_THROW(LoadWhatIsNotThere(), CObject);
}

TEST(BorderTest, AFailureOfTheLauncherIsCaughtByTheBaseOfAllButNotAsOneOfJni) {
  EXPECT_THROW(LaunchWhatIsNotInstalled(), CJavaVmLauncherException);
  try {
    LaunchWhatIsNotInstalled();
    FAIL() << "nothing thrown";
  } catch (const CJniException&) {
    FAIL() << "caught as a failure of jni";
  } catch (const CException& caught) {
    EXPECT_EQ(caught.GetClass(), &CJavaVmLauncherException::m_classCJavaVmLauncherException);
    EXPECT_FALSE(caught.IsInstanceOf(&CJniException::m_classCJniException));
  }
}

TEST(BorderTest, RecordsAreTheSameOnBothSides) {
  try {
    LoadWhatIsNotThere();
    FAIL() << "nothing thrown";
  } catch (const CException& caught) {
    EXPECT_EQ(caught.GetClass(), &CJavaRuntimeException::m_classCJavaRuntimeException);
    EXPECT_STREQ(caught.GetClass()->GetName(), "mirel::jni::CJavaRuntimeException");
    EXPECT_TRUE(caught.IsInstanceOf(&CJniException::m_classCJniException));
    EXPECT_TRUE(caught.IsInstanceOf(&CException::m_classCException));
  }
}

// A host's own stream.
class HostStream : public mirel::io::CPrintStream {
 public:
  void Print(const char* text) override { m_text += text; }
  const std::string& Text() const { return m_text; }

 private:
  std::string m_text;
};

TEST(BorderTest, FailuresPrintToTheHostsStream) {
  HostStream stream;
  try {
    LoadWhatIsNotThere();
    FAIL() << "nothing thrown";
  } catch (const CException& caught) {
    caught.Print(stream);
  }
  EXPECT_EQ(stream.Text(),
            "mirel::jni::CJavaRuntimeException: Java Runtime library not found. at "
            "jni/WinJavaRuntimeLibraryImpl:135\n");
}

// A host's own failure, which passes through the library.
class HostException : public CJniException {
 public:
  HostException() : CJniException("host", 1, "Host failed.", nullptr) {}
};

// A host's own option.
class HostOption : public options::COption {
 public:
  mirel::base::CUnicodeString GetOptionString() const override { return RX_TEXT("-host"); }
  void* GetExtraInfo() const override { return nullptr; }
  CObject* Clone() const override { return new HostOption; }
  bool Equals(const CObject*) const override { throw HostException(); }
};

TEST(BorderTest, AHostsFailureInsideTheLibraryIsCaughtThereByItsBase) {
  HostStream stream;
  mirel::io::CPrintStream* const previous = mirel::base::CSystem::debugOut;
  mirel::base::CSystem::debugOut = &stream;
  options::COptions set;
  set.AddOption(HostOption());
  set.RemoveOption(HostOption());
  mirel::base::CSystem::debugOut = previous;
  EXPECT_EQ(set.GetOptionCount(), 1u);
  EXPECT_EQ(stream.Text(), "torvan::jni::CJniException: Host failed. at host:1\n");
}

TEST(BorderTest, EitherSideDeletesWhatTheOtherMade) {
  const options::CCustomOption option(RX_TEXT("-Xint"));
  CObject* const clone = option.Clone();
  EXPECT_TRUE(option.Equals(clone));
  delete clone;

  options::COptions set;
  set.AddOption(HostOption());  // the library deletes the host's clone
  EXPECT_STREQ(set.GetOptionAt(0).GetOptionString().ToUTF8(), "-host");
}

TEST(BorderTest, LauncherOptionsAreObjectsOfTheFoundation) {
  EXPECT_TRUE(launcher::CDirectOption(RX_TEXT("-ea")).IsInstanceOf(&CObject::m_classCObject));
}

TEST(BorderTest, StartsUpAndShutsDown) {
  EXPECT_EQ(torvan::Initialize(), 1);
  EXPECT_EQ(torvan::Initialize(), 2);
  EXPECT_EQ(torvan::Terminate(), 1);
  EXPECT_EQ(torvan::Terminate(), 0);
  EXPECT_EQ(torvan::Terminate(), 0);
}

}  // namespace
}  // namespace tests
