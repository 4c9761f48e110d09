# Finds miniaudio's header, preferably the fetched one (tools/fetch-miniaudio), and defines the target
# Miniaudio::Miniaudio. Accepts 0.11.23, which fixed the MP3 decoder, and later versions of 0.11; another
# series may change the interface.

find_path(Miniaudio_INCLUDE_DIR miniaudio.h
    HINTS "${PROJECT_SOURCE_DIR}/build/deps/miniaudio"
    PATH_SUFFIXES miniaudio)

if(Miniaudio_INCLUDE_DIR)
    file(STRINGS "${Miniaudio_INCLUDE_DIR}/miniaudio.h" version_lines
        REGEX "^#define MA_VERSION_(MAJOR|MINOR|REVISION) " LIMIT_COUNT 3)
    string(REGEX REPLACE "[^0-9]*([0-9]+)[^0-9]+([0-9]+)[^0-9]+([0-9]+).*" "\\1.\\2.\\3"
        Miniaudio_VERSION "${version_lines}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Miniaudio
    REQUIRED_VARS Miniaudio_INCLUDE_DIR
    VERSION_VAR Miniaudio_VERSION HANDLE_VERSION_RANGE
    REASON_FAILURE_MESSAGE "tools/fetch-miniaudio gets it")
mark_as_advanced(Miniaudio_INCLUDE_DIR)

if(Miniaudio_FOUND AND NOT TARGET Miniaudio::Miniaudio)
    add_library(Miniaudio::Miniaudio INTERFACE IMPORTED GLOBAL)
    set_target_properties(Miniaudio::Miniaudio PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${Miniaudio_INCLUDE_DIR}"
        INTERFACE_LINK_LIBRARIES "${CMAKE_DL_LIBS};m;pthread")
endif()
