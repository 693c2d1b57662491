# AppKit and Foundation as GNUstep has them, for Clang. Two targets: gnustep, to link, and gnustep_with_arc, to compile
# with automatic reference counting, which no runtime on Debian has.

# GNUstep tells what GCC needs. Clang takes the definitions and exceptions from that.
execute_process(COMMAND gnustep-config --objc-flags OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND gnustep-config --gui-libs OUTPUT_VARIABLE libraries COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_STRIP_TRAILING_WHITESPACE)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(libraries UNIX_COMMAND "${libraries}")
set(headers ${flags})
list(FILTER headers INCLUDE REGEX "^-I/")
list(TRANSFORM headers REPLACE "^-I" "")
list(FILTER flags INCLUDE REGEX "^(-D|-fexceptions|-fobjc-exceptions|-pthread)")

# Of GCC's own headers only those of Objective-C; the others are for GCC. The one about blocks exists on no Debian.
execute_process(COMMAND g++ -print-file-name=include OUTPUT_VARIABLE gcc COMMAND_ERROR_IS_FATAL ANY
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(generated "${CMAKE_BINARY_DIR}/headers")
file(COPY "${gcc}/objc" DESTINATION "${generated}/gcc")
file(CONFIGURE OUTPUT "${generated}/gcc/objc/blocks_runtime.h" CONTENT "#include <Block.h>\n")
# The same without the one inline function that reaches into an object, which reference counting forbids.
file(COPY "${generated}/gcc/objc" DESTINATION "${generated}/arc")
file(READ "${gcc}/objc/runtime.h" runtime)
string(REPLACE "object->class_pointer" "nullptr" runtime "${runtime}")
file(CONFIGURE OUTPUT "${generated}/arc/objc/runtime.h" CONTENT "${runtime}" @ONLY)

add_library(gnustep INTERFACE)
target_include_directories(gnustep SYSTEM INTERFACE "${generated}/gcc" ${headers})
# The blocks runtime first: GNUstep brings one that does not copy the blocks of today's Clang off the stack.
target_link_libraries(gnustep INTERFACE BlocksRuntime ${libraries})

add_library(gnustep_with_arc INTERFACE)
target_include_directories(gnustep_with_arc SYSTEM INTERFACE "${generated}/arc" ${headers})

foreach(target gnustep gnustep_with_arc)
    target_compile_options(${target} INTERFACE
        "$<$<COMPILE_LANGUAGE:OBJCXX>:${flags};-fblocks;SHELL:-include ${CMAKE_CURRENT_LIST_DIR}/GNUstepAdditions.h>")
endforeach()
target_compile_options(gnustep INTERFACE
    "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc;-fconstant-string-class=NSConstantString>")
target_compile_options(gnustep_with_arc INTERFACE "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gnustep-2.0;-fobjc-arc>")
