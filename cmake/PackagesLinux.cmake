# What only the packages for Linux have; read by Packages.cmake.

set(changes ${PROJECT_SOURCE_DIR}/packaging/changes.sh)
orlo_package_file(changelog.gz DEPENDS CHANGELOG.md ${changes}
    COMMAND sh -c "\"$1\" debian <\"$2\" | gzip -9n >\"$3\"" sh ${changes} ${PROJECT_SOURCE_DIR}/CHANGELOG.md
            ${PACKAGE_DIR}/changelog.gz)
set(manpages orlo.1 orlo-db.1 orlo-report.1)
foreach(page IN LISTS manpages)
    orlo_package_file(${page}.gz DEPENDS docs/man/${page}
        COMMAND sh -c "gzip -9nc \"$1\" >\"$2\"" sh ${PROJECT_SOURCE_DIR}/docs/man/${page} ${PACKAGE_DIR}/${page}.gz)
endforeach()
execute_process(COMMAND ${changes} appstream INPUT_FILE ${PROJECT_SOURCE_DIR}/CHANGELOG.md
                OUTPUT_VARIABLE ORLO_RELEASES OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
configure_file(share/orlo.metainfo.xml.in ${PACKAGE_DIR}/orlo.metainfo.xml @ONLY)

# The folder's programs look for libraries in its lib, and so do those libraries.
set_target_properties(${programs} ${modules} PROPERTIES BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/lib")
foreach(program IN LISTS programs modules)
    target_link_options(${program} PRIVATE LINKER:--disable-new-dtags)
endforeach()
foreach(program IN LISTS programs modules ITEMS orlo-notice) # their tables of addresses can't be written to
    target_link_options(${program} PRIVATE LINKER:-z,now)
endforeach()
# Files that a user may change, and the empty database, are kept apart: an archive unpacked over a used folder touches
# neither, and the launcher copies what is missing or new.
orlo_arrangement(folder fresh . . EXCLUDE_FROM_ALL)
install(TARGETS ${programs} RUNTIME DESTINATION . COMPONENT folder EXCLUDE_FROM_ALL)
install(TARGETS ${modules} LIBRARY DESTINATION . COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES packaging/README.txt packaging/qt.conf DESTINATION . COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES docs/man/orlo-db.1 docs/man/orlo-report.1 DESTINATION man COMPONENT folder EXCLUDE_FROM_ALL)
install(FILES packaging/fonts.conf DESTINATION fonts COMPONENT folder EXCLUDE_FROM_ALL)
install(PROGRAMS packaging/orlo.sh DESTINATION . RENAME start-orlo COMPONENT folder EXCLUDE_FROM_ALL)
install(PROGRAMS packaging/Start.desktop DESTINATION . RENAME "Start ORLO.desktop" COMPONENT folder EXCLUDE_FROM_ALL)
# Windows on X11 and on Wayland, printers, accents typed in two keys, photographs in reports. The program's own pictures
# need no plugin; orlo-report draws without a screen.
set(plugins platforms/libqoffscreen.so platforms/libqxcb.so platforms/libqwayland-generic.so wayland-shell-integration/libxdg-shell.so
    wayland-decoration-client/libbradient.so printsupport/libcupsprintersupport.so
    platforminputcontexts/libcomposeplatforminputcontextplugin.so
    platforminputcontexts/libibusplatforminputcontextplugin.so imageformats/libqjpeg.so)
find_path(DEJAVU DejaVuSans.ttf PATHS /usr/share/fonts PATH_SUFFIXES truetype/dejavu dejavu dejavu-sans-fonts TTF)
file(GLOB fonts ${DEJAVU}/DejaVuSans.ttf ${DEJAVU}/DejaVuSans-Bold.ttf ${DEJAVU}/DejaVuSansMono.ttf
     ${DEJAVU}/DejaVuSansMono-Bold.ttf ${DEJAVU}/DejaVuSerif.ttf ${DEJAVU}/DejaVuSerif-Bold.ttf)
install(CODE "set(PROGRAMS ${program_files})
    set(MODULES ${module_files})
    set(PLUGINS_FROM ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS})
    set(PLUGINS ${plugins})
    set(FONTS ${fonts})" COMPONENT folder EXCLUDE_FROM_ALL)
install(SCRIPT packaging/Portable.cmake COMPONENT folder EXCLUDE_FROM_ALL)

orlo_arrangement(system lib/orlo share/doc/orlo share/orlo)
install(TARGETS orlo orlo-notice RUNTIME DESTINATION lib/orlo COMPONENT system)
install(TARGETS ${modules} LIBRARY DESTINATION lib/orlo COMPONENT system)
install(TARGETS orlo-db orlo-report RUNTIME DESTINATION bin COMPONENT system)
if(TARGET orlo-jet)
    install(TARGETS orlo-jet RUNTIME DESTINATION lib/orlo COMPONENT system)
endif()
# The system's libraries are where every program finds them.
install(CODE [[set(usr "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
foreach(program lib/orlo/orlo lib/orlo/orlo-jet lib/orlo/orlo-pdf.so bin/orlo-db bin/orlo-report)
    if(EXISTS "${usr}/${program}")
        file(RPATH_REMOVE FILE "${usr}/${program}")
    endif()
endforeach()
foreach(folder share/doc/orlo/manual share/doc/orlo/examples share/orlo/sample-pack share/orlo/empty-pack)
    if(EXISTS "${usr}/${folder}")
        get_filename_component(name ${folder} NAME)
        file(CREATE_LINK ../../${folder} "${usr}/lib/orlo/${name}" SYMBOLIC)
    endif()
endforeach()]] COMPONENT system)
install(PROGRAMS packaging/orlo.sh DESTINATION bin RENAME orlo COMPONENT system)
list(TRANSFORM manpages REPLACE "(.+)" "${PACKAGE_DIR}/\\1.gz")
install(FILES ${manpages} DESTINATION share/man/man1 COMPONENT system)
install(FILES packaging/copyright ${PACKAGE_DIR}/changelog.gz DESTINATION share/doc/orlo COMPONENT system)
install(FILES share/orlo.desktop DESTINATION share/applications COMPONENT system)
install(FILES ${PACKAGE_DIR}/orlo.metainfo.xml DESTINATION share/metainfo RENAME example.tollbeck.orlo.metainfo.xml
        COMPONENT system)
foreach(size 16 24 32 48 128 256)
    install(FILES ${CMAKE_BINARY_DIR}/art/orlo-${size}.png RENAME orlo.png
            DESTINATION share/icons/hicolor/${size}x${size}/apps COMPONENT system)
endforeach()
install(FILES share/orlo.svg DESTINATION share/icons/hicolor/scalable/apps COMPONENT system)
if(BUILD_TESTING)
    add_test(NAME tst_packages COMMAND ${PROJECT_SOURCE_DIR}/tests/packages/tst_packages.sh ${CMAKE_BINARY_DIR})
    set_tests_properties(tst_packages PROPERTIES TIMEOUT 300 COST 100) # starts first: it waits more than it computes
endif()

set(CPACK_GENERATOR TXZ DEB)
set(CPACK_PACKAGE_FILE_NAME "orlo-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_PACKAGE_DESCRIPTION "Verrano (ORLO) keeps a pack's dens, scouts and parents, adult leaders, the
awards that each of them has, and the list of what has to be bought. One
person at one computer, one file, no server.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
# What library dependencies don't cover: the age of the database engine, the reports' fonts, a native window on a
# Wayland desktop, and what opens the manual. packaging/Generator.cmake.in adds the libraries.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libsqlite3-0 (>= 3.40), fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils")
