// Touches the pages of a large stack frame in order, since the system grows a stack by one page at a time.
// The compiler calls it with the frame's size in rax and expects every register back as it was.
extern "C" __attribute__((naked)) void __chkstk() {
  __asm__(
      "pushq %rcx\n"
      "pushq %rax\n"
      "leaq 24(%rsp), %rcx\n"  // the caller's stack pointer
      "1: cmpq $4096, %rax\n"
      "jb 2f\n"
      "subq $4096, %rcx\n"
      "testb $0, (%rcx)\n"
      "subq $4096, %rax\n"
      "jmp 1b\n"
      "2: subq %rax, %rcx\n"
      "testb $0, (%rcx)\n"
      "popq %rax\n"
      "popq %rcx\n"
      "retq\n");
}
