# The Java that tests use. A build whose programs do not find the machine's own Java has set or defined otherwise what
# depends on it: see CMAKE_PROJECT_torvan_INCLUDE in CMakePresets.json.
#
# TORVAN_DRIVE: precedes a path of this machine that is passed to a program of this build; usually nothing
# TORVAN_JAVA_RUNNER: runs a program that uses Java, as CMAKE_CROSSCOMPILING_EMULATOR runs the others; usually nothing

# Where a Java VM's library is in its home folder.
set(TORVAN_LIBJVM "lib/server/libjvm.so")
if(CMAKE_HOST_WIN32)
  set(TORVAN_LIBJVM "bin/server/jvm.dll")
endif()

# Sets FOLDERS to the home folders of the machine's Java VMs, each once however many names it has.
function(torvan_java_vms folders)
  file(GLOB libraries "/usr/lib/jvm/*/${TORVAN_LIBJVM}" "${TORVAN_JDK}/${TORVAN_LIBJVM}")
  set(found)
  foreach(library IN LISTS libraries)
    file(REAL_PATH "${library}" library)
    string(REGEX REPLACE "/${TORVAN_LIBJVM}$" "" folder "${library}")
    list(APPEND found "${folder}")
  endforeach()
  list(REMOVE_DUPLICATES found)
  if(NOT found)
    message(FATAL_ERROR
            "No Java VM (${TORVAN_LIBJVM}) was found in /usr/lib/jvm or ${TORVAN_JDK}. Run scripts/setup.sh.")
  endif()
  set(${folders} ${found} PARENT_SCOPE)
endfunction()

# Makes the target NAME: compiles the SOURCE of the program MAIN into the folder CLASSES, and packs that as JAR.
function(torvan_java_jar name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "JAR;MAIN;CLASSES;SOURCE" "")
  torvan_java_classes(${name}_classes CLASSES "${arg_CLASSES}" SOURCES ${arg_SOURCE})
  add_custom_command(
    OUTPUT "${arg_JAR}"
    COMMAND "${TORVAN_JDK}/bin/jar${CMAKE_HOST_EXECUTABLE_SUFFIX}" --create --file "${arg_JAR}" --main-class ${arg_MAIN}
            -C "${arg_CLASSES}" .
    DEPENDS ${name}_classes "${CMAKE_CURRENT_SOURCE_DIR}/${arg_SOURCE}"
    COMMENT "Packing ${name}"
    VERBATIM)
  add_custom_target(${name} DEPENDS "${arg_JAR}")
endfunction()

# Lets a TEST find a Java whose VM is that of the JDK in FOLDER. PROGRAM is the program of this build that the test runs, if
# it runs one directly; BY_PATH says that it needs the path of the VM's library.
if(NOT COMMAND torvan_use_java)
  function(torvan_use_java test folder)
    # Java takes texts from the system in the encoding of the locale.
    set_tests_properties(${test} PROPERTIES
      ENVIRONMENT "TORVAN_TEST_LIBJVM=${folder}/${TORVAN_LIBJVM};LC_ALL=C.UTF-8")
  endfunction()
endif()

# A library NAME of SOURCE, in FOLDER, that a Java program loads.
if(NOT COMMAND torvan_java_library)
  function(torvan_java_library name source folder)
    add_library(${name} MODULE ${source})
    target_link_libraries(${name} PRIVATE torvan_jni_headers)
    torvan_warnings(${name})
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "$<1:${folder}>")
  endfunction()
endif()

# Sets RESULT to the file of what the tests' VMs report with -Xcheck:jni; FILE is what HotSpot does.
if(NOT COMMAND torvan_expected_reports)
  function(torvan_expected_reports result file)
    set(${result} "${file}" PARENT_SCOPE)
  endfunction()
endif()
