#include <torvan/JavaException.h>
#include <torvan/JavaRuntimeException.h>
#include <torvan/JavaVmException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/LibraryPath.h>
#include <torvan/jni/options/Verbose.h>
#include <torvan/jni/options/VfprintfHook.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>

// The runtime type records of the library. They are all in one file because the order of construction across files is
// undefined; within a file it is the order of the rows. A class may come before its parent: parents are looked up by
// name, and only when asked for.

namespace torvan {

using namespace jni;
using namespace jni::options;
using namespace jvmlauncher;
using namespace jvmlauncher::options;

#define TYPE(Class, name, parentName) \
  mirel::base::CClass Class::m_class##Class(name, parentName, nullptr, nullptr, sizeof(Class), nullptr);

// clang-format off
TYPE(CJavaException,        "torvan::jni::CJavaException",       "torvan::jni::CJniException")
// Intentional: the name is in the foundation library's namespace, the class is not.
TYPE(CJavaRuntimeException, "mirel::jni::CJavaRuntimeException", "torvan::jni::CJniException")
TYPE(CJavaVmException,      "torvan::jni::CJavaVmException",     "torvan::jni::CJniException")
TYPE(CJniException,         "torvan::jni::CJniException",        "mirel::base::CException")

TYPE(CCustomOption,   "torvan::jni::options::CCustomOption",   "torvan::jni::options::COption")
TYPE(CHook,           "torvan::jni::options::CHook",           "torvan::jni::options::COption")
TYPE(CAbortHook,      "torvan::jni::options::CAbortHook",      "torvan::jni::options::CHook")
TYPE(CExitHook,       "torvan::jni::options::CExitHook",       "torvan::jni::options::CHook")
TYPE(CVfprintfHook,   "torvan::jni::options::CVfprintfHook",   "torvan::jni::options::CHook")
// Intentional: its parent is not the option class but the system property, whose value is a list.
TYPE(CPathList,       "torvan::jni::options::CPathList",       "torvan::jni::options::CSystemProperty")
TYPE(CClassPath,      "torvan::jni::options::CClassPath",      "torvan::jni::options::CPathList")
TYPE(CLibraryPath,    "torvan::jni::options::CLibraryPath",    "torvan::jni::options::CPathList")
// Intentional: by its record an option is no CObject, although the class derives from it; the launcher's options are.
TYPE(COption,         "torvan::jni::options::COption",         "mirel::base::CBase")
TYPE(CSystemProperty, "torvan::jni::options::CSystemProperty", "torvan::jni::options::COption")
TYPE(CVerbose,        "torvan::jni::options::CVerbose",        "torvan::jni::options::COption")

TYPE(CJavaVmLauncherException, "torvan::jvmlauncher::CJavaVmLauncherException", "mirel::base::CException")
TYPE(CJavaVmOption,            "torvan::jvmlauncher::CJavaVmOption",            "mirel::base::CObject")

TYPE(CClassPathOption,      "torvan::jvmlauncher::options::CClassPathOption",      "torvan::jvmlauncher::CJavaVmOption")
TYPE(CJarOption,            "torvan::jvmlauncher::options::CJarOption",            "torvan::jvmlauncher::CJavaVmOption")
TYPE(CNonStandardOption,    "torvan::jvmlauncher::options::CNonStandardOption",    "torvan::jvmlauncher::CJavaVmOption")
TYPE(CDirectOption,         "torvan::jvmlauncher::options::CDirectOption",         "torvan::jvmlauncher::CJavaVmOption")
TYPE(CSystemPropertyOption, "torvan::jvmlauncher::options::CSystemPropertyOption", "torvan::jvmlauncher::CJavaVmOption")
// clang-format on

#undef TYPE

}  // namespace torvan
