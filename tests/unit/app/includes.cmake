# The arrows between the rooms go one way: a room's sources find the headers of the rooms below it,
# and of no other. One test a room tries a header of each.
set(room_headers
    driver/vesmoraiocontrol.h
    controls/knob.h
    panels/rx1.h
    settings/settings.h
    shell/mainwindow.h
    app/singleinstance.h)
# No room of the product knows these.
set(outside_headers
    simulator/simulatorclient.h
    simulator/simmodel.h
    tests/testsimulator.h)

function(add_include_test room)
    set(directories "$<TARGET_PROPERTY:vesmora_${room},INCLUDE_DIRECTORIES>")
    set(allowed)
    set(forbidden)
    foreach(header IN LISTS room_headers outside_headers)
        get_filename_component(owner "${header}" DIRECTORY)
        get_filename_component(file "${header}" NAME)
        if(owner IN_LIST ARGN OR owner STREQUAL room)
            list(APPEND allowed ${file})
        else()
            list(APPEND forbidden ${file})
        endif()
    endforeach()
    add_test(NAME includes_of_${room}
        COMMAND "${CMAKE_COMMAND}"
            "-DCOMPILER=${CMAKE_CXX_COMPILER}"
            "-DDIRECTORIES=${directories}"
            "-DALLOWED=${allowed}"
            "-DFORBIDDEN=${forbidden}"
            -P "${CMAKE_CURRENT_SOURCE_DIR}/includetest.cmake")
    set_tests_properties(includes_of_${room} PROPERTIES LABELS unit TIMEOUT 300 ENVIRONMENT LC_ALL=C)
endfunction()

add_include_test(driver)
add_include_test(controls)
add_include_test(panels controls driver)
add_include_test(settings driver)
add_include_test(shell panels controls settings driver)
