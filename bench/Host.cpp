#include "Host.h"

namespace bench {
namespace {

Host Started() {
  java::VmSettings settings;
  if (!JavaHome().empty()) settings.Runtime(JavaHome());
  java::Vm vm = java::StartVm(settings.ClassPath({BENCH_CLASSES}).MaximumHeap("256m"));
  vm.Release();  // nothing in it has to be saved
  const java::Thread thread;
  JavaVM* raw = nullptr;
  Require(thread.Env()->GetJavaVM(&raw) == JNI_OK);
  const auto subjectClass = vm.Handle().FindClass("bench/Subject");
  const auto subject = subjectClass.NewObject("()V");
  return {thread.Env(), raw, vm.Handle(), subjectClass, subject, subjectClass, subject};
}

}  // namespace

const Host& TheHost() {
  static const Host& host = *new Host(Started());
  return host;
}

}  // namespace bench
