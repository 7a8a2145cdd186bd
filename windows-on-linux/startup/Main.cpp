// Where the system enters a program.
#include <stdlib.h>

#include "StartUp.h"

extern "C" {
int __cdecl _configure_narrow_argv(int mode);
int* __cdecl __p___argc();
char*** __cdecl __p___argv();
}
int __cdecl main(int count, char** arguments);

extern "C" int mainCRTStartup() {
  _configure_narrow_argv(UnexpandedArguments);
  StartProgram();
  exit(main(*__p___argc(), *__p___argv()));
}
