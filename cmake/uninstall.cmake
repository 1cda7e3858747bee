# Removes the files that MANIFEST names, which `cmake --install` wrote, and our own folders that are empty then.

if(NOT EXISTS ${MANIFEST})
    message(FATAL_ERROR "Nothing was installed from this build tree: ${MANIFEST} is missing.")
endif()

file(STRINGS ${MANIFEST} files)
set(folders "")
foreach(file IN LISTS files)
    set(path "$ENV{DESTDIR}${file}")
    if(EXISTS "${path}" OR IS_SYMLINK "${path}")
        message(STATUS "Removing ${path}")
        file(REMOVE "${path}")
    else()
        message(STATUS "Not there: ${path}")
    endif()
    cmake_path(GET path PARENT_PATH folder)
    while(folder MATCHES "/(orvel|Orvel)(/|$)")
        list(APPEND folders "${folder}")
        cmake_path(GET folder PARENT_PATH folder)
    endwhile()
endforeach()

# The innermost first; those with files of somebody else's stay.
list(REMOVE_DUPLICATES folders)
list(SORT folders ORDER DESCENDING)
foreach(folder IN LISTS folders)
    execute_process(COMMAND rmdir "${folder}" ERROR_QUIET)
endforeach()
