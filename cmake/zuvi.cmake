# Warnings and hardening for every target of ours, given as one interface library.
add_library(zuvi_flags INTERFACE)
target_compile_options(zuvi_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Werror -finput-charset=UTF-8 -fstack-protector-strong)
target_include_directories(zuvi_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(ZUVI_SANITIZE)
  target_compile_options(zuvi_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zuvi_flags INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  target_compile_definitions(zuvi_flags INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # No DLL of the compiler is left to find at the user's; the same input gives the same bytes.
  if(ZUVI_MINGW_ARCH STREQUAL i686)
    set(ZUVI_SXS_ARCH x86)
  else()
    set(ZUVI_SXS_ARCH amd64)
  endif()
  target_link_options(zuvi_flags INTERFACE -static -static-libgcc -static-libstdc++ -fstack-protector-strong -Wl,--no-insert-timestamp)
endif()

# UTF-8: headers alone, the same for every target; a cross build may see nothing else that lies beside them.
find_path(ZUVI_UTF8CPP utf8.h PATHS /usr/include/utf8cpp /usr/local/include/utf8cpp
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
add_library(zuvi_utf8 INTERFACE)
target_include_directories(zuvi_utf8 SYSTEM INTERFACE ${ZUVI_UTF8CPP})

# zuvi_library(name SOURCES … SOURCES_POSIX … LINKS …): one folder's static library. Windows leaves
# SOURCES_POSIX out: it has sources of its own for that.
function(zuvi_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;SOURCES_POSIX;LINKS" ${ARGN})
  if(WIN32)
    unset(ARG_SOURCES_POSIX)
  endif()
  add_library(${name} STATIC ${ARG_SOURCES} ${ARG_SOURCES_POSIX})
  target_link_libraries(${name} PUBLIC zuvi_flags ${ARG_LINKS})
  zuvi_precompile(${name} zuvi_base)
endfunction()

# Standard headers are most of what the compiler reads. zuvi_precompile(name from): target `from` compiles them
# for itself and for all that have the same options. Off, a file that forgot an include does not compile.
option(ZUVI_PRECOMPILE "Compile common headers once" ON)
function(zuvi_precompile name from)
  if(NOT ZUVI_PRECOMPILE)
    return()
  elseif(name STREQUAL from)
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/comunes.h ${ARGN})
  else()
    target_precompile_headers(${name} REUSE_FROM ${from})
  endif()
endfunction()
