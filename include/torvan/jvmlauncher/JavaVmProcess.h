// A Java program that was started.
#pragma once

#include <mirel/base/Base.h>
#include <torvan/Export.h>

namespace torvan::jvmlauncher {

class CJavaVmProcessImp;

// A process that CJavaVmLauncher started.
// The program does not depend on this object: when the last reference goes, a running program runs on. Times are
// milliseconds. One thread at a time may use an object.
//
// On Linux the program is a child of the process that launched it, and of no other: after a fork, only that process can
// wait for it or end it. A host that ignores SIGCHLD, or reaps every child with waitpid(-1, ...), takes the exit code
// away: Wait throws "GetExitCodeProcess failed." once the program has ended, and GetExitCode returns 0 from then on.
class TORVAN_API CJavaVmProcess : public mirel::base::CBase {
 public:
  // Takes ownership of an implementation; the launcher makes it.
  CJavaVmProcess(CJavaVmProcessImp* implementation);
  ~CJavaVmProcess();
  CJavaVmProcess(const CJavaVmProcess&) = delete;
  CJavaVmProcess& operator=(const CJavaVmProcess&) = delete;

  // Waits until the program has ended, at most for this time; with no argument, without limit.
  // Tells whether the program has ended, and if so, records its exit code. 0 only asks; 0xFFFFFFFF waits without limit.
  // Throws CIllegalArgumentException "WaitForSignleObjects returned error." (so spelled) when the system cannot wait,
  // and "GetExitCodeProcess failed." when the program has ended and its exit code cannot be read; GetExitCode then
  // returns what an earlier Wait recorded, or 0.
  //
  // The slots of the two are in this order: with the time, without. The Microsoft compilers lay overloads out from the
  // last one declared to the first, all others as declared.
#if defined(_MSC_VER)
  virtual void Wait();
  virtual bool Wait(unsigned int milliseconds);
#else
  virtual bool Wait(unsigned int milliseconds);
  virtual void Wait();
#endif

  // Ends the program at once, with exit code 0.
  // Returns without waiting; a later Wait sees the end. On a program that has ended it does nothing.
  virtual void Kill();

  // Asks the program to end, as Ctrl+C and Ctrl+Break on its console do.
  // Returns without waiting, and does not say whether it helps: the program may refuse, and a program that shares no
  // console with this process does not hear it. Hosts wait for a while and then call Kill.
  virtual void Stop();

  // Returns the exit code that the last successful Wait recorded; the system is not asked again.
  // Throws CIllegalArgumentException "No Wait called." before that.
  int GetExitCode();

 private:
  CJavaVmProcessImp* m_impl;
};

}  // namespace torvan::jvmlauncher
