# Includes run one way: each folder below may include from the folders named behind it and from itself.

cmake_minimum_required(VERSION 3.25)

set(arrows
    "host:"
    "formats:"
    "levelling:formats"
    "tacheometry:formats"
    "Orvel/store:host"
    "Orvel/html:host Orvel/store"
    "Orvel/integration:host Orvel/store Orvel/html"
    "apps/common:host Orvel"
    "apps/replay:host Orvel apps/common"
    "apps/desk:host Orvel formats levelling tacheometry apps/common"
    "bench:host Orvel formats levelling tacheometry apps tests"
    "examples:host Orvel")

# Headers that the build generates stand at the top of the library that they belong to.
set(generated "Orvel/orvel_export.h")

set(violations "")
foreach(arrow IN LISTS arrows)
    string(REPLACE ":" ";" parts "${arrow}")
    list(GET parts 0 folder)
    list(LENGTH parts count)
    set(allowed ${folder})
    if(count GREATER 1)
        list(GET parts 1 others)
        separate_arguments(others)
        list(APPEND allowed ${others})
    endif()

    file(GLOB_RECURSE sources "${ROOT}/${folder}/*.h" "${ROOT}/${folder}/*.cpp")
    if(NOT sources)
        message(FATAL_ERROR "No sources in ${folder}: the list of folders is out of date")
    endif()
    foreach(source IN LISTS sources)
        file(STRINGS "${source}" includes REGEX "^#include \"")
        foreach(line IN LISTS includes)
            string(REGEX REPLACE "^#include \"([^\"]*)\".*" "\\1" header "${line}")
            set(isAllowed FALSE)
            foreach(root IN LISTS allowed)
                string(FIND "${header}" "${root}/" position)
                if(position EQUAL 0)
                    set(isAllowed TRUE)
                endif()
            endforeach()
            if(NOT isAllowed AND NOT header IN_LIST generated AND header MATCHES "/")
                string(APPEND violations "\n${source} includes ${header}")
            endif()
        endforeach()
    endforeach()
endforeach()

# The non-widget parts must not reach for widgets, whatever the include path offers.
file(GLOB_RECURSE cores "${ROOT}/Orvel/store/*" "${ROOT}/Orvel/html/*" "${ROOT}/host/model/*" "${ROOT}/host/enums/*"
    "${ROOT}/host/files/*" "${ROOT}/host/reports/*" "${ROOT}/formats/*" "${ROOT}/levelling/*" "${ROOT}/tacheometry/*")
foreach(source IN LISTS cores)
    file(STRINGS "${source}" widgets REGEX "#include <(QtWidgets|QApplication|QWidget|QDialog|QMessageBox)")
    if(widgets)
        string(APPEND violations "\n${source} includes widgets")
    endif()
endforeach()

if(violations)
    message(FATAL_ERROR "Includes against the arrows:${violations}")
endif()
