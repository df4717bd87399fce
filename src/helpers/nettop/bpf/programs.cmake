# The programs for the kernel, in a form that loads without any library.
enable_language(C)

set(programs ${CMAKE_CURRENT_SOURCE_DIR}/bpf)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/bpf)
set(kernelHeaders -I${TIDEWELL_BPF_HEADERS})
if(CMAKE_LIBRARY_ARCHITECTURE)
  list(APPEND kernelHeaders -I/usr/include/${CMAKE_LIBRARY_ARCHITECTURE})
endif()
file(MAKE_DIRECTORY ${generated})

add_custom_command(
  OUTPUT ${generated}/traffic.bpf.o
  COMMAND ${TIDEWELL_BPF_CLANG} -std=gnu11 -O2 -g -target bpf -Wall -Wextra -Werror ${kernelHeaders}
          -c ${programs}/traffic.bpf.c -o ${generated}/traffic.bpf.o
  DEPENDS ${programs}/traffic.bpf.c ${programs}/kernelTypes.h ${programs}/records.h
  VERBATIM
)
# Through a file beside it, since what a failing tool leaves must not pass for the result.
add_custom_command(
  OUTPUT ${generated}/traffic.lskel.h
  COMMAND ${TIDEWELL_BPFTOOL} gen skeleton -L ${generated}/traffic.bpf.o name traffic
          >${generated}/traffic.lskel.h.new
  COMMAND ${CMAKE_COMMAND} -E rename ${generated}/traffic.lskel.h.new ${generated}/traffic.lskel.h
  DEPENDS ${generated}/traffic.bpf.o
)
add_library(tidewell_trafficPrograms OBJECT
  ${programs}/trafficPrograms.c
  ${generated}/traffic.lskel.h
)
target_include_directories(tidewell_trafficPrograms SYSTEM PRIVATE
  ${generated} ${TIDEWELL_BPF_HEADERS})
