# Flags for all of our own code. Default visibility: types are told apart across libraries by their type info.
# Nobody replaces our functions at load time, so calls within a file may be bound and inlined.
add_compile_options(-Wall -Wextra -Wpedantic -fno-semantic-interposition)
# g++ 12 takes `"text" + string` for a copy onto itself (its bug 105651, mended in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
endif()
if(PBR_WERROR)
  add_compile_options(-Werror)
endif()

if(PBR_SANITIZE)
  # g++ takes what the instrumentation adds for reads of variables that nobody set, in std::regex for one.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  add_compile_options(-fsanitize=${PBR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PBR_SANITIZE} -fno-sanitize-recover=all)
endif()

find_program(PBR_CCACHE ccache)
if(PBR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${PBR_CCACHE})
endif()
