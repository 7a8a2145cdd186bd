# What cannot be built or shown under Wine, and why; each reason is printed. A test of CTest is left out by its name (CTest
# reads CTestCustom.cmake in the build folder), a program by not being built, a source by not being compiled, and one test
# of a program by GoogleTest's filter, which torvan_use_java sets.

# Sets RESULT to all that a PROPERTY lists of the folder and of those below it: TESTS, or the targets as BUILDSYSTEM_TARGETS.
function(windows_on_linux_all result property folder)
  get_property(all DIRECTORY "${folder}" PROPERTY ${property})
  get_property(folders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(inner IN LISTS folders)
    windows_on_linux_all(more ${property} "${inner}")
    list(APPEND all ${more})
  endforeach()
  set(${result} ${all} PARENT_SCOPE)
endfunction()

# Sets RESULT to those of all that the pattern matches. Stops where one of the alternatives of the whole pattern matches
# none, unless tests or examples are not built.
function(windows_on_linux_matching result property pattern)
  windows_on_linux_all(all ${property} "${PROJECT_SOURCE_DIR}")
  set(matching)
  string(REGEX MATCHALL "([^|(]|[(][^)]*[)])+" alternatives "${pattern}")
  foreach(alternative IN LISTS alternatives)
    set(more ${all})
    list(FILTER more INCLUDE REGEX "^(${alternative})$")
    if(NOT more AND TORVAN_BUILD_TESTS AND TORVAN_BUILD_EXAMPLES)
      message(FATAL_ERROR "\"${alternative}\" matches none of the ${property}.")
    endif()
    list(APPEND matching ${more})
  endforeach()
  set(${result} ${matching} PARENT_SCOPE)
endfunction()

# The tests whose names match the pattern.
function(leave_out_tests pattern reason)
  windows_on_linux_matching(tests TESTS "${pattern}")
  if(NOT tests)
    return()
  endif()
  set_property(GLOBAL APPEND PROPERTY windows_on_linux_ignored ${tests})
  list(JOIN tests ", " tests)
  message(STATUS "${tests}: left to the other targets; ${reason}.")
endfunction()

# The programs, libraries and Java classes whose names match the pattern.
function(leave_out_targets pattern reason)
  windows_on_linux_matching(targets BUILDSYSTEM_TARGETS "${pattern}")
  if(NOT targets)
    return()
  endif()
  set_target_properties(${targets} PROPERTIES EXCLUDE_FROM_ALL ON)
  list(JOIN targets ", " targets)
  message(STATUS "${targets}: left to the other targets; ${reason}.")
endfunction()

# Tests of one PROGRAM that uses Java, written as GoogleTest's filters write them; its other tests run. Only before the
# project adds its own tests.
function(leave_out_cases program reason)
  set_property(GLOBAL APPEND PROPERTY windows_on_linux_programs ${program})
  set_property(GLOBAL APPEND PROPERTY windows_on_linux_cases_${program} ${ARGN})
  list(JOIN ARGN ", " cases)
  message(STATUS "${program}: ${cases} left to the other targets; ${reason}.")
endfunction()

# Stops where a test that leave_out_cases names is not there.
function(windows_on_linux_check_cases)
  get_property(programs GLOBAL PROPERTY windows_on_linux_programs)
  foreach(program IN LISTS programs)
    if(NOT TARGET ${program})
      continue()
    endif()
    get_target_property(folder ${program} SOURCE_DIR)
    get_target_property(sources ${program} SOURCES)
    list(FILTER sources INCLUDE REGEX "Test[.]cpp$")
    set(text)
    foreach(source IN LISTS sources)
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${folder}")
      file(READ "${source}" more)
      string(APPEND text "${more}")
    endforeach()
    get_property(cases GLOBAL PROPERTY windows_on_linux_cases_${program})
    foreach(case IN LISTS cases)
      string(REPLACE "*" "[A-Za-z0-9]+" pattern "${case}")
      string(REPLACE "." ", " pattern "${pattern}")
      if(NOT text MATCHES "\nTEST(_F)?[(]${pattern}[)]")
        message(FATAL_ERROR "${program} has no test ${case}.")
      endif()
    endforeach()
  endforeach()
endfunction()

# The sources of one target, as its CMakeLists.txt names them.
function(leave_out_sources target reason)
  if(NOT TARGET ${target})
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS ARGN)
    if(NOT source IN_LIST sources)
      message(FATAL_ERROR "${target} has no source ${source}.")
    endif()
  endforeach()
  list(REMOVE_ITEM sources ${ARGN})
  set_target_properties(${target} PROPERTIES SOURCES "${sources}")
  list(JOIN ARGN ", " left)
  message(STATUS "${target}: ${left} left to the other targets; ${reason}.")
endfunction()

leave_out_cases(java_realvm_own "Java under Wine has none of the files that a search reads"
                VmStartTest.AModuleThatTheRuntimeDoesNotHaveIsNamed
                VmStartTest.WithoutARuntimeTheOneOfTheMachineIsTaken)

# The suites of torvan::java on a VM, but for one run of each with the JDK of the build.
function(windows_on_linux_leave_out_more_vms reason)
  file(REAL_PATH "${TORVAN_JDK}" own)
  cmake_path(GET own FILENAME own)
  windows_on_linux_all(tests TESTS "${PROJECT_SOURCE_DIR}")
  list(FILTER tests INCLUDE REGEX "^java_realvm")
  list(FILTER tests EXCLUDE REGEX "^[a-z_]+[.]${own}$")
  list(JOIN tests "|" pattern)
  leave_out_tests("${pattern}" "${reason}")
endfunction()

function(windows_on_linux_leave_out)
  windows_on_linux_check_cases()
  leave_out_tests("sources_tests|sources_layers_tests|docs_examples_tests|subproject_tests"
                  "they say the same for every target")
  leave_out_tests("examples_(java_.*|docs_java_page)_tests"
                  "the VM under Wine is a bridge, which is no runtime to torvan::java unless its library is named")
  leave_out_tests("java_joined[.].*" "Java under Wine is a Unix program and loads no Windows library")
  if(MSVC)
    leave_out_tests("public_cpp[0-9]+_tests" "the stand-in C++ library is a part of C++17 alone")
    windows_on_linux_leave_out_more_vms("one run of each suite shows what this ABI does")
    leave_out_sources(jvmlauncher_system_tests "<regex> has no compiled part here" RenderingPageTest.cpp)
  endif()
  get_property(ignored GLOBAL PROPERTY windows_on_linux_ignored)
  list(JOIN ignored "\n  " ignored)
  file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/CTestCustom.cmake" CONTENT "set(CTEST_CUSTOM_TESTS_IGNORE\n  ${ignored})\n" @ONLY)
endfunction()
