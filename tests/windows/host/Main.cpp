#include "Check.h"

host::Counts host::counts = {0, 0};

int main() {
  CHECK(torvan::Initialize() == 1);
  host::CheckRecords();
  host::CheckContainers();
  host::CheckOptions();
  host::CheckExceptions();
  host::CheckJava();
  host::CheckLauncher();
  CHECK(torvan::Terminate() == 0);
  std::printf("%d passed, %d failed\n", host::counts.passed, host::counts.failed);
  return host::counts.failed == 0 && host::counts.passed > 0 ? 0 : 1;
}
