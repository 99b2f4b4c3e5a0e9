# Run when the folder that runs anywhere is installed: copies what its programs and Qt's plugins load, except the C and
# C++ run time, which every system has, and the licences. Set by PackagesLinux.cmake: PROGRAMS, MODULES,
# PLUGINS_FROM, PLUGINS, FONTS.
set(folder "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(plugin_files)
foreach(plugin IN LISTS PLUGINS)
    if(EXISTS ${PLUGINS_FROM}/${plugin})
        get_filename_component(kind ${plugin} DIRECTORY)
        file(INSTALL ${PLUGINS_FROM}/${plugin} DESTINATION "${folder}/plugins/${kind}")
        list(APPEND plugin_files ${PLUGINS_FROM}/${plugin})
    else()
        message(WARNING "The folder lacks Qt's plugin ${plugin}, which isn't installed here.")
    endif()
endforeach()

file(GET_RUNTIME_DEPENDENCIES
    EXECUTABLES ${PROGRAMS}
    MODULES ${MODULES} ${plugin_files}
    RESOLVED_DEPENDENCIES_VAR libraries
    PRE_EXCLUDE_REGEXES "^ld-linux" "^lib(c|m|dl|pthread|rt|resolv|util|stdc\\+\\+|gcc_s)\\.so")
set(files ${plugin_files})
foreach(library IN LISTS libraries)
    get_filename_component(name ${library} NAME) # as it is requested
    file(REAL_PATH ${library} file)
    file(MAKE_DIRECTORY "${folder}/lib")
    file(COPY_FILE ${file} "${folder}/lib/${name}" ONLY_IF_DIFFERENT)
    list(APPEND files ${file})
endforeach()
file(INSTALL ${FONTS} DESTINATION "${folder}/fonts")

# Debian keeps each package's licence under the package's name. dpkg reads its lists anew each time, so it is asked once.
set(places)
foreach(file IN LISTS files FONTS)
    string(REGEX REPLACE "^/usr/" "/" short ${file}) # if /lib is a link, dpkg knows some files by the link
    list(APPEND places ${file} ${short})
endforeach()
execute_process(COMMAND dpkg -S ${places} OUTPUT_VARIABLE owners ERROR_QUIET)
string(REPLACE "\n" ";" owners "${owners}")
foreach(line IN LISTS owners)
    if(line MATCHES "^([^:,]+).*: (/.+)$")
        set(owner${CMAKE_MATCH_2} ${CMAKE_MATCH_1})
    endif()
endforeach()
foreach(file IN LISTS files FONTS)
    string(REGEX REPLACE "^/usr/" "/" short ${file})
    set(package "${owner${file}}")
    if(NOT package)
        set(package "${owner${short}}")
    endif()
    set(licence /usr/share/doc/${package}/copyright)
    if(package AND EXISTS ${licence})
        file(REAL_PATH ${licence} licence)
        file(MAKE_DIRECTORY "${folder}/licences")
        file(COPY_FILE ${licence} "${folder}/licences/${package}.txt" ONLY_IF_DIFFERENT)
    else()
        message(WARNING "No licence was found for ${file}.")
    endif()
endforeach()
