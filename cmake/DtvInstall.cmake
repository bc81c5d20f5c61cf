# The installed package: libraries, public headers under include/DecodedTextView and a package configuration, so that
# find_package(DecodedTextView) gives DecodedText::View and what it needs, with the major version of Qt that it was built with.
include(CMakePackageConfigHelpers)

set(DTV_CONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/DecodedTextView")
set(DTV_HEADER_DIR "${CMAKE_INSTALL_INCLUDEDIR}/DecodedTextView")

set(DTV_INSTALLED_TARGETS)
foreach(target hxbase orvelappstartup guibase vrtbase idllinstance hostframework resultdata decodedtextview)
    if(TARGET ${target})
        list(APPEND DTV_INSTALLED_TARGETS ${target})
    endif()
endforeach()
install(TARGETS ${DTV_INSTALLED_TARGETS} EXPORT DecodedTextViewTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${DTV_HEADER_DIR}")
if(TARGET decodedtexthost)
    install(TARGETS decodedtexthost RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

# The view's public headers: the exported classes and whatever of ours their headers include, found by following them.
set(DTV_VIEW_DIR "${PROJECT_SOURCE_DIR}/controls/decodedtextview")
set(pending decodedtextview.h decodedtextdata.h decodedtextclock.h)
set(DTV_VIEW_HEADERS)
while(pending)
    list(POP_FRONT pending header)
    if(header IN_LIST DTV_VIEW_HEADERS OR NOT EXISTS "${DTV_VIEW_DIR}/${header}")
        continue()
    endif()
    list(APPEND DTV_VIEW_HEADERS "${header}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${DTV_VIEW_DIR}/${header}")
    file(STRINGS "${DTV_VIEW_DIR}/${header}" lines REGEX "^#include \"")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^#include \"([^\"]*)\".*" "\\1" included "${line}")
        list(APPEND pending "${included}")
    endforeach()
endwhile()
list(TRANSFORM DTV_VIEW_HEADERS PREPEND "${DTV_VIEW_DIR}/")
install(FILES ${DTV_VIEW_HEADERS} DESTINATION "${DTV_HEADER_DIR}")

install(DIRECTORY "${PROJECT_SOURCE_DIR}/interfaces/hostframework/" "${PROJECT_SOURCE_DIR}/interfaces/resultdata/"
    DESTINATION "${DTV_HEADER_DIR}" FILES_MATCHING PATTERN "*.h")

install(EXPORT DecodedTextViewTargets NAMESPACE DecodedText:: DESTINATION "${DTV_CONFIG_DIR}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/DecodedTextViewConfig.cmake.in"
    "${CMAKE_CURRENT_BINARY_DIR}/DecodedTextViewConfig.cmake" INSTALL_DESTINATION "${DTV_CONFIG_DIR}")
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/DecodedTextViewConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${CMAKE_CURRENT_BINARY_DIR}/DecodedTextViewConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/DecodedTextViewConfigVersion.cmake"
    DESTINATION "${DTV_CONFIG_DIR}")
