#include <torvan/java/Guard.h>

#include <torvan/java/detail/Pending.h>

#include <jvmti.h>

#include <atomic>
#include <cstring>
#include <mutex>

namespace torvan::java {

namespace {

using GetMethodIdFunction = decltype(JNINativeInterface_::GetMethodID);

std::atomic<GetMethodIdFunction> s_getMethodId{nullptr};

// The fixed interface looks getClass up as if it returned a string, which HotSpot refuses; nothing else asks for that.
jmethodID JNICALL GetMethodIdReadably(JNIEnv* env, jclass type, const char* name, const char* descriptor) {
  if (name != nullptr && descriptor != nullptr && name[0] == 'g' && std::strcmp(name, "getClass") == 0 &&
      std::strcmp(descriptor, "()Ljava/lang/String;") == 0) {
    descriptor = "()Ljava/lang/Class;";
  }
  return s_getMethodId.load(std::memory_order_relaxed)(env, type, name, descriptor);
}

bool ExchangeGetMethodId(JavaVM* vm) {
  jvmtiEnv* tools = nullptr;
  if (vm->GetEnv(reinterpret_cast<void**>(&tools), JVMTI_VERSION_1_2) != JNI_OK) return false;
  jniNativeInterface* table = nullptr;
  bool done = tools->GetJNIFunctionTable(&table) == JVMTI_ERROR_NONE;
  if (done) {
    // Set before the table changes, because other threads look up meanwhile.
    s_getMethodId.store(table->GetMethodID, std::memory_order_relaxed);
    table->GetMethodID = &GetMethodIdReadably;
    done = tools->SetJNIFunctionTable(table) == JVMTI_ERROR_NONE;
    tools->Deallocate(reinterpret_cast<unsigned char*>(table));
  }
  tools->DisposeEnvironment();
  return done;
}

}  // namespace

bool MakeFailuresReadable() {
  detail::RequireVm();
  // Only once: if our own function were taken for the real one, a look-up would never end.
  static const bool done = ExchangeGetMethodId(detail::runningVm.load(std::memory_order_acquire));
  return done;
}

namespace detail {

void BeginGuard() {
  MakeFailuresReadable();
  CheckPending(Env());
}

void EndGuard() {
  if (JNIEnv* env = EnvIfAttached()) CheckPending(env);
}

void ClearPending() noexcept {
  if (JNIEnv* const env = EnvIfAttached()) env->ExceptionClear();
}

void ThrowJavasOwn(const mirel::base::CException& caught) {
  JNIEnv* const env = EnvIfAttached();
  if (env == nullptr) return;
  const auto pending = TakePending(env);
  if (!pending.has_value()) return;
  const char* const message = caught.GetMessageText();
  const bool isLost = message != nullptr && std::strstr(message, "getClass ()") != nullptr &&
                      pending->ClassName() == "java.lang.NoSuchMethodError";
  if (!isLost) throw *pending;
  constexpr char text[] =
      "Java threw an exception that the fixed interface could not read; this Java VM does not let it";
  throw Failure("java/Guard", __LINE__, text);
}

}  // namespace detail

}  // namespace torvan::java
