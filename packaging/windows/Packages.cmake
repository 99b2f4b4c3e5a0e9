# What only the package for Windows has; read by cmake/Packages.cmake.
orlo_arrangement(folder . . .)
install(TARGETS ${programs} RUNTIME DESTINATION . COMPONENT folder)
install(TARGETS ${modules} LIBRARY DESTINATION . COMPONENT folder)
configure_file(packaging/windows/README.txt ${PACKAGE_DIR}/README.txt @ONLY NEWLINE_STYLE CRLF)
install(FILES ${PACKAGE_DIR}/README.txt packaging/qt.conf DESTINATION . COMPONENT folder)
install(DIRECTORY ${QT6_INSTALL_PREFIX}/licences DESTINATION . COMPONENT folder)
# What the programs load is beside them: of Qt's plugins the one for windows and the one for photographs in reports; the
# program's own pictures need none.
set(libraries Qt6Core Qt6Gui Qt6PrintSupport Qt6Widgets libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
if(TARGET orlo-jet)
    list(APPEND libraries libmdb)
endif()
list(TRANSFORM libraries REPLACE "(.+)" "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}/\\1.dll")
install(FILES ${libraries} DESTINATION . COMPONENT folder)
foreach(plugin platforms/qwindows imageformats/qjpeg)
    get_filename_component(kind ${plugin} DIRECTORY)
    install(FILES ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS}/${plugin}.dll DESTINATION plugins/${kind} COMPONENT folder)
endforeach()

set(CPACK_GENERATOR ZIP)
# The archive holds a database, so its folder's name has the full version: no other archive is unpacked over a used
# folder.
set(CPACK_PACKAGE_FILE_NAME "orlo-${PROJECT_VERSION}-win64")
