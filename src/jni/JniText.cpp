#include "jni/JniText.h"

#include "jni/JavaExceptionHelper.h"

namespace torvan::jni {

using mirel::base::CUnicodeString;

CUnicodeString TakeCharacters(JNIEnv* env, jstring string, const jchar* characters) {
  struct GiveBack {
    JNIEnv* env;
    jstring string;
    const jchar* characters;
    // An exception of the VM passes.
    ~GiveBack() noexcept(false) { env->ReleaseStringChars(string, characters); }
  };
  const GiveBack giveBack{env, string, characters};
  // Intentional: the text ends at its first zero unit; the VM is not asked for the length.
  return CUnicodeString(reinterpret_cast<const RX::UniChar*>(characters));
}

jstring CreateJavaString(const CJavaVm& vm, const RX::UniChar* text) {
  const jsize length = text == nullptr ? 0 : static_cast<jsize>(RX::ucslen(text));
  // Intentional: an empty text makes null, not an empty Java string.
  if (length == 0) return nullptr;
  JNIEnv* env = vm.Attach();
  jstring string = env->NewString(reinterpret_cast<const jchar*>(text), length);
  CheckJavaException(env);
  return string;
}

}  // namespace torvan::jni
