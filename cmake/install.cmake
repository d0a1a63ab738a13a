# Installs the library, its headers, a link for -lquevar, and what find_package and pkg-config read.
include(CMakePackageConfigHelpers)

install(TARGETS quevar EXPORT quevar-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/quevar DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(QUEVAR_MEMBERS_H ${CMAKE_CURRENT_BINARY_DIR}/members.h)
add_custom_command(
  OUTPUT ${QUEVAR_MEMBERS_H}
  COMMAND ${CMAKE_COMMAND} -DCOMPILER=${CMAKE_C_COMPILER} -DINCLUDE=${CMAKE_CURRENT_SOURCE_DIR}/include
          -DOUTPUT=${QUEVAR_MEMBERS_H} -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/members_header.cmake
  DEPENDS include/quevar/quevar.h include/quevar/shapes.def include/quevar/families.def cmake/members_header.cmake VERBATIM)
add_custom_target(quevar_members_header ALL DEPENDS ${QUEVAR_MEMBERS_H})
install(FILES ${QUEVAR_MEMBERS_H} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quevar)

file(CREATE_LINK __quevar.so.3.7 ${CMAKE_CURRENT_BINARY_DIR}/libquevar.so SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libquevar.so DESTINATION ${CMAKE_INSTALL_LIBDIR})

set(QUEVAR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/quevar)
install(EXPORT quevar-targets NAMESPACE quevar:: DESTINATION ${QUEVAR_CMAKE_DIR})
configure_package_config_file(cmake/quevar-config.cmake.in quevar-config.cmake INSTALL_DESTINATION ${QUEVAR_CMAKE_DIR})
write_basic_package_version_file(quevar-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quevar-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/quevar-config-version.cmake
        DESTINATION ${QUEVAR_CMAKE_DIR})

# The prefix is found from where the file lies, so that the installed tree may be moved.
set(QUEVAR_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QUEVAR_PC_PREFIX /${QUEVAR_PC_DIR} /)
configure_file(cmake/quevar.pc.in quevar.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quevar.pc DESTINATION ${QUEVAR_PC_DIR})
