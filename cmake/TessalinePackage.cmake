# cmake --install and CPack: the files for an integrator, in one folder. The client provides Qt, the
# compiler's runtime and the host's libraries.
install(TARGETS Tessaline LIBRARY DESTINATION .)
if(UNIX AND NOT APPLE)
    # The client has its own search path for the host's libraries.
    install(CODE [[file(RPATH_REMOVE FILE "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/Tessaline.so")]])
endif()
if(MINGW)
    install(FILES "$<TARGET_FILE:Tessaline>.debug" DESTINATION .)
elseif(MSVC)
    install(FILES $<TARGET_PDB_FILE:Tessaline> DESTINATION . OPTIONAL)
endif()
install(FILES docs/qml-api.md docs/checker.md docs/licences.md DESTINATION docs)
# The checker with the stand-ins for the host's libraries. The logging library is in a separate folder,
# so that a plug-in finds it only if the checker allows it.
set_target_properties(tessaline-check PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS tessaline-check TimeShiftBufferModel
    RUNTIME DESTINATION check LIBRARY DESTINATION check ARCHIVE DESTINATION check EXCLUDE_FROM_ALL)
install(TARGETS QarnLogUtl
    RUNTIME DESTINATION logging LIBRARY DESTINATION logging
    ARCHIVE DESTINATION logging EXCLUDE_FROM_ALL)
foreach(library IN ITEMS log_without_entry_point log_without_object)
    install(TARGETS ${library}
        RUNTIME DESTINATION check/${library} LIBRARY DESTINATION check/${library}
        ARCHIVE DESTINATION check/${library} EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_GENERATOR ZIP)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/package")
include(CPack)
