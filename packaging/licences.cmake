# The licence texts that go with what the folder holds. They are those of this machine's packages, which
# are the ones that the libraries come from.
get_filename_component(qt_folder "${Qt6_DIR}/../../.." ABSOLUTE)
file(READ "${qt_folder}/licenses/source-version" QT_SOURCE_VERSION)
string(STRIP "${QT_SOURCE_VERSION}" QT_SOURCE_VERSION)

configure_file(notice.txt.in notice.txt @ONLY NEWLINE_STYLE WIN32)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/notice.txt" DESTINATION licenses RENAME NOTICE.txt)

install(FILES /usr/share/common-licenses/LGPL-3 DESTINATION licenses RENAME LGPL-3.txt)
install(FILES /usr/share/common-licenses/GPL-3 DESTINATION licenses RENAME GPL-3.txt)
install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright DESTINATION licenses RENAME gcc-runtime.txt)
install(FILES /usr/share/doc/mingw-w64-x86-64-dev/copyright DESTINATION licenses RENAME mingw-w64-runtime.txt)

install(DIRECTORY "${qt_folder}/licenses/" DESTINATION licenses/qt)
# How the DLLs were made is a part of their source.
install(PROGRAMS "${PROJECT_SOURCE_DIR}/tools/qt-windows" DESTINATION licenses/qt/build/tools)
install(FILES
    "${PROJECT_SOURCE_DIR}/cmake/toolchains/mingw-w64-x86_64.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/toolchains/qt-painting.cmake"
    DESTINATION licenses/qt/build/cmake/toolchains)
