# Windows programs that the Linux build runs under Wine, cross-built with mingw-w64.
# ombrevale_mingw_exe(<target> OUTPUT <file.exe> SOURCES <...> [LIBS <...>] [FLAGS <...>] [OBJECTS <...>])
find_program(OMBREVALE_MINGW_CXX NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++)
set(OMBREVALE_MINGW_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wconversion -Wsign-conversion -Werror)

function(ombrevale_mingw_exe target)
  cmake_parse_arguments(ARG "" "OUTPUT" "SOURCES;LIBS;FLAGS;OBJECTS" ${ARGN})
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
  if(NOT ARG_FLAGS)
    set(ARG_FLAGS ${OMBREVALE_MINGW_WARNINGS})
  endif()
  # The compiler lists the headers it read, so a changed header rebuilds the program.
  add_custom_command(
    OUTPUT ${ARG_OUTPUT}
    COMMAND ${OMBREVALE_MINGW_CXX} -std=c++20 -O2 ${ARG_FLAGS} -static -I${PROJECT_SOURCE_DIR}/src
            -MD -MF ${ARG_OUTPUT}.d -o ${ARG_OUTPUT} ${ARG_SOURCES} ${ARG_OBJECTS} ${_libs}
    DEPENDS ${ARG_SOURCES} ${ARG_OBJECTS}
    DEPFILE ${ARG_OUTPUT}.d
    COMMENT "Cross-building ${ARG_OUTPUT} with mingw-w64"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${ARG_OUTPUT})
endfunction()

# GoogleTest from the distribution's sources, built for mingw; call once, then
# pass ${<var>} as OBJECTS and add -I${OMBREVALE_MINGW_GTEST_INCLUDE} to FLAGS.
set(OMBREVALE_MINGW_GTEST_SOURCE /usr/src/googletest/googletest)
set(OMBREVALE_MINGW_GTEST_INCLUDE ${OMBREVALE_MINGW_GTEST_SOURCE}/include)

function(ombrevale_mingw_gtest_objects var)
  set(_gtest ${OMBREVALE_MINGW_GTEST_SOURCE})
  set(_objects)
  if(OMBREVALE_MINGW_CXX AND EXISTS ${_gtest}/src/gtest-all.cc)
    foreach(_part gtest-all gtest_main)
      set(_obj ${CMAKE_BINARY_DIR}/mingw-gtest/${_part}.o)
      add_custom_command(
        OUTPUT ${_obj}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/mingw-gtest
        COMMAND ${OMBREVALE_MINGW_CXX} -std=c++20 -O1 -I${_gtest}/include -I${_gtest} -c ${_gtest}/src/${_part}.cc
                -o ${_obj}
        COMMENT "Cross-building GoogleTest's ${_part} with mingw-w64"
        VERBATIM)
      list(APPEND _objects ${_obj})
    endforeach()
  else()
    message(WARNING "GoogleTest sources for mingw not found in ${_gtest}: the suites under Wine are not built")
  endif()
  set(${var} ${_objects} PARENT_SCOPE)
endfunction()
