# The mechanisms that every target of the tree shares: warnings, sanitizers, precompiled headers, globbed libraries.

add_library(orlo_options INTERFACE)
target_compile_options(orlo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Winvalid-pch>)
target_compile_definitions(orlo_options INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(orlo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(ORLO_SANITIZE)
    target_compile_options(orlo_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_link_options(orlo_options INTERFACE -fsanitize=address,undefined)
endif()
if(ORLO_FUZZ)
    target_compile_options(orlo_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
    target_link_options(orlo_options INTERFACE -fsanitize=address,undefined)
endif()

# orlo_library(NAME SOURCES dir... LINK lib... [PRIVATE lib...])
# A static library of all the .cpp, .h and .ui files that lie directly in the folders.
function(orlo_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE" ${ARGN})
    set(files)
    foreach(dir IN LISTS ARG_SOURCES)
        file(GLOB found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
             ${dir}/*.cpp ${dir}/*.h ${dir}/*.ui)
        list(APPEND files ${found})
    endforeach()
    add_library(${name} STATIC ${files})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(${name} PUBLIC orlo_options ${ARG_LINK} PRIVATE ${ARG_PRIVATE})
    if("Qt6::Widgets" IN_LIST ARG_LINK)
        target_precompile_headers(${name} PRIVATE <QtWidgets>)
    elseif(NOT "Qt6::PrintSupport" IN_LIST ARG_LINK AND NOT name STREQUAL "orlo_screens")
        target_precompile_headers(${name} PRIVATE <QtCore>)
    else()
        target_precompile_headers(${name} REUSE_FROM orlo_widgets)
    endif()
endfunction()
