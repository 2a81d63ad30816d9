# Language level, warnings, strict Qt defines and sanitizers, the same for every target of the project.

if(PROJECT_IS_TOP_LEVEL)
    find_program(TAMSEL_CCACHE ccache)
    if(TAMSEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${TAMSEL_CCACHE}")
    endif()
endif()

# Constructors name their parameters after the members that they set, which GCC's plain -Wshadow takes amiss.
set(TAMSEL_COMPILE_OPTIONS
    -Wall -Wextra -Wpedantic $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow> -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual)
# Qt's logging macros may have no arguments, which clang's versions warn of under two names.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    list(APPEND TAMSEL_COMPILE_OPTIONS -Wno-gnu-zero-variadic-macro-arguments -Wno-c++20-extensions)
endif()
if(TAMSEL_WERROR)
    list(APPEND TAMSEL_COMPILE_OPTIONS -Werror)
endif()

set(TAMSEL_SANITIZE_OPTIONS)
if(TAMSEL_SANITIZE)
    set(TAMSEL_SANITIZE_OPTIONS
        "-fsanitize=${TAMSEL_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
endif()

set(TAMSEL_COMPILE_DEFINITIONS
    _FILE_OFFSET_BITS=64 # files of more than 2 GiB where addresses have 32 bits
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

# Everything that each target of the project has in common.
function(tamsel_target_defaults target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
        AUTOMOC ON
        AUTORCC ON)
    target_compile_definitions(${target} PRIVATE ${TAMSEL_COMPILE_DEFINITIONS})
    target_compile_options(${target} PRIVATE ${TAMSEL_COMPILE_OPTIONS} ${TAMSEL_SANITIZE_OPTIONS})
    target_link_options(${target} PRIVATE ${TAMSEL_SANITIZE_OPTIONS})
endfunction()
