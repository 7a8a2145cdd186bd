// A Java runtime library, known by its file path.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// A runtime library, loaded or not. Not safe for use by two threads at once.
class CJavaRuntimeLibraryImpl : public mirel::base::CBase {
 public:
  virtual ~CJavaRuntimeLibraryImpl();
  CJavaRuntimeLibraryImpl(const CJavaRuntimeLibraryImpl&) = delete;
  CJavaRuntimeLibraryImpl& operator=(const CJavaRuntimeLibraryImpl&) = delete;

  // Loads the library and looks up its entry points; does nothing when it is loaded.
  virtual void Load() = 0;
  virtual void Unload() = 0;

  // Call the runtime's JNI_CreateJavaVM and JNI_GetCreatedJavaVMs and return their JNI status.
  virtual jint CreateJavaVm(JavaVM** vm, void** env, void* initArgs) = 0;
  virtual jint GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) = 0;

  // Returns the path, which never changes.
  const mirel::base::CUnicodeString& GetPath() const noexcept { return m_path; }

 protected:
  explicit CJavaRuntimeLibraryImpl(const RX::UniChar* path = nullptr);

 private:
  mirel::base::CUnicodeString m_path;
};

}  // namespace torvan::jni
