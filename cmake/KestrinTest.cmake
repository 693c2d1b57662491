# kestrin_add_test(name COMMAND command... [WAYLAND kind...] [TIMEOUT seconds] [LABELS label...]
#     [ENVIRONMENT NAME=value...])
#
# Registers a test, in front of which ctest brings the build folder up to date. The label "sanitized" marks the tests
# that also run with the sanitizers. WAYLAND registers it as name_KIND on each of these desktops. Those other than sway
# are large: what runs there has the label "desktops" and no other.
function(kestrin_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "COMMAND;LABELS;ENVIRONMENT;WAYLAND")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    foreach(kind IN LISTS arg_WAYLAND)
        set(labels ${arg_LABELS})
        if(NOT kind STREQUAL "sway")
            set(labels desktops)
        endif()
        kestrin_add_test(${name}_${kind} COMMAND "${PROJECT_SOURCE_DIR}/tools/with-desktop" ${arg_COMMAND}
            TIMEOUT ${arg_TIMEOUT} LABELS ${labels}
            ENVIRONMENT ${arg_ENVIRONMENT} KESTRIN_DESKTOP_KIND=${kind}
                "KESTRIN_GNOME_EXTENSIONS=${PROJECT_BINARY_DIR}/desktop/gnome/${KESTRIN_GNOME_EXTENSION_FORM}")
    endforeach()
    if(arg_WAYLAND)
        return()
    endif()
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
    # How Qt's own threads wait for each other is hidden from ThreadSanitizer, so it is to look at our code alone.
    set(threads "die_after_fork=0:ignore_noninstrumented_modules=1")
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}" FIXTURES_REQUIRED build_folder
        COST ${arg_TIMEOUT} # what may take long begins first
        ENVIRONMENT
        "ASAN_OPTIONS=detect_leaks=1;TSAN_OPTIONS=${threads};UBSAN_OPTIONS=print_stacktrace=1;${arg_ENVIRONMENT}")
endfunction()

# kestrin_test_program(name LIBRARIES lib... TESTS tst_name...)
#
# Builds a program of each tst_name.cpp, and of tests/support/TestProgram.cpp, which runs one of them. Where a library
# brings windows, it can have some.
function(kestrin_test_program program)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES;TESTS")
    list(TRANSFORM arg_TESTS APPEND ".cpp" OUTPUT_VARIABLE sources)
    add_executable(${program} ${sources}
        "${PROJECT_SOURCE_DIR}/tests/support/TestClass.h" "${PROJECT_SOURCE_DIR}/tests/support/TestProgram.cpp")
    target_link_libraries(${program} PRIVATE ${arg_LIBRARIES} Qt6::Test)
    # A quarter of its compilation would go into making it fast.
    target_compile_options(${program} PRIVATE $<IF:$<CONFIG:Release>,-O1,-O0>)
    # The QTRY_ macros of newer versions narrow a number themselves. A library's options come in the order of the
    # libraries, and the first ones ask for the warning.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND Qt6_VERSION VERSION_GREATER_EQUAL 6.7)
        target_link_libraries(${program} PRIVATE kestrin_narrowing_tests)
    endif()
    set_property(GLOBAL APPEND PROPERTY KESTRIN_TESTS ${arg_TESTS})
endfunction()

add_library(kestrin_narrowing_tests INTERFACE)
target_compile_options(kestrin_narrowing_tests INTERFACE -Wno-conversion)

# kestrin_test(tst_name PROGRAM program [DESKTOP | WAYLAND kind... | BUS] [WINDOW] [TIMEOUT seconds] [LABELS label...]
#     [FUNCTIONS function...] [AS name])
#
# Registers a test, or some of its functions as another one. DESKTOP gives each run a private virtual desktop, BUS only
# a session bus. WINDOW draws windows offscreen, the same ones everywhere.
function(kestrin_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "DESKTOP;BUS;WINDOW" "PROGRAM;TIMEOUT;AS" "FUNCTIONS;LABELS;WAYLAND")
    set(command $<TARGET_FILE:${arg_PROGRAM}> ${name} ${arg_FUNCTIONS})
    if(arg_DESKTOP)
        list(PREPEND command "${PROJECT_SOURCE_DIR}/tools/with-desktop")
    elseif(arg_BUS)
        list(PREPEND command dbus-run-session --)
    endif()
    if(KESTRIN_SANITIZE STREQUAL "thread")
        # Some versions find no room where a kernel scatters memory more widely than they expect. Not every container
        # lets a program choose.
        execute_process(COMMAND setarch -R true RESULT_VARIABLE refused OUTPUT_QUIET ERROR_QUIET)
        if(NOT refused)
            list(PREPEND command setarch -R)
        endif()
    endif()
    set(environment QT_QPA_PLATFORM=minimal)
    if(arg_WINDOW)
        set(environment QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QT_SCALE_FACTOR=1)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(arg_AS)
        set(name ${arg_AS})
    endif()
    kestrin_add_test(${name} COMMAND ${command} WAYLAND ${arg_WAYLAND} TIMEOUT ${arg_TIMEOUT} LABELS ${arg_LABELS}
        ENVIRONMENT ${environment})
endfunction()

# Fails when a test's source has lost its way into the build.
function(kestrin_require_all_tests folder)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE "${folder}" "${folder}/tst_*.cpp")
    get_property(tests GLOBAL PROPERTY KESTRIN_TESTS)
    foreach(source IN LISTS sources)
        cmake_path(GET source STEM name)
        if(NOT name IN_LIST tests)
            message(FATAL_ERROR "tests/${source} is in no CMakeLists.txt.")
        endif()
    endforeach()
endfunction()
