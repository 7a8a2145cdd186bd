# One static library, as the compiler's own would be: the linker takes the parts that a program or DLL needs.
set(sources
  DllMain.cpp
  LocalStatics.cpp
  Main.cpp
  OperatorNew.cpp
  OperatorNewForms.cpp
  OperatorNewNothrow.cpp
  SecurityCookie.cpp
  StackProbe.cpp
  StartUp.cpp
  ThreadLocal.cpp
  TypeInfo.cpp
  WideMain.cpp
)
list(TRANSFORM sources PREPEND "${CMAKE_CURRENT_LIST_DIR}/")
add_library(msvc_abi_startup STATIC ${sources})
# The table of every type_info must not describe the class that stands in for type_info.
set_source_files_properties("${CMAKE_CURRENT_LIST_DIR}/TypeInfo.cpp" PROPERTIES COMPILE_OPTIONS "/GR-")
torvan_warnings(msvc_abi_startup)

set(vcruntime "${CMAKE_BINARY_DIR}/windows-on-linux/vcruntime140.lib")
add_custom_command(
  OUTPUT "${vcruntime}"
  COMMAND "${TORVAN_LLVM}/bin/llvm-dlltool" -m i386:x86-64 -d "${CMAKE_CURRENT_LIST_DIR}/vcruntime140.def" -l "${vcruntime}"
  DEPENDS "${CMAKE_CURRENT_LIST_DIR}/vcruntime140.def"
  COMMENT "Making the import library of vcruntime140.dll"
  VERBATIM)
add_custom_target(msvc_abi_vcruntime DEPENDS "${vcruntime}")
add_dependencies(msvc_abi_startup msvc_abi_vcruntime)

# The order matters: what both libraries export is vcruntime140's.
target_link_libraries(msvc_abi_startup INTERFACE
  "${vcruntime}"
  "${TORVAN_MINGW}/lib/libucrtbase.a"
  "${TORVAN_MINGW}/lib/libkernel32.a"
  "${TORVAN_MINGW}/lib/libadvapi32.a"
  "${TORVAN_MINGW}/lib/libshell32.a"
)

# Libraries that a target asks for by name.
foreach(library psapi)
  add_library(${library} INTERFACE IMPORTED GLOBAL)
  target_link_libraries(${library} INTERFACE "${TORVAN_MINGW}/lib/lib${library}.a")
endforeach()
