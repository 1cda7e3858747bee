# Every C++ source is as clang-format would write it.

cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE sources
    "${ROOT}/host/*.h" "${ROOT}/host/*.cpp"
    "${ROOT}/formats/*.h" "${ROOT}/formats/*.cpp"
    "${ROOT}/levelling/*.h" "${ROOT}/levelling/*.cpp"
    "${ROOT}/tacheometry/*.h" "${ROOT}/tacheometry/*.cpp"
    "${ROOT}/Orvel/*.h" "${ROOT}/Orvel/*.cpp"
    "${ROOT}/apps/*.h" "${ROOT}/apps/*.cpp"
    "${ROOT}/bench/*.h" "${ROOT}/bench/*.cpp"
    "${ROOT}/examples/*.h" "${ROOT}/examples/*.cpp"
    "${ROOT}/template/*.h" "${ROOT}/template/*.cpp"
    "${ROOT}/tests/*.h" "${ROOT}/tests/*.cpp")
list(FILTER sources EXCLUDE REGEX "/node_modules/")
execute_process(COMMAND ${CLANG_FORMAT} --dry-run -Werror ${sources} RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Run clang-format on:\n${errors}")
endif()
