// Every class whose layout hosts rely upon, for a compiler that prints the layouts.
// Calling a virtual function makes it lay out the class's table.
#include <mirel/util/Hashtable.h>
#include <mirel/util/Vector.h>
#include <torvan/Torvan.h>

#include "jni/DynamicJavaRuntimeImpl.h"
#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/JavaVmImpl.h"
#include "jni/JniHelper.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"
#include "jvmlauncher/InstalledJavaVm.h"
#include "jvmlauncher/JavaVmLauncherImplWin.h"

#include <type_traits>

namespace {

template <class T>
void Destroy(T* object) {
  object->~T();
}
template <class... T>
void DestroyAll() {
  (Destroy<T>(nullptr), ...);
}

}  // namespace

// The table says jint where a host sees long.
static_assert(std::is_same_v<jint, long> && std::is_same_v<jlong, __int64>);

template class mirel::base::CRef<mirel::base::CObject>;
template class mirel::base::CRefCountedPtr<mirel::base::CObject>;
template class mirel::util::CVector<mirel::base::CUnicodeString>;
template class mirel::util::CHashtable<mirel::base::CUnicodeString, int>;

using namespace torvan;

void LayOut(jvmlauncher::CJavaVmProcess& process) {
  DestroyAll<mirel::base::CString, mirel::base::CUnicodeString, mirel::base::CUnicodeStringBuffer, mirel::base::CClass,
             mirel::util::CUnicodeStringVector, mirel::util::CObjectVector, mirel::io::CPrintStream, RX::UniString,
             Place::Location>();
  DestroyAll<mirel::base::win::CWinSystemErrorException, mirel::base::CIllegalArgumentException,
             mirel::base::CMemoryException, mirel::base::CNullReferenceException,
             mirel::util::CNoSuchElementException>();
  DestroyAll<mirel::base::CException, jni::CJniException, jni::CJavaRuntimeException, jni::CJavaVmException,
             jni::CJavaException, jvmlauncher::CJavaVmLauncherException>();
  DestroyAll<jni::CJavaRuntime, jni::CDynamicJavaRuntime, jni::CJavaVm, jni::CJavaObject, jni::CJavaClass,
             jni::CJavaString>();
  DestroyAll<jni::CJavaRuntimeImpl, jni::CDynamicJavaRuntimeImpl, jni::CJavaVmImpl, jni::CJniGlobalRef,
             jni::CJavaRuntimeLibraryImpl, jni::CWinJavaRuntimeLibraryImpl, jni::CJavaRuntimeLibraryPool,
             jni::CJavaRuntimeLibraryRef>();
  DestroyAll<jni::options::COption, jni::options::COptions, jni::options::CCustomOption, jni::options::CVerbose,
             jni::options::CHook, jni::options::CAbortHook, jni::options::CExitHook, jni::options::CVfprintfHook,
             jni::options::CSystemProperty, jni::options::CPathList, jni::options::CClassPath,
             jni::options::CLibraryPath>();
  DestroyAll<jvmlauncher::CJavaVmOption, jvmlauncher::options::CClassPathOption, jvmlauncher::options::CJarOption,
             jvmlauncher::options::CNonStandardOption, jvmlauncher::options::CDirectOption,
             jvmlauncher::options::CSystemPropertyOption, jvmlauncher::CJavaVmOptions, jvmlauncher::CArgumentList>();
  DestroyAll<jvmlauncher::CJavaVmLauncher, jvmlauncher::JavaVmLauncherImpl, jvmlauncher::CJavaVmProcessImp,
             jvmlauncher::InstalledJavaVm>();
  process.Kill();
}
