# What every target of this project shares: language level, warnings, visibility, output folders.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(MSVC)
  # Functions of C linkage may let exceptions pass: qsort's comparison and a VM's functions can throw.
  string(REPLACE "/EHsc" "/EHs" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
endif()

if(NOT WIN32)
  # As clang has it: the libraries' calls of their own functions are bound when they are linked, so they may be inlined.
  add_compile_options(-fno-semantic-interposition)
endif()

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
endif()
if(PROJECT_IS_TOP_LEVEL OR TORVAN_BUILD_TESTS)
  # One folder for programs and libraries: a Windows program finds its DLLs beside itself. As a part of another project,
  # the libraries go where that one has them.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
endif()

if(MINGW AND (PROJECT_IS_TOP_LEVEL OR TORVAN_BUILD_TESTS OR TORVAN_INSTALL))
  # GCC's own DLLs are beside the programs, too. They are shared and not linked in: the C++ runtime counts the
  # exceptions in flight in each thread, and one that crosses a DLL's border has to be counted in one place.
  set(TORVAN_MINGW_DLLS)
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${dll} OUTPUT_VARIABLE path
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS "${path}")
      set(path "/usr/x86_64-w64-mingw32/lib/${dll}")
    endif()
    set(own "${PROJECT_BINARY_DIR}/bin/${dll}")
    if("${path}" IS_NEWER_THAN "${own}")
      file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
      execute_process(COMMAND "${CMAKE_STRIP}" -p --strip-unneeded -o "${own}" "${path}" COMMAND_ERROR_IS_FATAL ANY)
    endif()
    list(APPEND TORVAN_MINGW_DLLS "${own}")
  endforeach()
endif()

set(TORVAN_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
if(TORVAN_SANITIZE)
  add_compile_options(-fsanitize=${TORVAN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TORVAN_SANITIZE})
  if(TORVAN_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_definitions(__SANITIZE_ADDRESS__)  # as g++ has it
  elseif(TORVAN_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_definitions(__SANITIZE_THREAD__)
  endif()
endif()

# Lets debug information name sources by their place in the tree, and no folder of the machine that built it. cl.exe has no
# switch for that.
function(torvan_portable_debug_information)
  foreach(place "${PROJECT_SOURCE_DIR}=." "${PROJECT_BINARY_DIR}=build" "${TORVAN_JDK}=jdk")
    add_compile_options("/clang:-fdebug-prefix-map=${place}")
  endforeach()
  add_compile_options(/clang:-fdebug-compilation-dir=. /clang:-gno-codeview-command-line)
  add_link_options(/pdbsourcepath:torvan)
endfunction()

# What our own code is compiled with; third-party targets do not get it.
function(torvan_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
                                             -Wcast-qual -Wundef -Woverloaded-virtual)
  endif()
  if(TORVAN_WARNINGS_AS_ERRORS)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ON)
  endif()
endfunction()

# A shared library NAME with the file name OUTPUT, the alias torvan::NAME and the sources given.
function(torvan_shared_library name output)
  add_library(${name} SHARED ${ARGN})
  add_library(torvan::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${output} VERSION ${PROJECT_VERSION}
                                                SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${output}.rc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/VersionResource.rc.in" "${resource}" @ONLY)
    target_sources(${name} PRIVATE "${resource}")
    # The same objects make the same file, and a debugger looks for the PDB beside the DLL.
    target_link_options(${name} PRIVATE
      "$<IF:$<BOOL:${MSVC}>,/Brepro;/INCREMENTAL:NO;/pdbaltpath:%_PDB%,-Wl$<COMMA>--no-insert-timestamp>")
  else()
    # The installed libraries find each other wherever the folder is.
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    # Calls inside a library stay inside it; exported data and type information are still shared.
    target_link_options(${name} PRIVATE -Wl,-Bsymbolic-functions)
    if(NOT TORVAN_SANITIZE)
      target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
  torvan_warnings(${name})
endfunction()
