// The functions that jvm.dll exports. Their VM is that of the JDK whose home folder the environment variable
// HOTSPOT_HOME names; without it, of the JDK that the tests were built with.
#include <dlfcn.h>
#include <jni.h>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "Environment.h"
#include "Hooks.h"
#include "Paths.h"
#include "Threads.h"
#include "Windows.h"

namespace hotspot {

namespace {

struct LibJvm {
  jint (*createJavaVm)(JavaVM**, void**, void*);
  jint (*getCreatedJavaVms)(JavaVM**, jsize, jsize*);
  jint (*getDefaultInitArgs)(void*);
};

// HotSpot cannot be unloaded, and so this module cannot, once it is there.
void StayLoaded() {
  constexpr std::uint32_t pinByAddress = 4 | 1;
  static const char anchor = 0;
  void* module = nullptr;
  GetModuleHandleExW(pinByAddress, &anchor, &module);
}

void* Open(const std::string& path) {
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
  if (library == nullptr) {
    std::fprintf(stderr, "jvm.dll: %s\n", dlerror());
    std::exit(2);
  }
  SettleInWine(library);
  return library;
}

LibJvm Load() {
  StayLoaded();
  TakeOverEnvironment();
  const char* variable = std::getenv("HOTSPOT_HOME");
  const std::string home = variable != nullptr ? variable : HOTSPOT_HOME;
  void* const library = Open(home + "/lib/server/libjvm.so");
  Open(home + "/lib/libjava.so");  // HotSpot loads it later, and gets this one
  return {reinterpret_cast<decltype(LibJvm::createJavaVm)>(dlsym(library, "JNI_CreateJavaVM")),
          reinterpret_cast<decltype(LibJvm::getCreatedJavaVms)>(dlsym(library, "JNI_GetCreatedJavaVMs")),
          reinterpret_cast<decltype(LibJvm::getDefaultInitArgs)>(dlsym(library, "JNI_GetDefaultJavaVMInitArgs"))};
}

const LibJvm& TheLibJvm() {
  static const LibJvm libJvm = Load();
  return libJvm;
}

OUT_OF_LINE jint GetDefaultInitArgs(void* arguments) {
  EnterFromWindows();
  return TheLibJvm().getDefaultInitArgs(arguments);
}

OUT_OF_LINE jint GetCreatedJavaVms(HostVm** buffer, jsize length, jsize* count) {
  EnterFromWindows();
  JavaVM* real = nullptr;
  jsize found = 0;
  const jint result = TheLibJvm().getCreatedJavaVms(&real, 1, &found);
  if (result != JNI_OK) return result;
  if (count != nullptr) *count = found;
  if (found > 0 && length > 0 && buffer != nullptr) *buffer = HostVmOf(real);
  return JNI_OK;
}

OUT_OF_LINE jint CreateJavaVm(HostVm** vm, HostEnv** env, const JavaVMInitArgs& hostArguments) {
  EnterFromWindows();
  static std::once_flag atExit;
  std::call_once(atExit, &EndHooksAtExit);
  const std::vector<JavaVMOption> hostOptions(hostArguments.options, hostArguments.options + hostArguments.nOptions);
  std::vector<JavaVMOption> options = hostOptions;
  std::vector<std::string> texts(options.size());
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (options[i].optionString == nullptr) continue;
    texts[i] = WithUnixPaths(options[i].optionString);
    options[i].optionString = texts[i].data();
  }
  BridgeHooks(options);
  // A thread that ends under Wine leaves the VM with a lock that each new thread needs. The VM must not wait then for a
  // new thread of the compiler or the collector, so it has all of them from the start. See StartJavaThread for Java's.
  static char compilers[] = "-XX:-UseDynamicNumberOfCompilerThreads";
  static char collectors[] = "-XX:-UseDynamicNumberOfGCThreads";
  options.insert(options.begin(), {{compilers, nullptr}, {collectors, nullptr}});

  JavaVMInitArgs arguments = hostArguments;
  arguments.nOptions = static_cast<jint>(options.size());
  arguments.options = options.data();
  JavaVM* realVm = nullptr;
  void* realEnv = nullptr;
  const jint result = TheLibJvm().createJavaVm(&realVm, &realEnv, &arguments);
  if (result != JNI_OK) return result;
  ShowHostPaths(static_cast<JNIEnv*>(realEnv), hostOptions);
  *vm = HostVmOf(realVm);
  *env = HostEnvOf(static_cast<JNIEnv*>(realEnv));
  return JNI_OK;
}

}  // namespace

}  // namespace hotspot

extern "C" {

__attribute__((visibility("default"))) WINDOWS_ABI jint Bridge_GetDefaultJavaVMInitArgs(void* arguments) {
  return hotspot::GetDefaultInitArgs(arguments);
}

__attribute__((visibility("default"))) WINDOWS_ABI jint Bridge_GetCreatedJavaVMs(hotspot::HostVm** buffer, jsize length,
                                                                                 jsize* count) {
  return hotspot::GetCreatedJavaVms(buffer, length, count);
}

__attribute__((visibility("default"))) WINDOWS_ABI jint Bridge_CreateJavaVM(hotspot::HostVm** vm,
                                                                            hotspot::HostEnv** env,
                                                                            const JavaVMInitArgs* arguments) {
  return hotspot::CreateJavaVm(vm, env, *arguments);
}
}
