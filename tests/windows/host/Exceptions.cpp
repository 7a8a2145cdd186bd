// Exceptions that a DLL throws and the host catches: by value, by the exact class, by each base, across frames with
// objects to destroy; and exceptions that the host throws itself.
#include "Check.h"

using namespace torvan;
using mirel::base::CException;
using mirel::base::CIllegalArgumentException;
using mirel::base::CMemoryException;
using mirel::base::CObject;

namespace {

using host::IsCaughtAs;
using host::Same;
using host::Throws;

void LoadWhatIsMissing() { jni::CDynamicJavaRuntime(L"C:\\no\\such\\jvm.dll", JNI_VERSION_1_6); }
void LaunchWhatIsMissing() { jvmlauncher::CJavaVmLauncher(L"4000000000"); }
void GiveNoFlags() { jni::options::CVerbose(0); }

class HostStream : public mirel::io::CPrintStream {
 public:
  void Print(const char* text) override { std::strncat(m_text, text, sizeof(m_text) - std::strlen(m_text) - 1); }
  const char* Text() const { return m_text; }

 private:
  char m_text[512] = "";
};

// Counts what is destroyed on the way of an exception.
struct Witness {
  explicit Witness(int& destroyed) : m_destroyed(destroyed) {}
  ~Witness() { ++m_destroyed; }

 private:
  int& m_destroyed;
};

void CheckClasses() {
  CHECK(Throws<jni::CJavaRuntimeException>(LoadWhatIsMissing, "jni/WinJavaRuntimeLibraryImpl", 135,
                                           "Java Runtime library not found.",
                                           jni::CJavaRuntimeException::m_classCJavaRuntimeException));
  CHECK(IsCaughtAs<jni::CJniException>(LoadWhatIsMissing));
  CHECK(IsCaughtAs<CException>(LoadWhatIsMissing));
  CHECK(IsCaughtAs<CObject>(LoadWhatIsMissing));
  CHECK(IsCaughtAs<mirel::base::CBase>(LoadWhatIsMissing));
  CHECK(!IsCaughtAs<jni::CJavaVmException>(LoadWhatIsMissing));

  CHECK(IsCaughtAs<jvmlauncher::CJavaVmLauncherException>(LaunchWhatIsMissing));
  CHECK(IsCaughtAs<CException>(LaunchWhatIsMissing));
  CHECK(!IsCaughtAs<jni::CJniException>(LaunchWhatIsMissing));

  CHECK(Throws<CIllegalArgumentException>(GiveNoFlags, "jni/options/Verbose", 41, "Invalid verbose flags.",
                                          CIllegalArgumentException::m_classCIllegalArgumentException));
}

void CheckPassage() {
  int destroyed = 0;
  try {
    const Witness outer(destroyed);
    try {
      const Witness inner(destroyed);
      LoadWhatIsMissing();
    } catch (const jni::CJniException&) {
      throw;
    }
  } catch (CException copy) {  // by value: the host makes a copy of the base
    CHECK(destroyed == 2);
    CHECK(copy.GetSourceLine() == 135);
    CHECK(copy.GetClass() == &CException::m_classCException);
  }

  try {
    throw jni::CJavaException(L"acme.Failure", L"broken", L"\tat acme");
  } catch (const jni::CJniException& thrown) {
    const auto& exception = static_cast<const jni::CJavaException&>(thrown);
    CHECK(Same(exception.GetJavaExceptionClassName(), L"acme.Failure"));
    CHECK(Same(exception.GetJavaMessage(), L"broken"));
    CHECK(Same(exception.GetJavaStackTrace(), L"\tat acme"));
    HostStream stream;
    thrown.Print(stream);
    CHECK(std::strncmp(stream.Text(), "--- Java Exception occured ---", 30) == 0);
  }
}

void CheckMemory() {
  const RX::Allocator previous = RX::ReplaceAllocator({[](std::size_t) -> void* { return nullptr; }, nullptr});
  const bool caught = IsCaughtAs<CMemoryException>([] { new jni::options::CClassPath(); });
  RX::ReplaceAllocator(previous);
  CHECK(caught);
}

}  // namespace

void host::CheckExceptions() {
  CheckClasses();
  CheckPassage();
  CheckMemory();
}
