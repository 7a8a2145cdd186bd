// The whole fixed interface: everything that a host of torvan::jni and torvan::jvmlauncher may use.
#pragma once

#include <rx/Compiler.h>
#include <rx/Memory.h>
#include <rx/OutOfMemoryException.h>
#include <rx/Text.h>
#include <rx/UniString.h>

#include <mirel/Mirel.h>
#include <mirel/base/At.h>
#include <mirel/base/Base.h>
#include <mirel/base/Class.h>
#include <mirel/base/Exception.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NonCopyable.h>
#include <mirel/base/Null.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/Object.h>
#include <mirel/base/Ref.h>
#include <mirel/base/RefCountedPtr.h>
#include <mirel/base/String.h>
#include <mirel/base/System.h>
#include <mirel/base/UnicodeString.h>
#include <mirel/base/UnicodeStringBuffer.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/io/PrintStream.h>
#include <mirel/util/HashCode.h>
#include <mirel/util/Hashtable.h>
#include <mirel/util/NoSuchElementException.h>
#include <mirel/util/ObjectVector.h>
#include <mirel/util/UnicodeStringVector.h>
#include <mirel/util/Vector.h>

#include <place/Location.h>

#include <torvan/Initialize.h>
#include <torvan/JavaException.h>
#include <torvan/JavaRuntimeException.h>
#include <torvan/JavaVmException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/JniException.h>
#include <torvan/Version.h>

#include <torvan/jni/DynamicJavaRuntime.h>
#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaObject.h>
#include <torvan/jni/JavaRuntime.h>
#include <torvan/jni/JavaString.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/JniTypes.h>
#include <torvan/jni/ScalarArguments.h>
#include <torvan/jni/options/AbortHook.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/CustomOption.h>
#include <torvan/jni/options/ExitHook.h>
#include <torvan/jni/options/Hook.h>
#include <torvan/jni/options/LibraryPath.h>
#include <torvan/jni/options/Option.h>
#include <torvan/jni/options/Options.h>
#include <torvan/jni/options/PathList.h>
#include <torvan/jni/options/SystemProperty.h>
#include <torvan/jni/options/Verbose.h>
#include <torvan/jni/options/VfprintfHook.h>

#include <torvan/jvmlauncher/ArgumentList.h>
#include <torvan/jvmlauncher/JavaVmLauncher.h>
#include <torvan/jvmlauncher/JavaVmOption.h>
#include <torvan/jvmlauncher/JavaVmOptions.h>
#include <torvan/jvmlauncher/JavaVmProcess.h>
#include <torvan/jvmlauncher/options/ClassPathOption.h>
#include <torvan/jvmlauncher/options/DirectOption.h>
#include <torvan/jvmlauncher/options/JarOption.h>
#include <torvan/jvmlauncher/options/NonStandardOption.h>
#include <torvan/jvmlauncher/options/SystemPropertyOption.h>
