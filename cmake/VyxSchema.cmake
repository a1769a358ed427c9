# vyx_add_schema(TARGET file.vyx…)
#
# Compiles each schema with vyxc and adds the generated sources to TARGET. The generated headers go to
# <project's build folder>/gen, which becomes a public include directory of TARGET. A schema's imports are
# looked up like #includes, along TARGET's include path, that of the libraries it links against included.
#
# A target called `gen`, if there is one, then generates without compiling.
function(vyx_add_schema target)
  set(gen ${PROJECT_BINARY_DIR}/gen)
  set(all_outputs)

  foreach(file IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
    _vyx_schema_outputs(${file} outputs)
    list(TRANSFORM outputs PREPEND ${gen}/)
    list(APPEND all_outputs ${outputs})

    # A schema is generated anew after any earlier one has changed: it may import it.
    set_property(GLOBAL APPEND PROPERTY VYX_SCHEMA_FILES ${file})
    get_property(known_schemas GLOBAL PROPERTY VYX_SCHEMA_FILES)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})

    cmake_path(GET file FILENAME name)
    add_custom_command(
      OUTPUT ${outputs}
      COMMAND Pbr::vyxc "-I$<JOIN:$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>,;-I>" --out ${gen} ${file}
      DEPENDS Pbr::vyxc ${known_schemas}
      COMMENT "Compiling schema ${name}"
      COMMAND_EXPAND_LISTS
      VERBATIM)
  endforeach()

  target_sources(${target} PRIVATE ${all_outputs})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${gen}>)

  # The outputs are known only in this directory, but TARGET may be of another one.
  list(GET ARGN 0 first)
  string(MAKE_C_IDENTIFIER "gen_${target}_${first}" gen_target)
  add_custom_target(${gen_target} DEPENDS ${all_outputs})
  add_dependencies(${target} ${gen_target})
  if(TARGET gen)
    add_dependencies(gen ${gen_target})
  endif()
endfunction()

# RETURNS in `result` what vyxc makes of `file`, relative to its output folder.
function(_vyx_schema_outputs file result)
  set(s "[ \t\r\n]")
  set(id "[A-Za-z_][A-Za-z0-9_]*")
  file(READ ${file} text)
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  string(REGEX REPLACE "extern${s}+(value|enum|entity)${s}" "extern " text "${text}")

  if(NOT text MATCHES "(^|${s})namespace${s}+([A-Za-z0-9_:]+)")
    message(FATAL_ERROR "${file}: vyx_add_schema finds no namespace")
  endif()
  string(REPLACE "::" "/" folder ${CMAKE_MATCH_2})
  if(NOT text MATCHES "(^|${s})unit${s}+(${id})${s}+header${s}+\"([^\"]+)\"")
    message(FATAL_ERROR "${file}: vyx_add_schema finds no unit")
  endif()
  set(outputs ${CMAKE_MATCH_3} ${folder}/${CMAKE_MATCH_2}Unit.gen.cpp)

  string(REGEX MATCHALL "(^|${s}|})(entity|enum|value)${s}+${id}${s}*(:|{|in${s})" types "${text}")
  foreach(type IN LISTS types)
    string(REGEX MATCH "(entity|enum|value)${s}+(${id})" type "${type}")
    if(NOT CMAKE_MATCH_1 STREQUAL "value")
      list(APPEND outputs ${folder}/${CMAKE_MATCH_2}.h)
    endif()
    list(APPEND outputs ${folder}/${CMAKE_MATCH_2}.gen.cpp)
  endforeach()
  set(${result} ${outputs} PARENT_SCOPE)
endfunction()
