# `./run packages` makes the packages, in two arrangements of the same files:
#   folder  an archive to unpack and run anywhere: the program's folder with the libraries that it needs;
#   system  what a Debian package puts under /usr, with a launcher that gives each user a folder of that kind.
# packaging/windows/build.sh makes the first for Windows.

set(PACKAGE_DIR ${CMAKE_BINARY_DIR}/packages)
set(package_files)
# orlo_package_file(NAME DEPENDS file... COMMAND ...): makes a file of the packages.
function(orlo_package_file name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "DEPENDS")
    get_filename_component(folder ${PACKAGE_DIR}/${name} DIRECTORY)
    add_custom_command(
        OUTPUT ${PACKAGE_DIR}/${name}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${CMAKE_COMMAND} -E rm -f ${PACKAGE_DIR}/${name}
        ${ARG_UNPARSED_ARGUMENTS}
        DEPENDS ${ARG_DEPENDS}
        VERBATIM)
    set(package_files ${package_files} ${PACKAGE_DIR}/${name} PARENT_SCOPE)
endfunction()

# The build's own folder may contain somebody's records by now, so the packages have their own database. The sample
# pack comes as a backup to restore, and in the edition of version 1.0, so that the update can be tried; the empty one
# resets a program that was only tried.
orlo_package_file(Quorrel11.mdb DEPENDS build::orlo-db COMMAND build::orlo-db new ${PACKAGE_DIR}/Quorrel11.mdb)
orlo_package_file(empty-pack/Quorrel11_Backup DEPENDS ${PACKAGE_DIR}/Quorrel11.mdb
    COMMAND ${CMAKE_COMMAND} -E copy ${PACKAGE_DIR}/Quorrel11.mdb ${PACKAGE_DIR}/empty-pack/Quorrel11_Backup)
set(sample ${PROJECT_SOURCE_DIR}/samples/pack)
file(GLOB tables CONFIGURE_DEPENDS ${sample}/*.csv)
orlo_package_file(sample-pack/Quorrel11_Backup DEPENDS build::orlo-db ${tables}
    COMMAND build::orlo-db new ${PACKAGE_DIR}/sample-pack/Quorrel11_Backup --from ${sample})
orlo_package_file(sample-pack/version-1.0/Quorrel.mdb DEPENDS build::orlo-db ${tables}
    COMMAND build::orlo-db new ${PACKAGE_DIR}/sample-pack/version-1.0/Quorrel.mdb --from ${sample} --format 1.0)

set(programs orlo orlo-db orlo-report)
if(TARGET orlo-jet)
    list(APPEND programs orlo-jet)
endif()
set(modules)
if(TARGET orlo-pdf)
    list(APPEND modules orlo-pdf)
endif()
list(TRANSFORM programs REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE program_files)
list(TRANSFORM modules REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE module_files)

# What both arrangements contain: the program's folder, the manual and the example reports, the packs to restore.
function(orlo_arrangement component folder manual packs)
    install(FILES ${APP_FILES} ${PACKAGE_DIR}/Quorrel11.mdb DESTINATION ${folder} COMPONENT ${component} ${ARGN})
    install(DIRECTORY ${PACKAGE_DIR}/sample-pack ${PACKAGE_DIR}/empty-pack DESTINATION ${packs} COMPONENT ${component} ${ARGN})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/samples/templates DESTINATION ${packs}/sample-pack COMPONENT ${component} ${ARGN})
    install(FILES ${EXAMPLE_FILES} DESTINATION ${manual}/examples COMPONENT ${component} ${ARGN})
    if(TARGET manual)
        install(DIRECTORY ${APP_DIR}/manual DESTINATION ${manual} COMPONENT ${component} ${ARGN})
    endif()
endfunction()

set(CPACK_THREADS 0)
set(CPACK_PACKAGE_NAME orlo)
set(CPACK_PACKAGE_VENDOR Tollbeck)
set(CPACK_PACKAGE_CONTACT "Tollbeck <orlo@tollbeck.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "records of a Cub Scout pack")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
    include(packaging/windows/Packages.cmake)
else()
    include(cmake/PackagesLinux.cmake)
endif()
add_custom_target(package_files ALL DEPENDS ${package_files})
configure_file(packaging/Generator.cmake.in ${PACKAGE_DIR}/Generator.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PACKAGE_DIR}/Generator.cmake)
include(CPack)
