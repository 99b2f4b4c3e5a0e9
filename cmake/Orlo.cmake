# What every target of the tree shares.

add_library(orlo_options INTERFACE)
target_compile_options(orlo_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_compile_definitions(orlo_options INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(orlo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(WIN32)
    target_compile_definitions(orlo_options INTERFACE _WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
endif()
if(ORLO_SANITIZE)
    target_compile_options(orlo_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_link_options(orlo_options INTERFACE -fsanitize=address,undefined)
endif()
if(ORLO_COVERAGE) # only the rooms of src count (src/CMakeLists.txt)
    add_link_options(--coverage)
endif()
if(ORLO_FUZZ)
    target_compile_options(orlo_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
    target_link_options(orlo_options INTERFACE -fsanitize=address,undefined)
endif()

# `format` runs clang-format on the sources, `lint` runs clang-tidy on those of src and tools.
find_program(CLANG_FORMAT clang-format)
find_program(RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.h ${PROJECT_SOURCE_DIR}/src/*.cpp
     ${PROJECT_SOURCE_DIR}/tools/*.h ${PROJECT_SOURCE_DIR}/tools/*.cpp ${PROJECT_SOURCE_DIR}/tests/*.h
     ${PROJECT_SOURCE_DIR}/tests/*.cpp ${PROJECT_SOURCE_DIR}/benchmarks/*.h ${PROJECT_SOURCE_DIR}/benchmarks/*.cpp)
if(CLANG_FORMAT)
    add_custom_target(format COMMAND ${CLANG_FORMAT} -i ${sources} VERBATIM)
endif()
# Lint reads each room as one file, without precompiled headers; its parser stumbles over the PDF library's headers.
if(RUN_CLANG_TIDY AND CMAKE_UNITY_BUILD)
    add_custom_target(lint
        COMMAND ${RUN_CLANG_TIDY} -quiet -p ${CMAKE_BINARY_DIR} -checks=-bugprone-suspicious-include
            "-header-filter=^${PROJECT_SOURCE_DIR}/(src|tools)/"
            "^(${PROJECT_SOURCE_DIR}/(src|tools)/(?!reporting/pdf/)|${CMAKE_BINARY_DIR}/(src|tools)/(?!reporting/pdf/).*/Unity/)"
        VERBATIM USES_TERMINAL)
endif()

# orlo_room(NAME [FORMS] LINK lib... [PRIVATE lib...] SOURCES file...)
# A room of src as a library. FORMS: it has classes with signals, or .ui files.
function(orlo_room name)
    cmake_parse_arguments(ARG "FORMS" "" "LINK;PRIVATE;SOURCES" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC orlo_options ${ARG_LINK} PRIVATE ${ARG_PRIVATE})
    if(ARG_FORMS)
        orlo_common_headers(${name} screen)
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTOGEN_ORIGIN_DEPENDS OFF)
        if(TARGET lint)
            add_dependencies(lint ${name}_autogen) # the forms' headers
        endif()
    else()
        orlo_common_headers(${name} core)
    endif()
endfunction()
