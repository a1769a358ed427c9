# Headers, schemas and generated headers are laid into one include root; an installed schema may be imported as
# its header may be included. The CMake package is `Pbr`, for pkg-config it is `pbr`.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY PBR_LIBRARIES)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Pbr)

set_target_properties(vyxc PROPERTIES EXPORT_NAME vyxc)
install(TARGETS ${libraries} vyxc EXPORT PbrTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS pbrctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY platform/ DESTINATION ${PBR_INCLUDE_DIR}
  FILES_MATCHING PATTERN "*.h" PATTERN "*.vyx" PATTERN "CliSession" EXCLUDE PATTERN "Dorv" EXCLUDE)
install(DIRECTORY platform/CliSession/ DESTINATION ${PBR_INCLUDE_DIR} FILES_MATCHING PATTERN "*.h" PATTERN "*.vyx")
# What stands beside the folder Pbr of these, not in it, is their own business.
foreach(root policy status checkpoint copy)
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${root})
    install(DIRECTORY ${root}/ DESTINATION ${PBR_INCLUDE_DIR}
      FILES_MATCHING PATTERN "Pbr/*.h" PATTERN "*.vyx")
  endif()
endforeach()
foreach(folder frame replication)
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${folder})
    install(DIRECTORY ${folder} DESTINATION ${PBR_INCLUDE_DIR} FILES_MATCHING PATTERN "*.h")
  endif()
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/gen/ DESTINATION ${PBR_INCLUDE_DIR} FILES_MATCHING PATTERN "*.h")

install(EXPORT PbrTargets NAMESPACE Pbr:: DESTINATION ${package_dir})
configure_package_config_file(cmake/PbrConfig.cmake.in ${PROJECT_BINARY_DIR}/PbrConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/PbrConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(
  FILES
    ${PROJECT_BINARY_DIR}/PbrConfig.cmake
    ${PROJECT_BINARY_DIR}/PbrConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/cmake/VyxSchema.cmake
  DESTINATION ${package_dir})

# Relative to the file itself, so that the installed tree may be moved.
file(RELATIVE_PATH pc_prefix /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
configure_file(cmake/pbr.pc.in ${PROJECT_BINARY_DIR}/pbr.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/pbr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
