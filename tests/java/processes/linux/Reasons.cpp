#include "java/processes/Reasons.h"

namespace tests {

const SystemReasons& Reasons() {
  static const SystemReasons s_reasons = {"No such file or directory", "No such file or directory",
                                          "No such file or directory", "Exec format error", "Argument list too long"};
  return s_reasons;
}

}  // namespace tests
