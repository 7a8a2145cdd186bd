#include "platform/Conventions.h"

namespace torvan::platform {

const RX::UniChar* const PathSeparator = RX_TEXT("\\");
const RX::UniChar* const PathListSeparator = RX_TEXT(";");

const RX::UniChar* const JavaProgram = RX_TEXT("bin\\java.exe");
const RX::UniChar* const WindowedJavaProgram = RX_TEXT("bin\\javaw.exe");
const RX::UniChar* const ClassicLibrary = RX_TEXT("\\bin\\classic\\jvm.dll");
const RX::UniChar* const ClientLibrary = RX_TEXT("\\bin\\client\\jvm.dll");

const RX::UniChar* const ServerLibrary = RX_TEXT("\\jre\\bin\\server\\jvm.dll");

}  // namespace torvan::platform
