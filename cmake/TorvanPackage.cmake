# What `cmake --install` lays down, and the archive that cpack makes of it. docs/package.md tells what is in it.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# The shared libraries, each the target torvan::NAME.
set(torvan_libraries torvan mirel rx place)
# Not CMAKE_INSTALL_DOCDIR, which has the name of the project that this one is a part of.
set(torvan_doc_folder "${CMAKE_INSTALL_DATAROOTDIR}/doc/torvan")

function(torvan_install_libraries)
  install(TARGETS ${torvan_libraries} EXPORT torvanTargets INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
  if(MSVC)
    foreach(target IN LISTS torvan_libraries)
      # A Release build has none.
      install(FILES $<TARGET_PDB_FILE:${target}> DESTINATION "${CMAKE_INSTALL_BINDIR}" OPTIONAL)
    endforeach()
  elseif(MINGW)
    install(FILES ${TORVAN_MINGW_DLLS} DESTINATION "${CMAKE_INSTALL_BINDIR}")
    # Their authors want their terms to go with them.
    foreach(package gcc-mingw-w64-x86-64-posix-runtime mingw-w64-common)
      install(FILES "/usr/share/doc/${package}/copyright" DESTINATION "${torvan_doc_folder}" OPTIONAL
              RENAME "${package}-copyright.txt")
    endforeach()
  endif()

  foreach(folder "" foundation/rx/ foundation/mirel/ foundation/place/)
    install(DIRECTORY "${folder}include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
  endforeach()
  install(FILES "${PROJECT_BINARY_DIR}/include/torvan/Version.h" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/torvan")
endfunction()

# What finds the libraries: find_package(torvan) and pkg-config.
function(torvan_install_finders)
  set(folder "${CMAKE_INSTALL_LIBDIR}/cmake/torvan")
  set(jni_folder "${CMAKE_INSTALL_DATADIR}/torvan/jni-windows")
  set(generated "${PROJECT_BINARY_DIR}/package")

  # torvan::java is compiled in the host's build, so its sources are what is installed.
  set(source_folder "${CMAKE_INSTALL_DATADIR}/torvan/src")
  install(DIRECTORY src/java DESTINATION "${source_folder}" FILES_MATCHING PATTERN "*.h" PATTERN "*.cpp")
  install(FILES "${PROJECT_BINARY_DIR}/src/java/generated/java/HandlerBytes.h" DESTINATION "${source_folder}/java")
  get_target_property(java_sources torvan_java TORVAN_PACKAGE_SOURCES)
  list(TRANSFORM java_sources PREPEND "\${torvan_java_folder}/java/")
  list(JOIN java_sources "\n    " java_sources)

  # What a host may ask for as COMPONENTS.
  set(components ${torvan_libraries} java)
  list(JOIN components "|" torvan_component_pattern)
  list(JOIN components ", " torvan_component_names)
  configure_package_config_file(
    cmake/torvanConfig.cmake.in "${generated}/torvanConfig.cmake"
    INSTALL_DESTINATION "${folder}" PATH_VARS jni_folder source_folder NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
  write_basic_package_version_file("${generated}/torvanConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
  install(EXPORT torvanTargets NAMESPACE torvan:: DESTINATION "${folder}")
  install(FILES "${generated}/torvanConfig.cmake" "${generated}/torvanConfigVersion.cmake" cmake/TorvanJava.cmake
          DESTINATION "${folder}")

  file(RELATIVE_PATH pc_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
  torvan_system_folder(system)
  set(pc_machine_headers "\${jdk}/include/${system}")
  if(WIN32)
    set(pc_machine_headers "\${prefix}/${jni_folder}")
    install(FILES src/platform/win32/jni/jni_md.h DESTINATION "${jni_folder}")
  endif()
  configure_file(cmake/torvan.pc.in "${generated}/torvan.pc" @ONLY)
  install(FILES "${generated}/torvan.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

function(torvan_install)
  torvan_install_libraries()
  torvan_install_finders()
  install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DATADIR}/torvan")
  install(FILES README.md CHANGELOG.md LICENSE DESTINATION "${torvan_doc_folder}")
  install(DIRECTORY docs DESTINATION "${torvan_doc_folder}")
endfunction()

function(torvan_archive)
  set(CPACK_GENERATOR TGZ)
  set(CPACK_STRIP_FILES ON)
  string(REPLACE AMD64 x86_64 system "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
  string(TOLOWER "${system}" system)
  if(WIN32)
    set(CPACK_GENERATOR ZIP)
    if(MSVC)
      string(APPEND system -msvc)
      set(CPACK_STRIP_FILES OFF)  # what a debugger needs is in the PDBs
    else()
      string(APPEND system -mingw)
    endif()
  endif()
  set(CPACK_PACKAGE_FILE_NAME "torvan-${PROJECT_VERSION}-${system}")
  set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/archive")
  set(CPACK_VERBATIM_VARIABLES ON)
  include(CPack)
endfunction()
