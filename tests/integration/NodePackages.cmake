# tamsel_node_packages(<name>)
#
# Sets TAMSEL_NODE, and <name>_DIRECTORY to the directory in the build tree into which the scripts of the current
# directory and the packages of its package.json go when a test that requires the fixture <name> first runs. Both are
# empty where Node.js or npm is missing.

find_program(TAMSEL_NODE NAMES node nodejs DOC "Runs servers and clients of the integration tests")
find_program(TAMSEL_NPM NAMES npm DOC "Installs what they consist of")

function(tamsel_node_packages name)
    if(NOT TAMSEL_NODE OR NOT TAMSEL_NPM)
        message(WARNING "Node.js or npm was not found: tests that need ${name} are left out")
        set(${name}_DIRECTORY "" PARENT_SCOPE)
        return()
    endif()
    set(directory "${PROJECT_BINARY_DIR}/node-packages/${name}")
    # Keeps the surroundings of the user, where npm finds its settings.
    add_test(NAME ${name}
        COMMAND "${CMAKE_COMMAND}" "-DNPM=${TAMSEL_NPM}" "-DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}"
            "-DDIRECTORY=${directory}" -P "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/InstallNodePackages.cmake")
    set_tests_properties(${name} PROPERTIES FIXTURES_SETUP ${name} TIMEOUT 600)
    set(${name}_DIRECTORY "${directory}" PARENT_SCOPE)
endfunction()
