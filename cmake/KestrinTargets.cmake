# What every target of the project has in common: the language level, the warnings, the sanitizers and the rule
# that a file names its includes from the root of the source tree ("engine/RiskAppCatalog.h").

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# What compilers do more makes programs larger, and nobody feels them faster.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

# For the targets of a folder that mostly waits, for people or for other programs: what is small is in memory all day.
function(kestrin_prefer_small)
    add_compile_options($<$<CONFIG:Release>:-Os>)
endfunction()

add_library(kestrin_common INTERFACE)
target_compile_features(kestrin_common INTERFACE cxx_std_20)
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH kestrin_root)
target_include_directories(kestrin_common INTERFACE "${kestrin_root}")
target_compile_definitions(kestrin_common INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(kestrin_common INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
    -Wconversion -Wformat=2 -Wimplicit-fallthrough -fstack-protector-strong)
# What GCC believes to be uninitialised depends on what it has inlined; from version 13 on it believes it of moved
# std::optionals in a QList, and is wrong. Clang and its analyzer look for the real ones.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kestrin_common INTERFACE -Wno-maybe-uninitialized)
endif()
# Warnings are errors where we have seen to it that there are none. Another compiler may complain of what is right.
string(REGEX MATCH "^[0-9]+" KESTRIN_COMPILER_MAJOR "${CMAKE_CXX_COMPILER_VERSION}")
if("${CMAKE_CXX_COMPILER_ID} ${KESTRIN_COMPILER_MAJOR}" MATCHES "^(GNU (12|14)|Clang (14|19))$")
    set(KESTRIN_COMPILER_IS_KNOWN ON)
else()
    set(KESTRIN_COMPILER_IS_KNOWN OFF)
endif()
option(KESTRIN_WARNINGS_AS_ERRORS "Stop the build at the first compiler warning" ${KESTRIN_COMPILER_IS_KNOWN})
if(KESTRIN_WARNINGS_AS_ERRORS)
    target_compile_options(kestrin_common INTERFACE -Werror)
endif()
if(KESTRIN_SANITIZE)
    target_compile_options(kestrin_common INTERFACE -fsanitize=${KESTRIN_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(kestrin_common INTERFACE -fsanitize=${KESTRIN_SANITIZE})
endif()
if(KESTRIN_FUZZ)
    target_compile_options(kestrin_common INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_definitions(kestrin_common INTERFACE _FORTIFY_SOURCE=2)
    # Not every processor has both.
    foreach(protection stack-clash cf)
        check_cxx_compiler_flag(-f${protection}-protection KESTRIN_HAS_${protection}_PROTECTION)
        if(KESTRIN_HAS_${protection}_PROTECTION)
            target_compile_options(kestrin_common INTERFACE -f${protection}-protection)
        endif()
    endforeach()
    if(NOT APPLE)
        # A program takes from our libraries what it uses, and not all that is compiled together with it.
        target_compile_options(kestrin_common INTERFACE -ffunction-sections)
        target_link_options(kestrin_common INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--gc-sections)
        # The places where addresses go take a twentieth of a program otherwise, which every start reads.
        check_linker_flag(CXX -Wl,-z,pack-relative-relocs KESTRIN_HAS_PACKED_RELOCATIONS)
        if(KESTRIN_HAS_PACKED_RELOCATIONS)
            target_link_options(kestrin_common INTERFACE -Wl,-z,pack-relative-relocs)
        endif()
    endif()
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
