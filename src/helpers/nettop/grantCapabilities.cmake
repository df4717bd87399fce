# Runs after nettop is installed, with `helper` and `capabilities` set, and noteCapabilities.cmake before.
# For a staged file the package's scripts do the same.
set(words setcap "${capabilities}" "${helper}")
list(JOIN words " " command)
set(status 1)
if("$ENV{DESTDIR}" STREQUAL "" AND NOT areRemoved)
  find_program(setcap setcap PATHS /usr/sbin /sbin)
  execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(setcap AND user STREQUAL "0")
    execute_process(COMMAND ${setcap} ${capabilities} ${helper} RESULT_VARIABLE status
                    ERROR_VARIABLE reason)
  endif()
endif()
if(NOT status EQUAL 0)
  message(STATUS "To see every program, UDP and short connections, run as root: ${command}")
endif()
