# Brings the pinned packages of package.json in SOURCE into DIRECTORY, unless they are there already, and the scripts
# that use them. No lock file: it would name the registry that they came from.

file(MAKE_DIRECTORY "${DIRECTORY}")
set(stamp "${DIRECTORY}/installed.json")
file(GLOB scripts "${SOURCE}/*.js")
foreach(file IN LISTS scripts ITEMS "${SOURCE}/package.json")
    configure_file("${file}" "${DIRECTORY}" COPYONLY)
endforeach()
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
