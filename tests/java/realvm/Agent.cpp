// An agent that sets a system property, which has to be there, to its options.
#include <jvmti.h>

extern "C" JNIEXPORT jint JNICALL Agent_OnLoad(JavaVM* vm, char* options, void*) {
  jvmtiEnv* tools = nullptr;
  if (vm->GetEnv(reinterpret_cast<void**>(&tools), JVMTI_VERSION_1_2) != JNI_OK) return JNI_ERR;
  const char* const text = options != nullptr && *options != '\0' ? options : "no options";
  const jvmtiError error = tools->SetSystemProperty("fixture.agent", text);
  tools->DisposeEnvironment();
  return error == JVMTI_ERROR_NONE ? JNI_OK : JNI_ERR;
}
