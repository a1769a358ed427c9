# pbr_library(NAME GLOB pattern… [INCLUDE dir…] [LINK library…] [EXCLUDE regex])
#
# One of the shared libraries: lib<NAME>.so.0, also known as Pbr::<NAME>. The patterns are relative to the
# project's root, so are the include directories; all of these are installed as one include root.
function(pbr_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXCLUDE" "GLOB;INCLUDE;LINK")

  list(TRANSFORM arg_GLOB PREPEND ${PROJECT_SOURCE_DIR}/)
  file(GLOB sources CONFIGURE_DEPENDS ${arg_GLOB})
  if(arg_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX ${arg_EXCLUDE})
  endif()

  add_library(${name} SHARED ${sources})
  add_library(Pbr::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION 0
    INSTALL_RPATH "$ORIGIN")
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name} INTERFACE $<INSTALL_INTERFACE:${PBR_INCLUDE_DIR}>)
  foreach(dir IN LISTS arg_INCLUDE)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/${dir}>)
  endforeach()
  target_link_libraries(${name} PUBLIC ${arg_LINK})
  # A call within a library goes straight to its function, not by way of the table of what may be replaced.
  target_link_options(${name} PRIVATE LINKER:-Bsymbolic-functions)
  # What a library calls of a floor that it does not link against is told here, not when it is loaded. The
  # sanitizers' own functions come with the executable.
  if(NOT PBR_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
  set_property(GLOBAL APPEND PROPERTY PBR_LIBRARIES ${name})
endfunction()

# Where headers, schemas and generated headers are installed, below the prefix.
set(PBR_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/pbr)
