// Native methods of the host, called by Java in the way of Unix and answered in that of Windows.
#include <atomic>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "Environment.h"

namespace hotspot {

namespace {

constexpr std::size_t SlotCount = 16;

// With as many parameters as fit into registers; a method that has fewer looks at none of the others.
using HostMethod = jlong(WINDOWS_ABI*)(HostEnv*, jobject, jlong, jlong, jlong, jlong);
using UnixMethod = jlong (*)(JNIEnv*, jobject, jlong, jlong, jlong, jlong);

HostMethod s_hostMethods[SlotCount];
std::atomic<std::size_t> s_slotsTaken;

template <std::size_t slot>
jlong CallHost(JNIEnv* env, jobject receiver, jlong a, jlong b, jlong c, jlong d) {
  return s_hostMethods[slot](HostEnvOf(env), receiver, a, b, c, d);
}

template <std::size_t... slots>
UnixMethod UnixMethodOf(std::size_t slot, std::index_sequence<slots...>) {
  static constexpr UnixMethod all[] = {&CallHost<slots>...};
  return all[slot];
}

bool CanBeCalled(const char* descriptor) {
  const std::vector<char> types = ParameterTypes(descriptor);
  bool fits = types.size() <= 4;
  for (const char type : types) fits = fits && type != 'F' && type != 'D';
  return fits;
}

}  // namespace

jint RegisterNatives(JNIEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count) {
  std::vector<JNINativeMethod> bridged(methods, methods + count);
  for (JNINativeMethod& method : bridged) {
    const std::size_t slot = s_slotsTaken++;
    if (slot >= SlotCount || !CanBeCalled(method.signature)) return JNI_ERR;
    s_hostMethods[slot] = reinterpret_cast<HostMethod>(method.fnPtr);
    method.fnPtr = reinterpret_cast<void*>(UnixMethodOf(slot, std::make_index_sequence<SlotCount>()));
  }
  return env->functions->RegisterNatives(env, javaClass, bridged.data(), count);
}

}  // namespace hotspot
