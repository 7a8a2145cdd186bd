// Keeps signals from this thread.
#pragma once

#include <pthread.h>
#include <signal.h>

namespace torvan::java::detail {

// Blocks all signals while it lives. Threads and children that are made meanwhile inherit that.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &m_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_before;
};

}  // namespace torvan::java::detail
