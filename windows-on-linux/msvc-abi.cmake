# 64-bit Windows programs of the Microsoft C++ ABI from Linux: clang-cl and lld-link, mingw-w64's C headers and import
# libraries, libc++'s headers. startup/ has the start-up code, and libcxx/ what tests need of a compiled C++ library.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Not Debian's default: with clang 14 the destructor's slot destroys one element of an array, and Visual Studio's all.
set(TORVAN_LLVM "/usr/lib/llvm-22" CACHE PATH "LLVM installation with clang-cl and lld-link")
# libcxx/ is the compiled part of this version.
set(TORVAN_LIBCXX "/usr/lib/llvm-14/include/c++/v1" CACHE PATH "libc++ 14's headers")
set(TORVAN_MINGW "/usr/x86_64-w64-mingw32" CACHE PATH "mingw-w64's C headers and import libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TORVAN_LLVM TORVAN_LIBCXX TORVAN_MINGW)
set(CMAKE_C_COMPILER "${TORVAN_LLVM}/bin/clang-cl")
set(CMAKE_CXX_COMPILER "${TORVAN_LLVM}/bin/clang-cl")
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_LINKER "${TORVAN_LLVM}/bin/lld-link")
set(CMAKE_AR "${TORVAN_LLVM}/bin/llvm-lib")
set(CMAKE_RC_COMPILER "${TORVAN_LLVM}/bin/llvm-rc")
set(CMAKE_MT "${TORVAN_LLVM}/bin/llvm-mt")

foreach(variable CL _CL_ LINK _LINK_)
  if(DEFINED ENV{${variable}})
    message(FATAL_ERROR "The environment variable ${variable} is set: clang-cl and lld-link would read options from it.")
  endif()
endforeach()

# The version of Visual Studio is fixed; otherwise clang-cl takes the build machine's. mingw-w64's
# headers want to see GCC's version macros, too.
set(c_headers "-imsvc ${TORVAN_MINGW}/include")
set(shared_flags "-fmsc-version=1929 /clang:-fgnuc-version=4.2.1 -D_UCRT -D__CRT__NO_INLINE -D__USE_MINGW_ANSI_STDIO=0")
set(CMAKE_C_FLAGS_INIT "${shared_flags} ${c_headers}")
# Of libc++ only the headers are used; what it would expect of the Microsoft runtime's own C++ headers is not here.
set(CMAKE_CXX_FLAGS_INIT
    "${shared_flags} -imsvc ${TORVAN_LIBCXX} ${c_headers} -D_LIBCPP_NO_VCRUNTIME \
-D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS -D_LIBCPP_DISABLE_EXTERN_TEMPLATE")

# The compiler's test programs have no start-up code yet, and programs need no manifest.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "/nodefaultlib /manifest:no")
endforeach()
set(CMAKE_C_STANDARD_LIBRARIES "" CACHE STRING "")
set(CMAKE_CXX_STANDARD_LIBRARIES "" CACHE STRING "")
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
