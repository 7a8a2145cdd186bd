// Static objects of functions, made by the first thread that comes.
//
// The compiler guards each by an integer: 0 = not made, -1 = being made, else the epoch in which it was finished. A
// thread whose own epoch is not older needs to ask no further.

extern "C" {

__declspec(dllimport) void __stdcall Sleep(unsigned long milliseconds);

constexpr int FirstEpoch = -0x7FFFFFFF - 1;
int _Init_global_epoch = FirstEpoch;
__declspec(thread) int _Init_thread_epoch = FirstEpoch;

void __cdecl _Init_thread_header(int* guard) {
  int found = 0;
  while ((found = __sync_val_compare_and_swap(guard, 0, -1)) == -1) Sleep(1);
  if (found != 0) _Init_thread_epoch = found;  // made by another thread: what is as old is made, too
}

void __cdecl _Init_thread_footer(int* guard) {
  const int epoch = __sync_add_and_fetch(&_Init_global_epoch, 1);
  __sync_lock_test_and_set(guard, epoch);
  _Init_thread_epoch = epoch;
}

void __cdecl _Init_thread_abort(int* guard) { __sync_lock_test_and_set(guard, 0); }
}
