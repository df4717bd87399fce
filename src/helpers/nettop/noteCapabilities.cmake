# Runs before nettop is installed, with `helper` set. An administrator may have removed the capabilities of
# the file that is about to be replaced.
set(areRemoved FALSE)
find_program(getcap getcap PATHS /usr/sbin /sbin)
if(getcap AND EXISTS "${helper}")
  execute_process(COMMAND ${getcap} ${helper} OUTPUT_VARIABLE found)
  if(found STREQUAL "")
    set(areRemoved TRUE)
  endif()
endif()
