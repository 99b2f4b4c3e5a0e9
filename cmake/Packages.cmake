# `cpack` in the build folder makes the packages, in two arrangements of the same files:
#   folder  an archive to unpack and run anywhere, the program's folder as it is;
#   system  what a Debian package puts under /usr, with a launcher that gives each user a folder of that kind.
# Neither brings Qt along.

# The build's own folder may hold somebody's records by now, so the packages take a database of their own.
set(PACKAGE_DIR ${CMAKE_BINARY_DIR}/packages)
add_custom_command(
    OUTPUT ${PACKAGE_DIR}/Quorrel11.mdb
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PACKAGE_DIR}
    COMMAND ${CMAKE_COMMAND} -E rm -f ${PACKAGE_DIR}/Quorrel11.mdb
    COMMAND orlo-db new ${PACKAGE_DIR}/Quorrel11.mdb
    DEPENDS orlo-db
    VERBATIM)
add_custom_target(package_database ALL DEPENDS ${PACKAGE_DIR}/Quorrel11.mdb)

set(ORLO_NEEDS "libqt6widgets6 libqt6printsupport6 libsqlite3-0 fonts-dejavu-core")
set(programs orlo)
if(TARGET orlo-jet)
    list(APPEND programs orlo-jet)
    string(APPEND ORLO_NEEDS " libmdb3")
endif()
configure_file(packaging/README.txt ${PACKAGE_DIR}/README.txt @ONLY)

# orlo_arrangement(COMPONENT FOLDER MANUAL): the program's folder and the manual's, in one arrangement.
function(orlo_arrangement component folder manual)
    install(TARGETS ${programs} RUNTIME DESTINATION ${folder} COMPONENT ${component} ${ARGN})
    install(FILES ${APP_FILES} ${PACKAGE_DIR}/Quorrel11.mdb DESTINATION ${folder} COMPONENT ${component} ${ARGN})
    install(DIRECTORY docs/manual/ DESTINATION ${manual} COMPONENT ${component} ${ARGN})
endfunction()

orlo_arrangement(folder . manual EXCLUDE_FROM_ALL)
install(TARGETS orlo-db RUNTIME DESTINATION . COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES ${PACKAGE_DIR}/README.txt DESTINATION . COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES docs/man/orlo-db.1 DESTINATION manual COMPONENT folder EXCLUDE_FROM_ALL)

orlo_arrangement(system lib/orlo share/doc/orlo/manual)
install(PROGRAMS packaging/orlo.sh DESTINATION bin RENAME orlo COMPONENT system)
install(TARGETS orlo-db RUNTIME DESTINATION bin COMPONENT system)
install(FILES docs/man/orlo-db.1 DESTINATION share/man/man1 COMPONENT system)
install(FILES share/orlo.desktop DESTINATION share/applications COMPONENT system)
foreach(size 16 32 48 128 256)
    install(FILES ${CMAKE_BINARY_DIR}/art/orlo-${size}.png RENAME orlo.png
            DESTINATION share/icons/hicolor/${size}x${size}/apps COMPONENT system)
endforeach()
install(FILES share/orlo.svg DESTINATION share/icons/hicolor/scalable/apps COMPONENT system)
set(CPACK_GENERATOR TGZ DEB)
if(BUILD_TESTING)
    add_test(NAME tst_packages COMMAND ${PROJECT_SOURCE_DIR}/tests/packages/tst_packages.sh ${CMAKE_BINARY_DIR})
    set_tests_properties(tst_packages PROPERTIES TIMEOUT 300)
endif()

set(CPACK_PACKAGE_NAME orlo)
set(CPACK_PACKAGE_VENDOR Tollbeck)
set(CPACK_PACKAGE_CONTACT "Tollbeck <orlo@tollbeck.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Records of a Cub Scout pack")
set(CPACK_PACKAGE_DESCRIPTION "Verrano (ORLO) keeps a pack's dens, scouts and parents, adult leaders, the awards that
each of them has, and the list of what has to be bought. One person at one computer, one file, no server.")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no library dependency tells: the age of the database engine, the reports' letters, and a native window on a
# Wayland desktop.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libsqlite3-0 (>= 3.40), fonts-dejavu-core | fonts-liberation")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
configure_file(packaging/Generator.cmake.in ${PACKAGE_DIR}/Generator.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PACKAGE_DIR}/Generator.cmake)
include(CPack)
