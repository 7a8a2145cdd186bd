# Where a Java VM's library stands in its home folder.
set(TORVAN_LIBJVM "lib/server/libjvm.so")
if(CMAKE_HOST_WIN32)
  set(TORVAN_LIBJVM "bin/server/jvm.dll")
endif()

# Gives the home folders of the machine's Java VMs, each once however many names it has.
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
