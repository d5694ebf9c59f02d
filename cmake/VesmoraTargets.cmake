# What every target of ours shares: language level, warnings, sanitizers, and one library a folder.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# The cross-built Qt decompresses no zstd.
set(CMAKE_AUTORCC_OPTIONS "--no-zstd")

if(WIN32)
    # One commit makes one program, whenever it is built. It has the little that it uses of the compiler's own
    # libraries in itself, as Qt's DLLs do.
    add_link_options(LINKER:--no-insert-timestamp -static)
endif()

set(VESMORA_SANITIZERS "" CACHE STRING "Sanitizers for our code and everything linked with it, e.g. address,undefined")

add_library(vesmora_warnings INTERFACE)
target_compile_options(vesmora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Werror
    # Clang counts these among the conversions; g++ does not.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
target_compile_definitions(vesmora_warnings INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(VESMORA_SANITIZERS)
    add_compile_options(-fsanitize=${VESMORA_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VESMORA_SANITIZERS})
endif()

# The Win32 calls come from Windows, or from host/ where there is no Windows.
add_library(vesmora_win32 INTERFACE)
if(WIN32)
    target_compile_definitions(vesmora_win32 INTERFACE UNICODE _UNICODE NOMINMAX)
    target_link_libraries(vesmora_win32 INTERFACE shell32)
else()
    target_link_libraries(vesmora_win32 INTERFACE vesmora_host)
endif()

# vesmora_precompile(TARGET)
#
# Has a target take Qt's headers from one precompiled header that all share, which more than halves
# the time of a build. Clang only: g++ refuses one that was made with other definitions. It may hide a
# missing include; the builds with g++ and MinGW find it.
function(vesmora_precompile target)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        return()
    endif()
    if(NOT TARGET vesmora_precompiled)
        file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
        add_library(vesmora_precompiled OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
        target_link_libraries(vesmora_precompiled PRIVATE Qt6::Widgets vesmora_warnings)
        target_include_directories(vesmora_precompiled SYSTEM PRIVATE
            $<TARGET_PROPERTY:Qt6::Test,INTERFACE_INCLUDE_DIRECTORIES>)
        target_precompile_headers(vesmora_precompiled PRIVATE <QtWidgets> <QtTest>)
    endif()
    target_precompile_headers(${target} REUSE_FROM vesmora_precompiled)
endfunction()

# vesmora_add_library(NAME SOURCES file... [LINKS target...] [PRIVATE_LINKS target...])
#
# A static library of one folder. What its headers include is among LINKS, what its sources alone
# include among PRIVATE_LINKS. Its include path is that folder alone, so a header can be included
# only by those who link the library: a dependency against the arrows does not compile.
function(vesmora_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS;PRIVATE_LINKS")
    add_library(${name} STATIC ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS} vesmora_warnings)
    vesmora_precompile(${name})
endfunction()
