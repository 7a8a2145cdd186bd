// A Java runtime library, known by its file path.
#pragma once

#include <mirel/base/Base.h>
#include <mirel/base/UnicodeString.h>
#include <torvan/jni/JniTypes.h>

namespace torvan::jni {

// A runtime library that is loaded or can be. Used by one thread at a time.
class CJavaRuntimeLibraryImpl : public mirel::base::CBase {
 public:
  virtual ~CJavaRuntimeLibraryImpl();
  CJavaRuntimeLibraryImpl(const CJavaRuntimeLibraryImpl&) = delete;
  CJavaRuntimeLibraryImpl& operator=(const CJavaRuntimeLibraryImpl&) = delete;

  // Loads the library and finds its entry points; a loaded one stays as it is.
  virtual void Load() = 0;
  virtual void Unload() = 0;

  // Call the runtime's JNI_CreateJavaVM and JNI_GetCreatedJavaVMs and give their JNI status.
  virtual jint CreateJavaVm(JavaVM** vm, void** env, void* initArgs) = 0;
  virtual jint GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) = 0;

  // The path; it never changes.
  const mirel::base::CUnicodeString& GetPath() const noexcept { return m_path; }

 protected:
  explicit CJavaRuntimeLibraryImpl(const RX::UniChar* path = nullptr);

 private:
  mirel::base::CUnicodeString m_path;
};

}  // namespace torvan::jni
