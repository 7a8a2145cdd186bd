// Native methods of the host, called by Java in the way of Unix and answered in that of Windows.
#include <sys/mman.h>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "Environment.h"

namespace hotspot {

namespace {

struct NativeMethod {
  void* host;
  std::vector<char> types;
  void* entry;
};

constexpr std::size_t IntegersInRegisters = 6;
constexpr std::size_t NumbersInRegisters = 8;

// What HotSpot passes in registers.
struct Registers {
  std::uint64_t integers[IntegersInRegisters];
  std::uint64_t numbers[NumbersInRegisters];
};

// What a function returns, in the register of its kind: HotSpot knows which one counts.
struct Result {
  std::uint64_t integer;
  double number;
};

bool IsNumber(char type) { return type == 'F' || type == 'D'; }

}  // namespace

extern "C" {

// Where the entry of each method jumps to, with its NativeMethod in r10: calls Bridge_AnswerJava.
void Bridge_EnterFromJava();

// Calls a function in the way of Windows. It has one slot for each argument, and at least 4; their number is even. The
// first 4 are in registers of both kinds.
Result Bridge_CallHost(void* function, const std::uint64_t* slots, std::size_t count);

__attribute__((visibility("hidden"), used)) Result Bridge_AnswerJava(const NativeMethod& method,
                                                                     const Registers& registers,
                                                                     const std::uint64_t* others) {
  constexpr std::size_t mostArguments = 2 + 255;
  std::uint64_t slots[mostArguments + 1];
  slots[0] = reinterpret_cast<std::uint64_t>(HostEnvOf(reinterpret_cast<JNIEnv*>(registers.integers[0])));
  slots[1] = registers.integers[1];
  std::size_t count = 2;
  const std::uint64_t* integer = registers.integers + 2;
  const std::uint64_t* number = registers.numbers;
  for (const char type : method.types) {
    const bool isNumber = IsNumber(type);
    const bool isInRegister =
        isNumber ? number < registers.numbers + NumbersInRegisters : integer < registers.integers + IntegersInRegisters;
    slots[count++] = !isInRegister ? *others++ : isNumber ? *number++ : *integer++;
  }
  while (count < 4 || count % 2 != 0) slots[count++] = 0;
  return Bridge_CallHost(method.host, slots, count);
}
}

__asm__(R"(
  .text
  .hidden Bridge_EnterFromJava
  .type Bridge_EnterFromJava, @function
Bridge_EnterFromJava:
  .cfi_startproc
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  subq $112, %rsp
  movq %rdi, 0(%rsp)
  movq %rsi, 8(%rsp)
  movq %rdx, 16(%rsp)
  movq %rcx, 24(%rsp)
  movq %r8, 32(%rsp)
  movq %r9, 40(%rsp)
  movsd %xmm0, 48(%rsp)
  movsd %xmm1, 56(%rsp)
  movsd %xmm2, 64(%rsp)
  movsd %xmm3, 72(%rsp)
  movsd %xmm4, 80(%rsp)
  movsd %xmm5, 88(%rsp)
  movsd %xmm6, 96(%rsp)
  movsd %xmm7, 104(%rsp)
  movq %r10, %rdi
  movq %rsp, %rsi
  leaq 16(%rbp), %rdx
  call Bridge_AnswerJava
  leave
  .cfi_def_cfa %rsp, 8
  ret
  .cfi_endproc
  .size Bridge_EnterFromJava, . - Bridge_EnterFromJava

  .hidden Bridge_CallHost
  .type Bridge_CallHost, @function
Bridge_CallHost:
  .cfi_startproc
  pushq %rbp
  .cfi_def_cfa_offset 16
  .cfi_offset %rbp, -16
  movq %rsp, %rbp
  .cfi_def_cfa_register %rbp
  movq %rdi, %rax
  movq %rdx, %rcx
  shlq $3, %rdx
  subq %rdx, %rsp
  movq %rsp, %rdi
  rep movsq
  movq 0(%rsp), %rcx
  movq 8(%rsp), %rdx
  movq 16(%rsp), %r8
  movq 24(%rsp), %r9
  movq %rcx, %xmm0
  movq %rdx, %xmm1
  movq %r8, %xmm2
  movq %r9, %xmm3
  call *%rax
  leave
  .cfi_def_cfa %rsp, 8
  ret
  .cfi_endproc
  .size Bridge_CallHost, . - Bridge_CallHost
)");

namespace {

// Code that goes to Bridge_EnterFromJava with its method.
class Entries {
 public:
  // Returns null if there is no memory.
  void* New(const NativeMethod& method) {
    // movabs $method, %r10; movabs $Bridge_EnterFromJava, %r11; jmp *%r11
    static constexpr unsigned char code[] = {0x49, 0xBA, 0, 0, 0, 0, 0, 0, 0,    0,    0x49, 0xBB,
                                             0,    0,    0, 0, 0, 0, 0, 0, 0x41, 0xFF, 0xE3};
    static_assert(sizeof(code) <= EntrySize);
    if (m_next == m_end) {
      void* const block =
          mmap(nullptr, BlockSize, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
      if (block == MAP_FAILED) return nullptr;
      m_next = static_cast<unsigned char*>(block);
      m_end = m_next + BlockSize;
    }
    unsigned char* const entry = std::exchange(m_next, m_next + EntrySize);
    const auto* const data = &method;
    const auto target = &Bridge_EnterFromJava;
    std::memcpy(entry, code, sizeof(code));
    std::memcpy(entry + 2, &data, sizeof(data));
    std::memcpy(entry + 12, &target, sizeof(target));
    return entry;
  }

 private:
  static constexpr std::size_t EntrySize = 32;
  static constexpr std::size_t BlockSize = 0x10000;
  unsigned char* m_next = nullptr;
  unsigned char* m_end = nullptr;
};

// Every method has one for each kind of call, which stays: HotSpot does not say when its class is gone.
void* EntryOf(void* host, const char* descriptor) {
  static std::mutex lock;
  static Entries entries;
  static std::map<std::pair<void*, std::string>, NativeMethod> methods;
  const std::lock_guard<std::mutex> guard(lock);
  NativeMethod& method = methods[{host, descriptor}];
  if (method.entry == nullptr) {
    method.host = host;
    method.types = ParameterTypes(descriptor);
    method.entry = entries.New(method);
  }
  return method.entry;
}

}  // namespace

jint RegisterNatives(JNIEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count) {
  std::vector<JNINativeMethod> bridged(methods, methods + count);
  for (JNINativeMethod& method : bridged) {
    method.fnPtr = EntryOf(method.fnPtr, method.signature);
    if (method.fnPtr == nullptr) return JNI_ENOMEM;
  }
  return env->functions->RegisterNatives(env, javaClass, bridged.data(), count);
}

}  // namespace hotspot
