// Runtime type records, seen from the other side of the border.
#include "Check.h"

using namespace torvan;
using mirel::base::CClass;

namespace {

struct Row {
  const CClass& record;
  const char* name;
  const char* parent;
  unsigned int size;
};

#define RECORD(Class, name, parent) \
  { Class::m_class##Class, name, parent, sizeof(Class) }

// clang-format off
const Row* Rows(int& count) {
  using namespace jni;
  using namespace jni::options;
  using namespace jvmlauncher;
  using jvmlauncher::options::CClassPathOption;
  using jvmlauncher::options::CDirectOption;
  using jvmlauncher::options::CJarOption;
  using jvmlauncher::options::CNonStandardOption;
  using jvmlauncher::options::CSystemPropertyOption;
  static const Row rows[] = {
    RECORD(CJavaException,           "torvan::jni::CJavaException",                             "torvan::jni::CJniException"),
    RECORD(CJavaRuntimeException,    "mirel::jni::CJavaRuntimeException",                       "torvan::jni::CJniException"),
    RECORD(CJavaVmException,         "torvan::jni::CJavaVmException",                           "torvan::jni::CJniException"),
    RECORD(CJniException,            "torvan::jni::CJniException",                              "mirel::base::CException"),
    RECORD(CCustomOption,            "torvan::jni::options::CCustomOption",                     "torvan::jni::options::COption"),
    RECORD(CHook,                    "torvan::jni::options::CHook",                             "torvan::jni::options::COption"),
    RECORD(CAbortHook,               "torvan::jni::options::CAbortHook",                        "torvan::jni::options::CHook"),
    RECORD(CExitHook,                "torvan::jni::options::CExitHook",                         "torvan::jni::options::CHook"),
    RECORD(CVfprintfHook,            "torvan::jni::options::CVfprintfHook",                     "torvan::jni::options::CHook"),
    RECORD(CPathList,                "torvan::jni::options::CPathList",                         "torvan::jni::options::CSystemProperty"),
    RECORD(CClassPath,               "torvan::jni::options::CClassPath",                        "torvan::jni::options::CPathList"),
    RECORD(CLibraryPath,             "torvan::jni::options::CLibraryPath",                      "torvan::jni::options::CPathList"),
    RECORD(COption,                  "torvan::jni::options::COption",                           "mirel::base::CBase"),
    RECORD(CSystemProperty,          "torvan::jni::options::CSystemProperty",                   "torvan::jni::options::COption"),
    RECORD(CVerbose,                 "torvan::jni::options::CVerbose",                          "torvan::jni::options::COption"),
    RECORD(CJavaVmLauncherException, "torvan::jvmlauncher::CJavaVmLauncherException",           "mirel::base::CException"),
    RECORD(CJavaVmOption,            "torvan::jvmlauncher::CJavaVmOption",                      "mirel::base::CObject"),
    RECORD(CClassPathOption,         "torvan::jvmlauncher::options::CClassPathOption",          "torvan::jvmlauncher::CJavaVmOption"),
    RECORD(CJarOption,               "torvan::jvmlauncher::options::CJarOption",                "torvan::jvmlauncher::CJavaVmOption"),
    RECORD(CNonStandardOption,       "torvan::jvmlauncher::options::CNonStandardOption",        "torvan::jvmlauncher::CJavaVmOption"),
    RECORD(CDirectOption,            "torvan::jvmlauncher::options::CDirectOption",             "torvan::jvmlauncher::CJavaVmOption"),
    RECORD(CSystemPropertyOption,    "torvan::jvmlauncher::options::CSystemPropertyOption",     "torvan::jvmlauncher::CJavaVmOption"),
  };
  count = sizeof(rows) / sizeof(*rows);
  return rows;
}
// clang-format on

}  // namespace

void host::CheckRecords() {
  int count = 0;
  for (const Row* row = Rows(count); count > 0; ++row, --count) {
    CHECK(Same(row->record.GetName(), row->name));
    CHECK(Same(row->record.GetParentName(), row->parent));
    CHECK(row->record.GetInstanceSize() == row->size);
  }
  const jni::options::CAbortHook hook([] {});
  CHECK(hook.IsInstanceOf(&jni::options::CHook::m_classCHook));
  CHECK(hook.IsInstanceOf(&jni::options::COption::m_classCOption));
  CHECK(!hook.IsInstanceOf(&jni::options::CVerbose::m_classCVerbose));
  CHECK(!hook.IsInstanceOf(&mirel::base::CObject::m_classCObject));  // the options' registered root is another
}
