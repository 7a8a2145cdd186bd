// The directory from which the system makes each thread's copy of the thread-local variables.

#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
#pragma section(".CRT$XLA", long, read)
#pragma section(".CRT$XLZ", long, read)

namespace {

using Callback = void(__stdcall*)(void*, unsigned long, void*);

}  // namespace

struct ThreadLocalDirectory {
  char* start;
  char* end;
  unsigned int* index;
  const Callback* callbacks;
  unsigned int zeroFill;
  unsigned int characteristics;
};

extern "C" {
unsigned int _tls_index = 0;
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
extern __declspec(allocate(".CRT$XLA")) const Callback __xl_a = nullptr;
extern __declspec(allocate(".CRT$XLZ")) const Callback __xl_z = nullptr;
extern const ThreadLocalDirectory _tls_used = {&_tls_start, &_tls_end, &_tls_index, &__xl_a + 1, 0, 0};
}
#pragma comment(linker, "/include:_tls_used")
