# Runs at install time. Writes each public header of a library with the rooms taken out of its include lines, and the
# forwarding headers, into the build tree, and installs them from there: what has not changed keeps its time, and all
# of it stands in the list of installed files.

function(install_headers source_dir staging destination headers)
    set(files)
    foreach(entry IN LISTS headers)
        string(REPLACE "|" ";" entry "${entry}")
        list(GET entry 0 header)
        list(GET entry 1 class)
        get_filename_component(name "${header}" NAME)
        file(READ "${source_dir}/${header}" text)
        string(REGEX REPLACE "#include \"(repository|index|storage|presentation|server|database)/"
            "#include \"" text "${text}")
        file(CONFIGURE OUTPUT "${staging}/${name}" CONTENT "${text}" @ONLY)
        file(CONFIGURE OUTPUT "${staging}/${class}" CONTENT "#include \"${name}\"\n" @ONLY)
        list(APPEND files "${staging}/${name}" "${staging}/${class}")
    endforeach()
    list(REMOVE_DUPLICATES files)
    file(INSTALL DESTINATION "${destination}" TYPE FILE FILES ${files})
    set(CMAKE_INSTALL_MANIFEST_FILES "${CMAKE_INSTALL_MANIFEST_FILES}" PARENT_SCOPE)
endfunction()
