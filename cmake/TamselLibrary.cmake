# tamsel_add_library(<target>
#     EXPORT_NAME <name below Tamsel::>
#     HEADER_DIR <directory below include/>
#     SOURCES <file>...
#     PUBLIC_CLASSES [<room>/]<Class>[=<header>]...)
#
# Adds a shared library with everything that belongs to one: export macro, hidden symbols, version, alias,
# install rules, and for each public class its lower-case header plus a CamelCase forwarding header.
#
# Inside the tree a header is included from its room ("index/packageindex.h"); installed headers lie side by
# side in one directory, so the room is taken out of their include lines when they are installed.

include(GenerateExportHeader)

function(tamsel_add_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME;HEADER_DIR" "SOURCES;PUBLIC_CLASSES")

    add_library(${target} SHARED ${arg_SOURCES})
    add_library(Tamsel::${arg_EXPORT_NAME} ALIAS ${target})
    tamsel_target_defaults(${target})
    target_compile_features(${target} INTERFACE cxx_std_17)
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${arg_EXPORT_NAME}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib"
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

    set(generated "${CMAKE_BINARY_DIR}/include/${arg_HEADER_DIR}")
    string(TOLOWER ${target} lower)
    generate_export_header(${target} EXPORT_FILE_NAME "${generated}/${lower}_export.h")
    target_include_directories(${target}
        PUBLIC
            $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>
            $<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/include>
            $<BUILD_INTERFACE:${generated}>
            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

    _tamsel_public_headers(headers "${generated}" ${arg_PUBLIC_CLASSES})
    _tamsel_install_headers("${arg_HEADER_DIR}" "${headers}")
    install(FILES "${generated}/${lower}_export.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${arg_HEADER_DIR}" COMPONENT Development)
    install(TARGETS ${target} EXPORT TamselPackageManagerTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
endfunction()

# Writes the CamelCase forwarding headers of the build tree and lists the headers that they stand for.
function(_tamsel_public_headers result generated)
    set(headers)
    foreach(entry IN LISTS ARGN)
        string(REGEX MATCH "^(.*/)?([A-Za-z0-9]+)(=(.+))?$" matched "${entry}")
        set(room "${CMAKE_MATCH_1}")
        set(class "${CMAKE_MATCH_2}")
        set(header "${CMAKE_MATCH_4}")
        if(NOT header)
            string(TOLOWER "${class}.h" header)
        endif()
        file(CONFIGURE OUTPUT "${generated}/${class}"
            CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${room}${header}\"\n" @ONLY)
        list(APPEND headers "${room}${header}|${class}")
    endforeach()
    set(${result} "${headers}" PARENT_SCOPE)
endfunction()

function(_tamsel_install_headers header_dir headers)
    set(destination "${CMAKE_INSTALL_INCLUDEDIR}/${header_dir}")
    if(NOT IS_ABSOLUTE "${destination}")
        string(PREPEND destination "\${CMAKE_INSTALL_PREFIX}/")
    endif()
    install(CODE "
        include(\"${PROJECT_SOURCE_DIR}/cmake/InstallHeaders.cmake\")
        install_headers(\"${CMAKE_CURRENT_SOURCE_DIR}\" \"${CMAKE_CURRENT_BINARY_DIR}/installed-headers\"
            \"${destination}\" \"${headers}\")"
        COMPONENT Development)
endfunction()
