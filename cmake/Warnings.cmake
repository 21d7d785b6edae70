# One interface target carries the warnings and sanitizer flags; every target links it.
add_library(ombrevale_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(ombrevale_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-align
    -Wold-style-cast -Wconversion -Wsign-conversion)
  if(OMBREVALE_WERROR)
    target_compile_options(ombrevale_warnings INTERFACE -Werror)
  endif()
endif()
# GCC 12 at -O2 reports -Wrestrict inside libstdc++'s own string code (GCC bug
# 105329), on code that has no overlap; keep it as a warning only.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
   AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  target_compile_options(ombrevale_warnings INTERFACE -Wno-error=restrict)
endif()
if(OMBREVALE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
