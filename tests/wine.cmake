# How tests of Windows programs are run on the machine that builds them.
set(VESMORA_WINE "${PROJECT_SOURCE_DIR}/tools/wine")
# Where the installer puts the program that the tests drive from outside.
set(VESMORA_INSTALLED "${PROJECT_SOURCE_DIR}/build/windows/installed")

# A test program has a Wine prefix, a display and the simulated interface's driver to itself.
set(CMAKE_CROSSCOMPILING_EMULATOR
    "${VESMORA_WINE}/with-prefix" "${VESMORA_WINE}/with-display" "${VESMORA_WINE}/with-simulator"
    "${VESMORA_WINE}/run-test")

# Qt finds its plugins from where its DLLs are.
set(VESMORA_WINE_LIBRARIES "Z:$<TARGET_FILE_DIR:Qt6::Core>")

# vesmora_run_under_wine(TEST): the test takes one of the prefixes that CTest hands out.
function(vesmora_run_under_wine test)
    set_property(TEST ${test} PROPERTY RESOURCE_GROUPS wineprefixes:1)
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT "VESMORA_KERNEL_DRIVER=$<TARGET_FILE:vesmorasim>")
endfunction()
