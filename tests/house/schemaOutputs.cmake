# vyx_add_schema reads from a schema, before vyxc is built, what vyxc will make of it. Both must say the same.
#
# The files of one unit are joined by `|`.
#
#   cmake -DVYXC=… -DSCHEMAS=a.vyx,b.vyx|c.vyx -DINCLUDES=dir,dir -DMODULE=VyxSchema.cmake -P schemaOutputs.cmake
include(${MODULE})
string(REPLACE "," ";" schemas "${SCHEMAS}")
string(REPLACE "," ";-I;" includes "-I;${INCLUDES}")

if(NOT schemas)
  message(SEND_ERROR "no schema to try")
endif()
foreach(unit IN LISTS schemas)
  string(REPLACE "|" ";" schema "${unit}")
  _vyx_schema_outputs("${schema}" expected)
  execute_process(COMMAND ${VYXC} ${includes} --list-outputs ${schema}
    OUTPUT_VARIABLE actual OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" actual "${actual}")
  list(SORT expected)
  list(SORT actual)
  if(NOT expected STREQUAL actual)
    message(SEND_ERROR "${unit}:\nvyx_add_schema expects ${expected}\nvyxc makes            ${actual}")
  endif()
endforeach()
