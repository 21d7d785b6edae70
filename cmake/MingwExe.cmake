# Windows programs that the Linux build runs under Wine, cross-built with mingw-w64.
# ombrevale_mingw_exe(<target> OUTPUT <file.exe> SOURCES <...> LIBS <...>)
find_program(OMBREVALE_MINGW_CXX NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++)

function(ombrevale_mingw_exe target)
  cmake_parse_arguments(ARG "" "OUTPUT" "SOURCES;LIBS" ${ARGN})
  if(NOT OMBREVALE_MINGW_CXX)
    # The Wine tests then fail and say why; the rest of the build goes on.
    message(WARNING "mingw-w64 not found: ${ARG_OUTPUT} is not built (scripts/setup installs it)")
    add_custom_target(${target})
    return()
  endif()
  set(_libs)
  foreach(_l IN LISTS ARG_LIBS)
    list(APPEND _libs -l${_l})
  endforeach()
  file(GLOB _headers ${PROJECT_SOURCE_DIR}/src/editorlink/*.h ${PROJECT_SOURCE_DIR}/src/settings/*.h)
  add_custom_command(
    OUTPUT ${ARG_OUTPUT}
    COMMAND ${OMBREVALE_MINGW_CXX} -std=c++20 -O2 -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wconversion
            -Wsign-conversion -Werror -static
            -I${PROJECT_SOURCE_DIR}/src -o ${ARG_OUTPUT} ${ARG_SOURCES} ${_libs}
    DEPENDS ${ARG_SOURCES} ${_headers}
    COMMENT "Cross-building ${ARG_OUTPUT} with mingw-w64"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${ARG_OUTPUT})
endfunction()
