// The native half of fixture.NativeAnswer.
#include <jni.h>

extern "C" JNIEXPORT jint JNICALL Java_fixture_NativeAnswer_answer(JNIEnv*, jclass, jint question) {
  return question * 2 + 1;
}
