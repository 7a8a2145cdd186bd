// A runtime library without a VM, for loading; it is built with both entry points and with either one missing.
#define _JNI_IMPLEMENTATION_  // the entry points are exported, not imported
#include <jni.h>

#if !defined(WITHOUT_CREATE)
jint JNICALL JNI_CreateJavaVM(JavaVM**, void**, void*) { return -3; }
#endif

#if !defined(WITHOUT_GET_CREATED)
jint JNICALL JNI_GetCreatedJavaVMs(JavaVM**, jsize, jsize* count) {
  *count = 42;
  return 0;
}
#endif
