# vyx_add_schema(TARGET [ONE_UNIT] file.vyx…)
#
# Compiles each schema with vyxc, or with ONE_UNIT all of them together as the one unit that one of them
# declares, and adds the generated sources to TARGET. The generated headers go to
# <project's build folder>/gen, which becomes a public include directory of TARGET. A schema's imports are
# looked up like #includes, along TARGET's include path, that of the libraries it links against included.
#
# A target called `gen`, if there is one, then generates without compiling. With VYX_UNITY the generated sources are
# compiled several at a time, in a third of the time, since most of what they instantiate is the same.
function(vyx_add_schema target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_UNIT" "" "")
  set(gen ${PROJECT_BINARY_DIR}/gen)
  set(all_outputs)
  list(GET arg_UNPARSED_ARGUMENTS 0 first)

  # The files of a unit are joined by `|`.
  set(units)
  foreach(file IN LISTS arg_UNPARSED_ARGUMENTS)
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
    list(APPEND units ${file})
  endforeach()
  if(arg_ONE_UNIT)
    list(JOIN units "|" units)
  endif()
  foreach(unit IN LISTS units)
    string(REPLACE "|" ";" unit_files "${unit}")
    _vyx_schema_outputs("${unit_files}" outputs)
    list(TRANSFORM outputs PREPEND ${gen}/)
    list(APPEND all_outputs ${outputs})

    # A schema is generated anew after any earlier one has changed: it may import it.
    set_property(GLOBAL APPEND PROPERTY VYX_SCHEMA_FILES ${unit_files})
    set_property(GLOBAL APPEND PROPERTY VYX_SCHEMA_UNITS ${unit})
    get_property(known_schemas GLOBAL PROPERTY VYX_SCHEMA_FILES)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${unit_files})

    set(names)
    foreach(file IN LISTS unit_files)
      cmake_path(GET file FILENAME name)
      list(APPEND names ${name})
    endforeach()
    list(JOIN names ", " names)
    add_custom_command(
      OUTPUT ${outputs}
      COMMAND Pbr::vyxc "-I$<JOIN:$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>,;-I>" --out ${gen} ${unit_files}
      DEPENDS Pbr::vyxc ${known_schemas}
      COMMENT "Compiling schema ${names}"
      COMMAND_EXPAND_LISTS
      VERBATIM)
  endforeach()

  target_sources(${target} PRIVATE ${all_outputs})
  if(VYX_UNITY)
    cmake_path(GET first STEM schema)
    _vyx_group_sources(${target} ${schema} ${all_outputs})
  endif()
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${gen}>)

  # The outputs are known only in this directory, but TARGET may be of another one.
  string(MAKE_C_IDENTIFIER "gen_${target}_${first}" gen_target)
  add_custom_target(${gen_target} DEPENDS ${all_outputs})
  add_dependencies(${target} ${gen_target})
  if(TARGET gen)
    add_dependencies(gen ${gen_target})
  endif()
endfunction()

# Makes TARGET a unity build of groups of eight of the sources among a schema's outputs; others stay alone.
function(_vyx_group_sources target schema)
  set(sources ${ARGN})
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  set(count 0)
  foreach(source IN LISTS sources)
    math(EXPR group "${count} / 8")
    math(EXPR count "${count} + 1")
    set_source_files_properties(${source} TARGET_DIRECTORY ${target}
      PROPERTIES UNITY_GROUP ${schema}${group})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# RETURNS in `result` what vyxc makes of a unit's files, relative to its output folder.
function(_vyx_schema_outputs files result)
  set(s "[ \t\r\n]")
  set(id "[A-Za-z_][A-Za-z0-9_]*")
  set(outputs)
  set(units 0)
  foreach(file IN LISTS files)
    file(READ ${file} text)
    string(REGEX REPLACE "//[^\n]*" "" text "${text}")
    string(REGEX REPLACE "extern${s}+(value|enum|entity)${s}" "extern " text "${text}")

    if(NOT text MATCHES "(^|${s})namespace${s}+([A-Za-z0-9_:]+)")
      message(FATAL_ERROR "${file}: vyx_add_schema finds no namespace")
    endif()
    string(REPLACE "::" "/" folder ${CMAKE_MATCH_2})
    if(text MATCHES "(^|${s})unit${s}+(${id})${s}+header${s}+\"([^\"]+)\"")
      math(EXPR units "${units} + 1")
      list(APPEND outputs ${CMAKE_MATCH_3} ${folder}/${CMAKE_MATCH_2}Unit.gen.cpp)
    endif()

    string(REGEX MATCHALL "(^|${s}|})(entity|enum|value)${s}+${id}${s}*(:|{|in${s})" types "${text}")
    foreach(type IN LISTS types)
      string(REGEX MATCH "(entity|enum|value)${s}+(${id})" type "${type}")
      if(NOT CMAKE_MATCH_1 STREQUAL "value")
        list(APPEND outputs ${folder}/${CMAKE_MATCH_2}.h)
      endif()
      list(APPEND outputs ${folder}/${CMAKE_MATCH_2}.gen.cpp)
      if(CMAKE_MATCH_1 STREQUAL "entity")
        list(APPEND outputs ${folder}/${CMAKE_MATCH_2}Sa.h ${folder}/${CMAKE_MATCH_2}Sa.gen.cpp)
      endif()
    endforeach()
  endforeach()
  if(NOT units EQUAL 1)
    message(FATAL_ERROR "${files}: vyx_add_schema finds ${units} units instead of one")
  endif()
  set(${result} ${outputs} PARENT_SCOPE)
endfunction()
