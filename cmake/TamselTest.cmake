# tamsel_add_test(<name>
#     SOURCES <file>...
#     LIBRARIES <target>...
#     [ENVIRONMENT <variable>=<value>...]
#     [GUI])
#
# Adds a Qt Test executable with everything that belongs to one, and registers it with CTest. Headers of other
# rooms are included as "support/...". With GUI it has Qt Gui, runs without a display, and finds the QML module
# of the build tree.
#
# tamsel_set_test_environment(<name> [ENVIRONMENT <variable>=<value>...])
#
# Gives a test that is not a Qt Test executable the same surroundings: no display, a home of its own, a fixed
# locale, sanitizers that end the test at their first finding, a time limit.

find_package(Qt5 ${TAMSEL_QT_VERSION} REQUIRED COMPONENTS Test)

set(TAMSEL_TEST_HOMES "${PROJECT_BINARY_DIR}/test-homes")

# Homes are emptied once before the tests run, so that no run sees what the one before it left behind.
add_test(NAME clean-test-homes
    COMMAND "${CMAKE_COMMAND}" "-DHOMES=${TAMSEL_TEST_HOMES}"
        -P "${CMAKE_CURRENT_LIST_DIR}/CleanTestHomes.cmake")
set_tests_properties(clean-test-homes PROPERTIES FIXTURES_SETUP test-homes)

function(tamsel_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "GUI" "" "SOURCES;LIBRARIES;ENVIRONMENT")

    add_executable(${name} ${arg_SOURCES})
    tamsel_target_defaults(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin/tests")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE Qt5::Test Tamsel::PackageManager ${arg_LIBRARIES})
    if(arg_GUI)
        find_package(Qt5 ${TAMSEL_QT_VERSION} REQUIRED COMPONENTS Gui)
        target_link_libraries(${name} PRIVATE Qt5::Gui)
        list(PREPEND arg_ENVIRONMENT "QML2_IMPORT_PATH=${PROJECT_BINARY_DIR}/qml" "QT_QUICK_BACKEND=software")
    endif()

    add_test(NAME ${name} COMMAND ${name})
    tamsel_set_test_environment(${name} ENVIRONMENT ${arg_ENVIRONMENT})
endfunction()

function(tamsel_set_test_environment name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "ENVIRONMENT")
    set(home "${TAMSEL_TEST_HOMES}/${name}")
    set(support "${PROJECT_SOURCE_DIR}/tests/support")
    file(MAKE_DIRECTORY "${home}")

    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED test-homes TIMEOUT 120)
    set_property(TEST ${name} PROPERTY ENVIRONMENT
        "HOME=${home}"
        "XDG_CACHE_HOME=${home}/cache"
        "XDG_CONFIG_HOME=${home}/config"
        "XDG_DATA_HOME=${home}/data"
        "XDG_RUNTIME_DIR=${home}"
        "LC_ALL=C.UTF-8"
        "LANGUAGE="
        "QT_LOGGING_RULES="
        "QT_QPA_PLATFORM=offscreen"
        "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1"
        "LSAN_OPTIONS=print_suppressions=0:suppressions=${support}/lsan.supp"
        "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=${support}/tsan.supp"
        "UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1"
        ${arg_ENVIRONMENT})
endfunction()
