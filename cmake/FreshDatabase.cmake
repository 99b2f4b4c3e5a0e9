# Gives the application's folder an empty database, only if no file of either version's name is there.
# Names are compared without regard to case, as the program does.
file(GLOB files RELATIVE ${APP_DIR} ${APP_DIR}/*)
foreach(file IN LISTS files)
    string(TOLOWER ${file} lower)
    if(lower STREQUAL "quorrel11.mdb" OR lower STREQUAL "quorrel.mdb")
        return()
    endif()
endforeach()
execute_process(COMMAND ${ORLO_DB} new ${APP_DIR}/Quorrel11.mdb COMMAND_ERROR_IS_FATAL ANY)
