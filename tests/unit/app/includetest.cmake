# Run as a script: compiles each header of ALLOWED and of FORBIDDEN by itself with the include path
# DIRECTORIES. The former must compile, the latter must not be found.
cmake_minimum_required(VERSION 3.25)

list(TRANSFORM DIRECTORIES PREPEND -I)

function(compile header)
    execute_process(
        COMMAND "${COMPILER}" -std=c++20 -fPIC -fsyntax-only ${DIRECTORIES} -include ${header} -x c++ /dev/null
        WORKING_DIRECTORY /
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(result "${result}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

foreach(header IN LISTS ALLOWED)
    compile(${header})
    if(NOT result EQUAL 0)
        message(SEND_ERROR "${header} should be found:\n${output}")
    endif()
endforeach()
foreach(header IN LISTS FORBIDDEN)
    compile(${header})
    if(result EQUAL 0)
        message(SEND_ERROR "${header} is found, against the arrows")
    elseif(NOT output MATCHES "${header}(: No such file or directory|' file not found)")
        message(SEND_ERROR "${header} fails for another reason:\n${output}")
    endif()
endforeach()
