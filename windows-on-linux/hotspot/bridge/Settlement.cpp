// What HotSpot asks of the C library, and Java of HotSpot, goes through here where Wine lives differently.
#include <dlfcn.h>
#include <link.h>
#include <pthread.h>
#include <sys/mman.h>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "Threads.h"

namespace hotspot {

namespace {

constexpr std::uintptr_t PageSize = 0x1000;

// By these Wine's server talks to the threads of its process.
constexpr int SignalsOfWine[] = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGUSR1, SIGABRT, SIGCHLD};

// The thread block of Windows is at gs:30; it tells where the stack is that was reserved for the thread.
struct Stack {
  std::uintptr_t low;
  std::uintptr_t high;
};

Stack WindowsStack() {
  const char* block;
  __asm__("movq %%gs:0x30,%0" : "=r"(block));
  Stack stack;
  std::memcpy(&stack.high, block + 0x08, sizeof(stack.high));
  std::memcpy(&stack.low, block + 0x1478, sizeof(stack.low));
  return stack;
}

// Wine runs Windows threads on stacks of their own, of which the C library knows nothing.
int GetThreadAttributes(pthread_t thread, pthread_attr_t* attributes) {
  if (!IsWindowsThread() || !pthread_equal(thread, pthread_self())) return pthread_getattr_np(thread, attributes);
  const Stack stack = WindowsStack();
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  if (here <= stack.low || here >= stack.high) return pthread_getattr_np(thread, attributes);
  if (pthread_getattr_np(thread, attributes) != 0) pthread_attr_init(attributes);
  std::uintptr_t low = (stack.low + GuardedByWine + PageSize - 1) & ~(PageSize - 1);
  const std::uintptr_t high = stack.high & ~(PageSize - 1);
  const std::size_t asked = AskedStackSize();  // the thread may have more than that
  if (asked != 0 && asked < high - low) low = high - asked;
  pthread_attr_setstack(attributes, reinterpret_cast<void*>(low), high - low);
  pthread_attr_setguardsize(attributes, 0);
  return 0;
}

// HotSpot would unblock signals of Wine's, among them the one that its threads block from their start.
int SetSignalMask(int how, const sigset_t* signals, sigset_t* before) {
  if (how != SIG_UNBLOCK || signals == nullptr) return pthread_sigmask(how, signals, before);
  sigset_t wanted = *signals;
  for (const int signal : SignalsOfWine) sigdelset(&wanted, signal);
  return pthread_sigmask(how, &wanted, before);
}

struct sigaction s_wineActions[NSIG];

// Where HotSpot hands on a signal that is not its own.
void HandOnToWine(int signal, siginfo_t* information, void* context) {
  if (IsWindowsThread()) {
    s_wineActions[signal].sa_sigaction(signal, information, context);
    return;
  }
  // A crash in a thread that Wine does not know ends the process as a crash does.
  std::fprintf(stderr, "jvm.dll: signal %d at %p in a thread of HotSpot\n", signal, information->si_addr);
  std::signal(signal, SIG_DFL);
}

bool IsWinesHandler(const struct sigaction& action) {
  Dl_info place;
  return (action.sa_flags & SA_SIGINFO) != 0 && action.sa_sigaction != nullptr &&
         dladdr(reinterpret_cast<void*>(action.sa_sigaction), &place) != 0 && place.dli_fname != nullptr &&
         std::strstr(place.dli_fname, "ntdll.so") != nullptr;
}

// HotSpot handles faults, and Wine those that HotSpot hands on; Wine's other signals stay Wine's.
int SetSignalAction(int signal, const struct sigaction* action, struct sigaction* before) {
  bool isWines = false;
  for (const int own : SignalsOfWine) isWines = isWines || own == signal;
  struct sigaction wanted {};
  if (action != nullptr) {
    wanted = *action;
    wanted.sa_flags |= SA_ONSTACK;
  }
  struct sigaction found {};
  const int result = sigaction(signal, action != nullptr && !isWines ? &wanted : nullptr, &found);
  if (before == nullptr) return result;
  *before = found;
  if (IsWinesHandler(found)) {
    if (s_wineActions[signal].sa_sigaction == nullptr) s_wineActions[signal] = found;
    before->sa_sigaction = &HandOnToWine;
  }
  return result;
}

struct Substitute {
  const char* name;
  void* function;
};
const Substitute Substitutes[] = {
    {"pthread_getattr_np", reinterpret_cast<void*>(&GetThreadAttributes)},
    {"pthread_create", reinterpret_cast<void*>(&CreateHotSpotThread)},
    {"pthread_sigmask", reinterpret_cast<void*>(&SetSignalMask)},
    {"sigaction", reinterpret_cast<void*>(&SetSignalAction)},
    {"JVM_StartThread", reinterpret_cast<void*>(&StartJavaThread)},
};

void Redirect(void** slot, void* function) {
  const auto page = reinterpret_cast<std::uintptr_t>(slot) & ~(PageSize - 1);
  mprotect(reinterpret_cast<void*>(page), 2 * PageSize, PROT_READ | PROT_WRITE);
  *slot = function;
}

// What the dynamic section of a loaded library says of the functions that it imports.
struct Imports {
  const ElfW(Sym) * symbols;
  const char* names;
  const ElfW(Rela) * relocations[2];
  std::size_t sizes[2];
};

Imports ImportsOf(const link_map& library) {
  Imports imports{};
  for (const ElfW(Dyn)* entry = library.l_ld; entry->d_tag != DT_NULL; ++entry) {
    const auto address = entry->d_un.d_ptr;
    switch (entry->d_tag) {
      case DT_SYMTAB:
        imports.symbols = reinterpret_cast<const ElfW(Sym)*>(address);
        break;
      case DT_STRTAB:
        imports.names = reinterpret_cast<const char*>(address);
        break;
      case DT_JMPREL:
        imports.relocations[0] = reinterpret_cast<const ElfW(Rela)*>(address);
        break;
      case DT_PLTRELSZ:
        imports.sizes[0] = entry->d_un.d_val;
        break;
      case DT_RELA:
        imports.relocations[1] = reinterpret_cast<const ElfW(Rela)*>(address);
        break;
      case DT_RELASZ:
        imports.sizes[1] = entry->d_un.d_val;
        break;
      default:
        break;
    }
  }
  return imports;
}

}  // namespace

void SettleInWine(void* library) {
  link_map* map = nullptr;
  if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr) return;
  const Imports imports = ImportsOf(*map);
  for (int table = 0; table < 2; ++table) {
    const ElfW(Rela)* const first = imports.relocations[table];
    for (std::size_t i = 0; first != nullptr && i < imports.sizes[table] / sizeof(*first); ++i) {
      const auto type = ELF64_R_TYPE(first[i].r_info);
      if (type != R_X86_64_JUMP_SLOT && type != R_X86_64_GLOB_DAT && type != R_X86_64_64) continue;
      const char* name = imports.names + imports.symbols[ELF64_R_SYM(first[i].r_info)].st_name;
      for (const Substitute& substitute : Substitutes) {
        if (std::strcmp(name, substitute.name) != 0) continue;
        Redirect(reinterpret_cast<void**>(map->l_addr + first[i].r_offset), substitute.function);
      }
    }
  }
}

}  // namespace hotspot
