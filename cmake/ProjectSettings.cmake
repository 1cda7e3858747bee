# Flags, output folders and helper functions that every target of the project shares.

include(GenerateExportHeader)
include(GNUInstallDirs)

# Of both libraries: another number says that programs have to be built anew.
set(ORVEL_SOVERSION ${PROJECT_VERSION_MAJOR})

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
# The folders of the build tree lie to each other as those of the installation do.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(ORVEL_PLUGIN_DIR ${PROJECT_BINARY_DIR}/plugins)
# What is installed as the application's data: the "Protocol" folder of the pages.
set(ORVEL_DATA_DIR ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_DATADIR}/orvel)

option(ORVEL_WERROR "Treat warnings as errors" OFF)
set(ORVEL_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

option(ORVEL_COVERAGE "Count which lines run" OFF)

add_library(OrvelSettings INTERFACE)
add_library(Orvel::Settings ALIAS OrvelSettings)
target_compile_options(OrvelSettings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wextra-semi
    $<$<BOOL:${ORVEL_WERROR}>:-Werror>)
target_compile_definitions(OrvelSettings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_KEYWORDS QT_STRICT_ITERATORS
    QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

add_link_options(-Wl,--as-needed)
if(ORVEL_SANITIZE)
    add_compile_options(-fsanitize=${ORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ORVEL_SANITIZE})
else()
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,--no-undefined>)
endif()

if(ORVEL_COVERAGE)
    # Several tests count at the same time.
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()

# One Qt Test program, built from the file NAME.cpp of the calling folder.
function(orvel_add_test NAME)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;DEFINITIONS;ENVIRONMENT" ${ARGN})
    add_executable(${NAME} ${NAME}.cpp ${ARG_SOURCES})
    target_link_libraries(${NAME} PRIVATE Orvel::Settings TestSupport ${ARG_LIBRARIES})
    target_precompile_headers(${NAME} REUSE_FROM TestSupport)
    # Next to nothing, which takes longer with the headers than without.
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${NAME}_autogen/mocs_compilation.cpp PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON)
    target_compile_definitions(${NAME} PRIVATE ${ARG_DEFINITIONS})
    set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    add_test(NAME ${NAME} COMMAND ${NAME})
    # What Qt itself does; the files say why.
    set(suppressions
        "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp"
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")
    # Counters make a test take up to a hundred times as long.
    set(timeout 300)
    if(ORVEL_COVERAGE)
        set(timeout 3600)
    endif()
    set_tests_properties(${NAME} PROPERTIES
        TIMEOUT ${timeout}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${suppressions};${ARG_ENVIRONMENT}")
endfunction()
