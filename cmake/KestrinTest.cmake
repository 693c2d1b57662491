# kestrin_test(tst_name LIBRARIES lib... [DESKTOP] [LABELS label...])
#
# Builds tst_name.cpp into a Qt Test program and registers it. DESKTOP gives each run a private virtual desktop. The
# label "sanitized" marks the tests that also run under AddressSanitizer.
function(kestrin_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "DESKTOP" "TIMEOUT" "LIBRARIES;LABELS")
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt6::Test)
    if(arg_DESKTOP)
        add_test(NAME ${name} COMMAND "${PROJECT_SOURCE_DIR}/tools/with-desktop" $<TARGET_FILE:${name}>)
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=minimal;ASAN_OPTIONS=detect_leaks=1;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()
