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
# The same in a kit of version 8, in a folder named after the CPU. Its tests run only where programs of this build find the
# machine's own Java.
set(TORVAN_LIBJVM_8)
if(NOT COMMAND torvan_use_java)
  set(TORVAN_LIBJVM_8 "jre/lib/*/server/libjvm.so")
  if(CMAKE_HOST_WIN32)
    set(TORVAN_LIBJVM_8 "jre/bin/server/jvm.dll")
  endif()
endif()

# Sets LIBRARY to the library of the VM in the folder of a kit or a runtime; empty where it has none.
function(torvan_vm_library library folder)
  set(found)
  foreach(place IN LISTS TORVAN_LIBJVM TORVAN_LIBJVM_8)
    file(GLOB libraries "${folder}/${place}")
    list(APPEND found ${libraries})
  endforeach()
  list(POP_FRONT found first)
  set(${library} "${first}" PARENT_SCOPE)
endfunction()

# Sets FOLDERS to the home folders of the machine's Java VMs, each once however many names it has: those from version 9 on,
# and with the word WITH_8 those of version 8, too.
function(torvan_java_vms folders)
  if(NOT "WITH_8" IN_LIST ARGN)
    set(TORVAN_LIBJVM_8)
  endif()
  file(GLOB candidates "/usr/lib/jvm/*" "${TORVAN_JDK}")
  set(found)
  foreach(folder IN LISTS candidates)
    torvan_vm_library(library "${folder}")
    if(library)
      file(REAL_PATH "${folder}" folder)
      list(APPEND found "${folder}")
    endif()
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
    torvan_vm_library(library "${folder}")
    # Java takes texts from the system in the encoding of the locale.
    set_tests_properties(${test} PROPERTIES ENVIRONMENT "TORVAN_TEST_LIBJVM=${library};LC_ALL=C.UTF-8")
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
