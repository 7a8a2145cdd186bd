# tests/Java.cmake for Windows programs under Wine: their Java is this machine's HotSpot, installed in a separate Wine
# prefix by the test hotspot_install. See hotspot/README.md.

find_program(TORVAN_HOST_CXX NAMES g++ c++ NO_CMAKE_FIND_ROOT_PATH)
find_program(TORVAN_WINEGXX NAMES wineg++-stable wineg++ NO_CMAKE_FIND_ROOT_PATH)
if(NOT TORVAN_HOST_CXX OR NOT TORVAN_WINEGXX)
  message(FATAL_ERROR "g++ and wineg++, which make Java for Wine, were not found. Run scripts/setup.sh.")
endif()

set(TORVAN_DRIVE "Z:")  # Wine has the root folder of the machine as this drive
set(TORVAN_JAVA_RUNNER "${CMAKE_CURRENT_LIST_DIR}/wine-run" "${CMAKE_BINARY_DIR}/wine-java")

# HOTSPOT_HOME names the JDK whose VM the installed Java loads. The fixed interface finds it in the registry.
function(torvan_use_java test folder)
  # To Java a path such as Z:/tmp is a relative one: this finds it from the folder that the test runs in.
  file(CREATE_LINK / "${CMAKE_CURRENT_BINARY_DIR}/${TORVAN_DRIVE}" SYMBOLIC)
  cmake_parse_arguments(PARSE_ARGV 2 arg "BY_PATH" "PROGRAM" "")
  set(environment "HOTSPOT_HOME=${folder}")
  if(arg_BY_PATH)
    list(APPEND environment "TORVAN_TEST_LIBJVM=C:/Program Files/Java/jre/bin/server/jvm.dll")
  endif()
  string(REGEX REPLACE "[.].*" "" program "${test}")
  get_property(cases GLOBAL PROPERTY windows_on_linux_cases_${program})
  if(cases)
    list(JOIN cases ":" cases)
    list(APPEND environment "GTEST_FILTER=-${cases}")
  endif()
  if(arg_PROGRAM)
    set_target_properties(${arg_PROGRAM} PROPERTIES CROSSCOMPILING_EMULATOR "${TORVAN_JAVA_RUNNER}")
  endif()
  set_tests_properties(${test} PROPERTIES FIXTURES_REQUIRED java ENVIRONMENT "${environment}")
endfunction()

# To Java the system is Linux, so the library is one of Linux.
function(torvan_java_library name source folder)
  set(library "${folder}/lib${name}.so")
  add_custom_command(
    OUTPUT "${library}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
    COMMAND "${TORVAN_HOST_CXX}" -shared -fPIC -I "${TORVAN_JDK}/include" -I "${TORVAN_JDK}/include/linux"
            "${CMAKE_CURRENT_SOURCE_DIR}/${source}" -o "${library}"
    DEPENDS "${source}"
    VERBATIM)
  add_custom_target(${name} DEPENDS "${library}")
endfunction()

# The bridge calls each method in its form with an array.
function(torvan_expected_reports result file)
  file(READ "${file}" text)
  string(REPLACE "MethodV" "MethodA" text "${text}")
  set(expected "${CMAKE_CURRENT_BINARY_DIR}/xcheck-expected.txt")
  file(CONFIGURE OUTPUT "${expected}" CONTENT "${text}" @ONLY)
  set(${result} "${expected}" PARENT_SCOPE)
endfunction()
