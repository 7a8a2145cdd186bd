// Keeps signals from this thread.
#pragma once

#include <pthread.h>
#include <signal.h>

#include <initializer_list>

namespace torvan::java::detail {

// Blocks all signals while it lives, except those of faults, which stay as they are. Threads and children that are made
// meanwhile inherit that. A fault whose signal is blocked ends the process without any report; handlers of faults have
// to run, those of a Java VM in this process first of all.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS}) sigdelset(&all, fault);
    pthread_sigmask(SIG_BLOCK, &all, &m_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_before;
};

}  // namespace torvan::java::detail
