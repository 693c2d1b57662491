# kestrin_icon_drawing(file)
#
# Writes the drawing of the application's icon. The mark fills its square; an icon has the round corners that the window
# gives it. They are drawn, not clipped, because Qt's reader of SVG knows no clipping.
function(kestrin_icon_drawing file)
    cmake_path(SET mark NORMALIZE "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../design/KestrinIconMark.svg")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${mark}")
    file(READ "${mark}" drawing)
    string(REPLACE "<rect width=\"512\" height=\"512\" " "<rect width=\"512\" height=\"512\" rx=\"112.64\" " icon
        "${drawing}")
    if(icon STREQUAL drawing)
        message(FATAL_ERROR "KestrinIconMark.svg has no background whose corners could be made round.")
    endif()
    file(CONFIGURE OUTPUT "${file}" CONTENT "${icon}" @ONLY)
endfunction()
