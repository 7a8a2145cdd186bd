// Uses the installed library as a host does, without a Java VM. Prints what is wrong; exit code 0 when nothing is.
#include <torvan/Torvan.h>

#include <cstdio>
#include <cstring>

namespace {

using mirel::base::CException;
using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJniException;
namespace options = torvan::jni::options;

int checks = 0;
int failures = 0;

void Check(bool holds, const char* claim) {
  ++checks;
  if (holds) return;
  ++failures;
  std::printf("consumer: not true: %s\n", claim);
}

bool Same(const char* text, const char* expected) { return text != nullptr && std::strcmp(text, expected) == 0; }

void CheckVersion() {
  char text[40];
  std::snprintf(text, sizeof text, "%d.%d.%d", TORVAN_VERSION_MAJOR, TORVAN_VERSION_MINOR, TORVAN_VERSION_PATCH);
  Check(Same(text, TORVAN_VERSION_STRING), "the version's text is made of its numbers");
  Check(Same(TORVAN_VERSION_STRING, PACKAGE_VERSION), "headers and package have the same version");
  Check(TORVAN_VERSION_NUMBER >= 10000, "the version can be compared as one number");
}

void CheckOptions() {
  options::COptions start;
  start.AddOption(options::CSystemProperty(RX_TEXT("user.dir"), RX_TEXT("work")));
  start.AddOption(options::CCustomOption(RX_TEXT("-Xmx64m")));
  JavaVMOption* const rendered = start.CreateJniOptions();
  Check(Same(rendered[0].optionString, "-Duser.dir=work"), "a system property is rendered");
  Check(Same(rendered[1].optionString, "-Xmx64m"), "an option is rendered as it is");
  start.DestroyJniOptions(rendered);
  start.RemoveOption(options::CCustomOption(RX_TEXT("-Xmx64m")));
  Check(start.GetOptionCount() == 1, "an option is found by its contents");
}

// A host's own failure, which passes through the library.
class HostException : public CJniException {
 public:
  HostException() : CJniException("host", 1, "Host failed.", nullptr) {}
};

class FailingOption : public options::COption {
 public:
  mirel::base::CUnicodeString GetOptionString() const override { return RX_TEXT("-host"); }
  void* GetExtraInfo() const override { return nullptr; }
  mirel::base::CObject* Clone() const override { throw HostException(); }
};

void CheckFailures() {
  try {
    CDynamicJavaRuntime(RX_TEXT("no such folder/no such library"), JNI_VERSION_1_6);
    Check(false, "a library that is not there cannot be loaded");
  } catch (const CException& caught) {
    Check(Same(caught.GetMessageText(), "Java Runtime library not found."), "a failure says what is wrong");
    Check(Same(caught.GetSourceFile(), "jni/WinJavaRuntimeLibraryImpl"), "a failure says where");
    Check(caught.GetClass() == &CJavaRuntimeException::m_classCJavaRuntimeException, "records are one for all modules");
    Check(caught.IsInstanceOf(&CJniException::m_classCJniException), "records know their parents");
  }
  try {
    options::COptions start;
    start.AddOption(FailingOption());
    Check(false, "a host's failure passes through the library");
  } catch (const CJniException& caught) {
    Check(Same(caught.GetMessageText(), "Host failed."), "a host's failure arrives as it was thrown");
  }
}

}  // namespace

int main() {
  Check(torvan::Initialize() == 1, "the library starts up");
  CheckVersion();
  CheckOptions();
  CheckFailures();
  Check(torvan::Terminate() == 0, "the library shuts down");
  std::printf("consumer: %d of %d checks hold\n", checks - failures, checks);
  return failures == 0 ? 0 : 1;
}
