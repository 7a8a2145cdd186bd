// Where a Java installation keeps its files, and how paths are written, on this system. The constants are initialised
// at compile time, so any static initialiser can use them.
#pragma once

#include <rx/Text.h>

namespace torvan::platform {

// Between the folders of a path, and after each entry of a path list.
extern const RX::UniChar* const PathSeparator;
extern const RX::UniChar* const PathListSeparator;

// Below a runtime's home folder; the programs without, the libraries with a leading separator.
extern const RX::UniChar* const JavaProgram;
extern const RX::UniChar* const WindowedJavaProgram;
extern const RX::UniChar* const ClassicLibrary;
extern const RX::UniChar* const ClientLibrary;

// Below the home folder of a development kit, with a leading separator.
extern const RX::UniChar* const ServerLibrary;

}  // namespace torvan::platform
