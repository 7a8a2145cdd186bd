# The JDK of the build machine: jni.h for the library, javac and jar for examples and tests.

if(NOT TORVAN_JDK)
  if(DEFINED ENV{JAVA_HOME} AND EXISTS "$ENV{JAVA_HOME}/include/jni.h")
    set(TORVAN_JDK "$ENV{JAVA_HOME}")
  else()
    # A cross build looks for programs of the build machine, too.
    find_program(TORVAN_JAVAC_PROGRAM javac NO_CMAKE_FIND_ROOT_PATH)
    if(TORVAN_JAVAC_PROGRAM)
      file(REAL_PATH "${TORVAN_JAVAC_PROGRAM}" javac_path)
      cmake_path(GET javac_path PARENT_PATH javac_folder)
      cmake_path(GET javac_folder PARENT_PATH TORVAN_JDK)
    endif()
  endif()
  set(TORVAN_JDK "${TORVAN_JDK}" CACHE PATH "JDK whose jni.h, javac and jar are used")
endif()
if(NOT EXISTS "${TORVAN_JDK}/include/jni.h")
  message(FATAL_ERROR "No JDK with include/jni.h was found. Run scripts/setup.sh, or set JAVA_HOME or TORVAN_JDK.")
endif()
set(TORVAN_JAVAC "${TORVAN_JDK}/bin/javac${CMAKE_HOST_EXECUTABLE_SUFFIX}")
set(TORVAN_JAR "${TORVAN_JDK}/bin/jar${CMAKE_HOST_EXECUTABLE_SUFFIX}")

add_library(torvan_jni_headers INTERFACE)
if(WIN32 AND NOT CMAKE_HOST_WIN32)
  # jni.h of a Linux JDK with the machine-dependent half that a Windows JDK ships.
  set(jni_machine_headers "${PROJECT_SOURCE_DIR}/src/platform/win32/jni")
elseif(WIN32)
  set(jni_machine_headers "${TORVAN_JDK}/include/win32")
else()
  set(jni_machine_headers "${TORVAN_JDK}/include/linux")
endif()
target_include_directories(torvan_jni_headers SYSTEM INTERFACE "${TORVAN_JDK}/include" "${jni_machine_headers}")

# Compiles Java SOURCES into the folder CLASSES and gives the target NAME that does it.
function(torvan_java_classes name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "CLASSES" "SOURCES;OPTIONS")
  list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" REGEX "^[^/]" OUTPUT_VARIABLE sources)
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${name}.stamp")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${arg_CLASSES}"
    COMMAND "${TORVAN_JAVAC}" -encoding UTF-8 --release 8 -Xlint:-options -g -d "${arg_CLASSES}" ${arg_OPTIONS} ${sources}
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS ${sources}
    COMMENT "Compiling Java classes ${name}"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS "${stamp}")
endfunction()
