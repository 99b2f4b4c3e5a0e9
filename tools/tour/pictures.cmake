# Checks that the manual's pictures are up to date: cmake -D SOURCE=FOLDER [-D WRITE=ON] -P pictures.cmake
# Beside the pictures is a checksum of what determines them, as of when they were taken; WRITE updates it.
file(GLOB_RECURSE shapes LIST_DIRECTORIES OFF ${SOURCE}/src/*.ui ${SOURCE}/src/widgets/* ${SOURCE}/src/layouts/*
     ${SOURCE}/src/reports/files/* ${SOURCE}/src/reporting/view/* ${SOURCE}/src/shell/frame/* ${SOURCE}/share/*.svg
     ${SOURCE}/samples/pack/* ${SOURCE}/tools/tour/*)
list(SORT shapes)
set(sums)
foreach(file IN LISTS shapes)
    file(SHA256 ${file} sum)
    string(APPEND sums ${sum})
endforeach()
string(SHA256 sum "${sums}")
set(kept ${SOURCE}/docs/manual/pictures/taken-of.txt)
if(WRITE)
    file(WRITE ${kept} "${sum}\n")
else()
    set(former)
    if(EXISTS ${kept})
        file(STRINGS ${kept} former)
    endif()
    if(NOT former STREQUAL sum)
        message("The manual's pictures are older than the program: \"./run pictures\" takes them anew.")
    endif()
endif()
