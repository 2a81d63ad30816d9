# Runs at install time. Copies each public header of a library with the rooms taken out of its include lines
# and writes the forwarding headers beside them.

function(install_headers source_dir generated destination headers)
    set(destination "$ENV{DESTDIR}${destination}")
    file(GLOB export_headers "${generated}/*_export.h")
    file(COPY ${export_headers} DESTINATION "${destination}")
    foreach(entry IN LISTS headers)
        string(REPLACE "|" ";" entry "${entry}")
        list(GET entry 0 header)
        list(GET entry 1 class)
        get_filename_component(name "${header}" NAME)
        file(READ "${source_dir}/${header}" text)
        string(REGEX REPLACE "#include \"(repository|index|storage|presentation|server|database)/"
            "#include \"" text "${text}")
        file(WRITE "${destination}/${name}" "${text}")
        file(WRITE "${destination}/${class}" "#include \"${name}\"\n")
    endforeach()
    message(STATUS "Installed headers: ${destination}")
endfunction()
