// Where the system enters a program.
#include <stdlib.h>

#include "StartUp.h"

extern "C" {
int __cdecl _configure_narrow_argv(int mode);
int* __cdecl __p___argc();
char*** __cdecl __p___argv();
int __cdecl _crt_atexit(void(__cdecl* procedure)());
}
int __cdecl main(int count, char** arguments);

extern "C" int mainCRTStartup() {
  constexpr int UnexpandedArguments = 1;
  _configure_narrow_argv(UnexpandedArguments);
  _crt_atexit(&EndModule);  // the C library's own list: whoever calls exit, the static objects are destroyed
  StartModule();
  exit(main(*__p___argc(), *__p___argv()));
}
