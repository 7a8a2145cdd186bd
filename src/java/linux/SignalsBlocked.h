// A stretch in which this thread takes no signals.
#pragma once

#include <pthread.h>
#include <signal.h>

namespace torvan::java::detail {

// What is made meanwhile, a thread or a child, begins that way.
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
