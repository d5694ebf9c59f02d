# Included by Qt's own project: what paints stays as fast as it is, in a Qt that is built to be small.
function(optimize_painting)
    set(subjects blend composition drawhelper grayraster imagescale memrotate outlinemapper paintengine painter
        pixellayout rasterizer stroker)
    list(TRANSFORM subjects REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/src/gui/painting/q\\1*.c*")
    file(GLOB gui ${subjects})
    file(GLOB widgets "${CMAKE_SOURCE_DIR}/src/widgets/effects/*.cpp")
    foreach(library IN ITEMS gui widgets)
        set(folder "${CMAKE_SOURCE_DIR}/src/${library}")
        set_property(SOURCE ${${library}} DIRECTORY "${folder}" APPEND PROPERTY COMPILE_OPTIONS -O3)
        # Those are made for another level.
        set_property(SOURCE ${${library}} DIRECTORY "${folder}" PROPERTY SKIP_PRECOMPILE_HEADERS ON)
    endforeach()
endfunction()
# Once the folders know their sources.
cmake_language(DEFER CALL optimize_painting)
