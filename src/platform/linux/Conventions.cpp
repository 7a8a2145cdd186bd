#include "platform/Conventions.h"

namespace torvan::platform {

const RX::UniChar* const PathSeparator = RX_TEXT("/");
const RX::UniChar* const PathListSeparator = RX_TEXT(":");

const RX::UniChar* const JavaProgram = RX_TEXT("bin/java");
const RX::UniChar* const WindowedJavaProgram = RX_TEXT("bin/java");  // only Windows distinguishes windowed programs
const RX::UniChar* const ClassicLibrary = RX_TEXT("/lib/classic/libjvm.so");
const RX::UniChar* const ClientLibrary = RX_TEXT("/lib/client/libjvm.so");

const RX::UniChar* const ServerLibrary = RX_TEXT("/jre/lib/server/libjvm.so");

}  // namespace torvan::platform
