# Runs before the tests. Empties the home of each; homes are as private as Qt wants a runtime directory to be.

file(GLOB homes "${HOMES}/*")
foreach(home IN LISTS homes)
    file(REMOVE_RECURSE "${home}")
    file(MAKE_DIRECTORY "${home}")
    file(CHMOD "${home}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endforeach()
