// Where the system enters a program whose arguments are UTF-16.
#include <stdlib.h>

#include "StartUp.h"

extern "C" {
int __cdecl _configure_wide_argv(int mode);
int* __cdecl __p___argc();
wchar_t*** __cdecl __p___wargv();
}
int __cdecl wmain(int count, wchar_t** arguments);

extern "C" int wmainCRTStartup() {
  _configure_wide_argv(UnexpandedArguments);
  StartProgram();
  exit(wmain(*__p___argc(), *__p___wargv()));
}
