# Included when the project begins (CMAKE_PROJECT_torvan_INCLUDE, see CMakePresets.json): fits a Windows build to a Linux
# machine, with Wine as its Windows. The rest of the project does not know this folder.
include("${CMAKE_CURRENT_LIST_DIR}/java.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/leave-out.cmake")

set(WINDOWS_ON_LINUX "${CMAKE_CURRENT_LIST_DIR}")
# Tests run in a prefix below the build folder. Java is installed in another one: most tests run where there is none.
set(CMAKE_CROSSCOMPILING_EMULATOR "${WINDOWS_ON_LINUX}/wine-run;${CMAKE_BINARY_DIR}/wine")

set(TORVAN_TEST_PACKAGED_EXAMPLES OFF)
if(MSVC)
  add_compile_options(-Wno-clang-cl-pch)  # the precompiled header of the tests does not depend on a program's macros
  set(gtest_disable_pthreads ON)  # CMake would look for them, and nothing can be linked at that moment
  set(TORVAN_OLDER_CLANG "/usr/lib/llvm-14/bin/clang-cl" CACHE FILEPATH "clang-cl whose layouts are compared, too")

  # The programs of tests/package are built by clang-cl, which brings no start-up code and no whole C++ library.
  string(CONCAT libraries "$<TARGET_FILE:msvc_abi_startup> "
                          "$<JOIN:$<TARGET_PROPERTY:msvc_abi_startup,INTERFACE_LINK_LIBRARIES>, >")
  set(TORVAN_CONSUMER_OPTIONS "-DCMAKE_CXX_STANDARD_LIBRARIES=${libraries}" -DCONSUMER_JAVA=OFF)
  message(STATUS "The package's examples and a host of torvan::java are left to the other targets: there is no whole C++ library here.")
else()
  message(STATUS "The package's examples are left to Linux, for their time; the examples themselves are built and run here.")
endif()

# Links each program and library with what its compiler does not bring.
function(windows_on_linux_link_compilers_libraries)
  # The product and a host as its maker writes it: no compiled part of the C++ library.
  set(without_library torvan_objects torvan mirel rx place windows_host windows_echo_jvm)
  windows_on_linux_all(targets BUILDSYSTEM_TARGETS "${PROJECT_SOURCE_DIR}")
  include("${WINDOWS_ON_LINUX}/startup/startup.cmake")
  include("${WINDOWS_ON_LINUX}/libcxx/libcxx.cmake")
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type MATCHES "EXECUTABLE|(STATIC|SHARED|MODULE|OBJECT)_LIBRARY")
      if(NOT target IN_LIST without_library)
        set_property(TARGET ${target} APPEND PROPERTY LINK_LIBRARIES msvc_abi_libcxx)
      endif()
      set_property(TARGET ${target} APPEND PROPERTY LINK_LIBRARIES msvc_abi_startup)
    endif()
  endforeach()
endfunction()

# When all targets and tests are known.
function(windows_on_linux_finish)
  if(TORVAN_BUILD_TESTS)
    include("${WINDOWS_ON_LINUX}/hotspot/hotspot.cmake")
    include("${WINDOWS_ON_LINUX}/leave-out/leave-out-tests.cmake")
    target_sources(realvm_creation PRIVATE "${WINDOWS_ON_LINUX}/hotspot/InstalledRuntimeTest.cpp")
  endif()
  windows_on_linux_leave_out()
  if(MSVC)
    windows_on_linux_link_compilers_libraries()
  endif()
endfunction()
cmake_language(DEFER CALL windows_on_linux_finish)
