# The root key that the library believes: -DTAMSEL_ROOT_KEY=FILE names a public Ed25519 key in PEM, which is
# compiled in through the generated header server/rootkey_p.h. Without it the library believes the development
# key, whose private half everybody knows.
#
# Sets TAMSEL_DEVELOPMENT_KEY to whether that is the case.

set(TAMSEL_ROOT_KEY "" CACHE FILEPATH "Public root key (Ed25519, PEM) of the deployment")
option(TAMSEL_ALLOW_DEVELOPMENT_KEY "Let a Release build believe the development root key" OFF)

set(_tamsel_development_key "${PROJECT_SOURCE_DIR}/keys/development-root.pem")
set(_tamsel_root_key "${_tamsel_development_key}")
if(TAMSEL_ROOT_KEY)
    get_filename_component(_tamsel_root_key "${TAMSEL_ROOT_KEY}" ABSOLUTE BASE_DIR "${CMAKE_BINARY_DIR}")
endif()

# Reads a PEM file of 113 characters: two marker lines around one of 60, the base64 form of 44 bytes that begin
# as every Ed25519 key does.
function(_tamsel_read_root_key file result)
    if(NOT EXISTS "${file}" OR IS_DIRECTORY "${file}")
        message(FATAL_ERROR "TAMSEL_ROOT_KEY: no such file: ${file}")
    endif()
    file(SIZE "${file}" size)
    set(key "")
    if(size EQUAL 113)
        file(READ "${file}" key)
    endif()
    if(NOT key MATCHES "^-----BEGIN PUBLIC KEY-----\n(MCowBQYDK2VwAyEA[A-Za-z0-9+/]+=)\n-----END PUBLIC KEY-----\n$")
        message(FATAL_ERROR "TAMSEL_ROOT_KEY: not a public Ed25519 key in PEM of 113 characters: ${file}")
    endif()
    set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

_tamsel_read_root_key("${_tamsel_root_key}" TAMSEL_ROOT_KEY_BASE64)
_tamsel_read_root_key("${_tamsel_development_key}" _tamsel_development_base64)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${_tamsel_root_key}")

set(TAMSEL_DEVELOPMENT_KEY false)
if(TAMSEL_ROOT_KEY_BASE64 STREQUAL _tamsel_development_base64)
    set(TAMSEL_DEVELOPMENT_KEY true)
    string(TOLOWER "${CMAKE_BUILD_TYPE}" _tamsel_build_type)
    if(_tamsel_build_type STREQUAL "release" AND NOT TAMSEL_ALLOW_DEVELOPMENT_KEY)
        message(FATAL_ERROR
            "A Release build needs a root key of its own: -DTAMSEL_ROOT_KEY=FILE. To let it believe the development "
            "key, with which everybody can sign: -DTAMSEL_ALLOW_DEVELOPMENT_KEY=ON")
    endif()
    message(WARNING
        "The library believes the development root key, with which everybody can sign. Set TAMSEL_ROOT_KEY for "
        "anything that is shipped.")
endif()

configure_file("${PROJECT_SOURCE_DIR}/cmake/rootkey_p.h.in" "${PROJECT_BINARY_DIR}/generated/server/rootkey_p.h" @ONLY)
