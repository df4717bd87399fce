# Debian requires compressed manual pages and changelogs, without a time stamp.
file(GLOB texts ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/man*/*.[1-8]
                ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/tidewell/changelog*)
if(NOT texts)
  message(FATAL_ERROR "No texts to compress in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
execute_process(COMMAND gzip -9n ${texts} COMMAND_ERROR_IS_FATAL ANY)
