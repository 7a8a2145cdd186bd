// What the fixed interface itself costs: the rows of calls, objects and texts with a VM that does nothing.
#include <mirel/util/Vector.h>
#include <torvan/Torvan.h>
#include <torvan/jni/DynamicJavaRuntime.h>

#include <cstdio>
#include <string>

#include "Host.h"

namespace bench {
namespace {

Host Joined() {
  const std::string path = BENCH_EMPTY_VM;
  const torvan::jni::CDynamicJavaRuntime runtime(std::u16string(path.begin(), path.end()).c_str(), JNI_VERSION_1_8);
  mirel::util::CVector<torvan::jni::CJavaVm> vms(1, 1);
  Require(runtime.GetCreatedJavaVms(vms) == 1);
  JNIEnv* const env = vms[0].Attach();
  JavaVM* raw = nullptr;
  Require(env->GetJavaVM(&raw) == JNI_OK);
  const auto subjectClass = vms[0].FindClass("bench/Subject");
  const auto subject = subjectClass.NewObject("()V");
  return {env, raw, vms[0], subjectClass, subject, subjectClass, subject};
}

}  // namespace

const Host& TheHost() {
  static const Host& host = *new Host(Joined());
  return host;
}

}  // namespace bench

int main(int argc, char** argv) try {
  torvan::Initialize();
  return bench::Run(argc, argv, "bench_empty", [] {
    bench::AddCalls();
    bench::AddObjects();
    bench::AddTexts();
    for (bench::Row& row : bench::Rows()) row.group = "empty vm";
  });
} catch (const std::exception& failure) {
  std::fprintf(stderr, "bench_empty: %s\n", failure.what());
  return 2;
}
