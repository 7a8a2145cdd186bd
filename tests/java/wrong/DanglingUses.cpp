// References that outlive what they were made from, which clang warns of ("dangles"), and uses that it must be silent
// about. dangling-uses compares them with what the compiler says.
#include <torvan/Java.h>

namespace java = torvan::java;
using java::Object;

java::Local<> Made();
java::Global<> Shared();
torvan::jni::CJavaObject MadeHandle();
void Use(const java::Ref<Object>& ref);

void Wrong() {
  const java::Ref<Object> ofLocal = Made();         // dangles
  const java::Ref<Object> ofGlobal{Shared()};       // dangles
  const java::Ref<Object> ofHandle = MadeHandle();  // dangles
  jobject const rawLocal = Made().Get();            // dangles
  jobject const rawGlobal = Shared().Get();         // dangles
  for (const java::Ref<Object>& ref : {ofLocal, ofGlobal, ofHandle}) Use(ref);
  for (jobject raw : {rawLocal, rawGlobal}) Use(raw);
}
java::Ref<Object> WrongResult() {
  const java::Local<> local = Made();
  return local;  // dangles
}
jobject WrongRawResult() {
  const java::Local<> local = Made();
  return local.Get();  // dangles
}

java::Ref<Object> Right(const java::Local<>& given) {
  Use(Made());
  Use(MadeHandle());
  const java::Local<> local = Made();
  const java::Global<> global(local);
  java::Ref<Object> ref = local;
  ref = java::Ref<Object>(global);
  jobject const raw = local.Get();
  Use(raw);
  const java::Global<> kept{java::Ref<Object>(Made())};
  const java::Local<> again{Shared()};
  const bool same = java::Same(Made(), Shared());
  if (same) Use(again);
  jobject const own = Made().Release();
  Use(own);
  return given;
}
