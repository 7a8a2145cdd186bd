// Where the system enters a DLL.
#include "StartUp.h"

namespace {

constexpr unsigned long ProcessAttach = 1;
constexpr unsigned long ProcessDetach = 0;

}  // namespace

extern "C" int __stdcall _DllMainCRTStartup(void* /*module*/, unsigned long reason, void* /*reserved*/) {
  if (reason == ProcessAttach) StartModule();
  if (reason == ProcessDetach) EndModule();
  return 1;
}
