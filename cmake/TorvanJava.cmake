# The JDK of the build machine: jni.h for the library and its hosts, javac and jar for Java classes. The package has this
# file, too.

# Sets RESULT to the folder of this system, "linux" or "win32": of a JDK's include folder, and of each folder here with code
# that differs between systems.
function(torvan_system_folder result)
  if(WIN32)
    set(${result} win32 PARENT_SCOPE)
  elseif(CMAKE_SYSTEM_NAME STREQUAL Linux)
    set(${result} linux PARENT_SCOPE)
  else()
    message(FATAL_ERROR "There is no code for ${CMAKE_SYSTEM_NAME}. Name its folder in torvan_system_folder, in cmake/TorvanJava.cmake. "
                        "Write src/platform/<folder>/System.cpp and Conventions.cpp, which answer the questions of "
                        "src/platform/System.h, and the sources of src/java/<folder> that src/java/CMakeLists.txt lists.")
  endif()
endfunction()

# Sets RESULT to the folders of jni.h and of its machine-dependent half, or to nothing when there is no JDK. A JDK that is
# not a Windows one has no such half for Windows; WINDOWS_JNI is the folder that has one.
function(torvan_jni_folders result windows_jni)
  set(${result} "" PARENT_SCOPE)
  if(NOT TORVAN_JDK)
    set(jdk "$ENV{JAVA_HOME}")
    if(NOT jdk OR NOT EXISTS "${jdk}/include/jni.h")
      # A cross build looks for programs of the build machine, too.
      find_program(TORVAN_JAVAC_PROGRAM javac NO_CMAKE_FIND_ROOT_PATH)
      mark_as_advanced(TORVAN_JAVAC_PROGRAM)
      if(NOT TORVAN_JAVAC_PROGRAM)
        return()
      endif()
      file(REAL_PATH "${TORVAN_JAVAC_PROGRAM}" javac)
      cmake_path(GET javac PARENT_PATH jdk)
      cmake_path(GET jdk PARENT_PATH jdk)
    endif()
    file(TO_CMAKE_PATH "${jdk}" jdk)
    if(NOT EXISTS "${jdk}/include/jni.h")
      return()  # and nothing is remembered that would hide a JAVA_HOME set later
    endif()
    set(TORVAN_JDK "${jdk}" CACHE PATH "JDK whose jni.h, javac and jar are used")
  endif()
  if(NOT EXISTS "${TORVAN_JDK}/include/jni.h")
    return()
  endif()

  torvan_system_folder(system)
  set(machine_headers "${TORVAN_JDK}/include/${system}")
  if(WIN32 AND NOT EXISTS "${machine_headers}")
    set(machine_headers "${windows_jni}")
  endif()
  if(NOT EXISTS "${machine_headers}/jni_md.h")
    message(FATAL_ERROR "There is no jni_md.h in ${machine_headers}: the JDK is one for another system.")
  endif()
  set(${result} "${TORVAN_JDK}/include" "${machine_headers}" PARENT_SCOPE)
endfunction()

# Compiles Java SOURCES into the folder CLASSES by the target NAME. For Java 8 unless RELEASE says more.
function(torvan_java_classes name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "CLASSES;RELEASE" "SOURCES;OPTIONS")
  if(NOT arg_RELEASE)
    set(arg_RELEASE 8)
  endif()
  list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" REGEX "^[^/]" OUTPUT_VARIABLE sources)
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${name}.stamp")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${arg_CLASSES}"
    # The locale, because javac names class files in its encoding.
    COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C.UTF-8
            "${TORVAN_JDK}/bin/javac${CMAKE_HOST_EXECUTABLE_SUFFIX}" -encoding UTF-8 --release ${arg_RELEASE} -Xlint:-options -g
            -d "${arg_CLASSES}" ${arg_OPTIONS} ${sources}
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS ${sources}
    COMMENT "Compiling Java classes ${name}"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS "${stamp}")
endfunction()
