#include <torvan/java/Local.h>

#include <torvan/java/detail/Shared.h>

namespace torvan::java::detail {

jobject NewLocal(JNIEnv* env, jobject ref) {
  jobject const local = env->NewLocalRef(ref);
  if (local == nullptr) ThrowOutOfReferences(env);
  return local;
}

}  // namespace torvan::java::detail
