# Brings the pinned packages of package.json into DIRECTORY, unless they are there already. No lock file: it would
# name the registry that they came from.

file(MAKE_DIRECTORY "${DIRECTORY}")
set(stamp "${DIRECTORY}/installed.json")
configure_file("${CMAKE_CURRENT_LIST_DIR}/package.json" "${DIRECTORY}/package.json" COPYONLY)
configure_file("${CMAKE_CURRENT_LIST_DIR}/server.js" "${DIRECTORY}/server.js" COPYONLY)
if(EXISTS "${stamp}")
    file(SHA256 "${stamp}" installed)
    file(SHA256 "${DIRECTORY}/package.json" wanted)
    if(installed STREQUAL wanted)
        return()
    endif()
endif()
execute_process(
    COMMAND "${NPM}" install --no-package-lock --ignore-scripts --omit=optional --no-audit --no-fund --loglevel=error
    WORKING_DIRECTORY "${DIRECTORY}"
    COMMAND_ERROR_IS_FATAL ANY)
configure_file("${DIRECTORY}/package.json" "${stamp}" COPYONLY)
