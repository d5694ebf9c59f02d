# The toolchain of the cross-built Qt, which tools/qt-windows builds once and finds ever after.

# CMake reads this file for each of its checks, too.
if(NOT DEFINED ENV{VESMORA_QT_WINDOWS})
    execute_process(COMMAND "${CMAKE_CURRENT_LIST_DIR}/../../tools/qt-windows"
        OUTPUT_VARIABLE qt_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ENV{VESMORA_QT_WINDOWS} "${qt_folder}")
endif()
include("$ENV{VESMORA_QT_WINDOWS}/lib/cmake/Qt6/qt.toolchain.cmake")
