# MINGW_RUNTIME_LIBRARIES: the compiler's own DLLs that every program it makes needs beside it.
set(MINGW_RUNTIME_LIBRARIES)
foreach(library IN ITEMS libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(
        COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${library}"
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
        # winpthreads is not the compiler's, so it does not know where it is.
        find_file(path_of_${library} ${library} PATHS /usr/x86_64-w64-mingw32/lib
            NO_CMAKE_FIND_ROOT_PATH REQUIRED)
        set(path "${path_of_${library}}")
    endif()
    list(APPEND MINGW_RUNTIME_LIBRARIES "${path}")
endforeach()
