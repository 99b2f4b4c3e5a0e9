# What the program's file for Windows contains besides the code: its version, its icon, and its manifest.
enable_language(RC)
find_program(ICOTOOL icotool REQUIRED)
set(art ${CMAKE_BINARY_DIR}/art)
set(icon ${art}/orlo.ico)
set(small ${art}/orlo-16.png ${art}/orlo-24.png ${art}/orlo-32.png ${art}/orlo-48.png ${art}/orlo-128.png)
add_custom_command(
    OUTPUT ${icon}
    COMMAND ${ICOTOOL} --create --output=${icon} ${small} --raw=${art}/orlo-256.png
    DEPENDS ${small} ${art}/orlo-256.png
    VERBATIM)
set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/orlo.manifest)
configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/orlo.rc.in ${CMAKE_BINARY_DIR}/orlo.rc @ONLY)
set_source_files_properties(${CMAKE_BINARY_DIR}/orlo.rc PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
add_library(orlo_resources OBJECT ${CMAKE_BINARY_DIR}/orlo.rc)
target_link_libraries(orlo PRIVATE orlo_resources)
# The reader of former files takes its file's name in UTF-8, by the same manifest.
if(TARGET orlo-jet)
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/orlo-jet.rc @ONLY
         CONTENT "#include <windows.h>\nCREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"@manifest@\"\n")
    set_source_files_properties(${CMAKE_BINARY_DIR}/orlo-jet.rc PROPERTIES OBJECT_DEPENDS ${manifest})
    add_library(orlo_manifest OBJECT ${CMAKE_BINARY_DIR}/orlo-jet.rc)
    target_link_libraries(orlo-jet PRIVATE orlo_manifest)
endif()
set_target_properties(orlo PROPERTIES WIN32_EXECUTABLE ON) # opens no console
