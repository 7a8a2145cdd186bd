// A runtime loaded from a path, its VM, and classes, objects and strings in it.
#include <windows.h>

#include "Check.h"

using namespace torvan::jni;
using mirel::base::CNull;
using mirel::base::CUnicodeString;
using mirel::util::CVector;

namespace {

using host::AnyLine;
using host::IsCaughtAs;
using host::Same;
using host::Throws;

constexpr const wchar_t* Library = L"windows_echo_jvm.dll";

int LiveGlobals() {
  const auto count = reinterpret_cast<int (*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(Library), "EchoLiveGlobals")));
  return count();
}

CJavaVm Create(CDynamicJavaRuntime& runtime) {
  options::COptions options;
  options.AddOption(options::CCustomOption(L"-echo"));
  return runtime.CreateJavaVm(options, false);
}

void CheckRuntime(CDynamicJavaRuntime& runtime, const CJavaVm& vm) {
  CHECK(runtime.GetJniVersion() == JNI_VERSION_1_6);
  CHECK(Throws<CJavaRuntimeException>(
      [&] { runtime.CreateJavaVm(options::COptions(), false); }, "jni/DynamicJavaRuntimeImpl", 70,
      "Failed to create Java VM with the specified options.", CJavaRuntimeException::m_classCJavaRuntimeException));
  CVector<CJavaVm> vms(0, 0);
  CHECK(runtime.GetCreatedJavaVms(vms) == 1);
  CHECK(vms.GetSize() == 1 && vms[0] == vm);
  const CDynamicJavaRuntime copy(runtime);
  CHECK(copy.GetJniVersion() == JNI_VERSION_1_6);
  CHECK(IsCaughtAs<CJavaRuntimeException>(
      [] { CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Server, L"1.4", JNI_VERSION_1_4); }));
}

// What a host makes with `new` is freed by the library, so it has to come from the library's heap.
void CheckHandleMadeWithNew() {
  static RX::Allocator inner{};
  static void* first = nullptr;
  inner = RX::ReplaceAllocator({[](std::size_t size) {
                                  void* const block = inner.allocate(size);
                                  if (first == nullptr) first = block;
                                  return block;
                                },
                                nullptr});
  const mirel::base::CRef<CDynamicJavaRuntime> runtime(new CDynamicJavaRuntime(Library, JNI_VERSION_1_6));
  RX::ReplaceAllocator(inner);
  CHECK(first == &*runtime);
  CHECK(runtime->GetJniVersion() == JNI_VERSION_1_6);
}

void CheckVm(const CJavaVm& vm) {
  CHECK(vm.Attach() != nullptr);
  vm.Detach();
  CHECK(vm.FindClass("acme/Thing") != CNull());
  CHECK(vm.FindClass(L"acme/Thing") != CNull());
  CHECK(Throws<CJavaVmException>([&] { vm.FindClass("missing"); }, "jni/JavaVm", AnyLine,
                                 "The specified class was not found.", CJavaVmException::m_classCJavaVmException));
  CHECK(vm.AllocObject("acme/Thing") != CNull());
  CHECK(vm.AllocObject(L"acme/Thing") != CNull());
  const CJavaObject made = vm.NewObject("acme/Thing", "(I)V", jint{41});
  CHECK(made.GetIntField("count", "I") == 41);
  const CJavaObject wide = vm.NewObject(L"acme/Thing", L"(I)V", jint{42});
  CHECK(wide.GetIntField(L"count", L"I") == 42);
}

void CheckClass(const CJavaClass& javaClass) {
  CHECK(static_cast<jclass>(javaClass) != nullptr);
  CHECK(javaClass.AllocObject() != CNull());
  CHECK(javaClass.NewObject("(I)V", jint{43}).GetIntField("count", "I") == 43);
  CHECK(javaClass.NewObject(L"(I)V", jint{44}).GetIntField("count", "I") == 44);
  const CJavaClass copy(javaClass);
  CHECK(copy == javaClass);
}

void CheckObject(const CJavaVm& vm, const CJavaObject& object, const CJavaClass& javaClass) {
  CHECK(static_cast<jobject>(object) != nullptr);
  CHECK(object.IsInstanceOf("acme/Thing"));
  CHECK(object.IsInstanceOf(L"acme/Thing"));
  CHECK(object.IsInstanceOf(javaClass));
  CJavaObject copy(object);
  CHECK(copy == object);
  copy = vm.NewString(L"other");
  CHECK(copy != object);
  CHECK(IsCaughtAs<CJavaVmException>([&] { object.GetIntField("missing", "I"); }));
}

void CheckString(const CJavaVm& vm) {
  CJavaString text = vm.NewString(L"text \x4e2d");
  CHECK(static_cast<jstring>(text) != nullptr);
  CHECK(Same(static_cast<CUnicodeString>(text), L"text \x4e2d"));
  text = L"another";
  CHECK(Same(static_cast<CUnicodeString>(text), L"another"));
  const CJavaString again = static_cast<const CJavaObject&>(text);
  CHECK(Same(static_cast<CUnicodeString>(again), L"another"));
}

void CheckFailure(const CJavaVm& vm, const CJavaObject& object) {
  try {
    object.CallIntMethod("fail", "(I)I", jint{1});
    CHECK(!"nothing thrown");
  } catch (const CJavaException& thrown) {
    CHECK(Same(thrown.GetJavaExceptionClassName(), L"echo"));
    CHECK(Same(thrown.GetJavaMessage(), L"failed"));
    CHECK(Same(thrown.GetJavaStackTrace(), L"\tat here"));
  }
  CHECK(IsCaughtAs<CJniException>([&] { object.CallIntMethod("fail", "(I)I", jint{1}); }));
  vm.Attach()->ExceptionClear();
  CHECK(object.CallIntMethod("echo", "(I)I", jint{5}) == 5);
}

}  // namespace

void host::CheckJava() {
  CDynamicJavaRuntime runtime(Library, JNI_VERSION_1_6);
  CHECK(GetModuleHandleW(Library) != nullptr);
  {
    const CJavaVm vm = Create(runtime);
    CheckRuntime(runtime, vm);
    CheckHandleMadeWithNew();
    CheckVm(vm);
    const CJavaClass javaClass = vm.FindClass("acme/Thing");
    CheckClass(javaClass);
    const CJavaObject object = vm.AllocObject("acme/Thing");
    CheckObject(vm, object, javaClass);
    CheckString(vm);
    CheckAccessors(object, javaClass);
    CheckFailure(vm, object);
    CHECK(LiveGlobals() == 2);  // the class and the object
  }
  CHECK(LiveGlobals() == 0);
}
