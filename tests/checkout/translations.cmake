# The translations have every text of the program; and the check would say if they had not.
add_test(NAME translations_are_complete COMMAND "${PROJECT_SOURCE_DIR}/tools/check-translations")

foreach(defect IN ITEMS missing unfinished obsolete)
    add_test(NAME translations_check_notices_${defect}_text
        COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/translationdefect" ${defect} "${PROJECT_SOURCE_DIR}")
endforeach()
set_tests_properties(
    translations_are_complete
    translations_check_notices_missing_text
    translations_check_notices_unfinished_text
    translations_check_notices_obsolete_text
    PROPERTIES LABELS checkout TIMEOUT 120)
