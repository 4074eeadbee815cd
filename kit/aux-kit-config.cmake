# What an application's tests need of a terminal:
#
#   find_package(aux-kit REQUIRED)
#   aux_add_sandboxed_test(NAME wifi COMMAND tst_wifi SUPPLICANT depot.conf INTERFACES eth0,down wlan0)
#
# adds a test that ctest runs in a private world, as aux-sandbox(1) describes it: there the command can
# read the source and the build directory, and write nothing that outlives it but WRITABLE, a directory.
# COMMAND is a program, or an executable target, and its arguments; SUPPLICANT a file, relative to the
# current source directory. Where the machine refuses private worlds the test is skipped.
set(_AUX_SANDBOX ${CMAKE_CURRENT_LIST_DIR}/sandbox)

function(aux_add_sandboxed_test)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;SUPPLICANT;WRITABLE" "COMMAND;INTERFACES")
    if(NOT arg_NAME OR NOT arg_COMMAND OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "aux_add_sandboxed_test(NAME name COMMAND command... [SUPPLICANT file] "
            "[INTERFACES interface...] [WRITABLE directory]): ${arg_UNPARSED_ARGUMENTS}")
    endif()
    set(options --readable ${CMAKE_SOURCE_DIR} --readable ${CMAKE_BINARY_DIR})
    if(arg_SUPPLICANT)
        cmake_path(ABSOLUTE_PATH arg_SUPPLICANT BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        list(APPEND options --supplicant ${arg_SUPPLICANT})
    endif()
    foreach(interface ${arg_INTERFACES})
        list(APPEND options --interface ${interface})
    endforeach()
    if(arg_WRITABLE)
        list(APPEND options --writable ${arg_WRITABLE})
    endif()
    list(POP_FRONT arg_COMMAND program)
    if(TARGET ${program})
        set(program $<TARGET_FILE:${program}>)
    endif()
    add_test(NAME ${arg_NAME} COMMAND ${_AUX_SANDBOX} ${options} ${program} ${arg_COMMAND})
    set_tests_properties(${arg_NAME} PROPERTIES SKIP_RETURN_CODE 77)
endfunction()
