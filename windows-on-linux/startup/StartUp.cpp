#include "StartUp.h"

namespace {

using Procedure = void(__cdecl*)();
using Initializer = int(__cdecl*)();

}  // namespace

// The C library's table of exit procedures; the layout is the library's.
struct _onexit_table_t {
  Procedure* first;
  Procedure* last;
  Procedure* end;
};

extern "C" {
void __cdecl _initterm(Procedure* first, Procedure* end);
int __cdecl _initterm_e(Initializer* first, Initializer* end);
int __cdecl _initialize_onexit_table(_onexit_table_t* table);
int __cdecl _register_onexit_function(_onexit_table_t* table, Initializer procedure);
int __cdecl _execute_onexit_table(_onexit_table_t* table);
int __cdecl _crt_atexit(Procedure procedure);

// Tells the linker that the module uses floating-point numbers; the value is not read.
extern const int _fltused = 0x9875;
}

// The compiler puts pointers to initialisers into sections whose names the linker sorts: these are the first and the
// last of each list.
#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
extern "C" {
__declspec(allocate(".CRT$XIA")) Initializer __xi_a[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) Initializer __xi_z[] = {nullptr};
__declspec(allocate(".CRT$XCA")) Procedure __xc_a[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) Procedure __xc_z[] = {nullptr};
}
#pragma comment(linker, "/merge:.CRT=.rdata")

namespace {

_onexit_table_t s_exitProcedures;

}  // namespace

extern "C" int __cdecl atexit(Procedure procedure) {
  return _register_onexit_function(&s_exitProcedures, reinterpret_cast<Initializer>(procedure));
}

void StartModule() {
  ChooseSecurityCookie();
  _initialize_onexit_table(&s_exitProcedures);
  _initterm_e(__xi_a, __xi_z);
  _initterm(__xc_a, __xc_z);
}

void EndModule() { _execute_onexit_table(&s_exitProcedures); }

void StartProgram() {
  _crt_atexit(&EndModule);  // the C library's own list
  StartModule();
}
