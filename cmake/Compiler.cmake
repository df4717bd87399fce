# Flags of every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Dates after 2038 and any inode number, on 32 bits too.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow
                    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
                    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A coroutine that holds a type of its source's anonymous namespace, which here looks included.
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
endif()
if(TIDEWELL_WERROR)
  add_compile_options(-Werror)
endif()

if(TIDEWELL_SANITIZE)
  add_compile_options(-fsanitize=${TIDEWELL_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Clang 14 cannot assemble coroutines with it.
    add_compile_options(-fno-sanitize=function)
  endif()
  add_link_options(-fsanitize=${TIDEWELL_SANITIZE})
else()
  # An index out of range aborts with a message.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  include(CheckCXXCompilerFlag)
  foreach(flag stack-protector-strong stack-clash-protection cf-protection)
    check_cxx_compiler_flag(-f${flag} TIDEWELL_HAS_${flag})
    if(TIDEWELL_HAS_${flag})
      add_compile_options(-f${flag})
    endif()
  endforeach()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # Small rather than fast: nearly all time is spent in the kernel, and code pages count towards the
  # memory of a program that runs for months.
  string(REPLACE "-O3" "-Os" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3
                      -ffunction-sections -fdata-sections -fvisibility=hidden
                      $<$<COMPILE_LANGUAGE:CXX>:-fvisibility-inlines-hidden>)
  add_link_options(-Wl,--gc-sections,--as-needed)
endif()
