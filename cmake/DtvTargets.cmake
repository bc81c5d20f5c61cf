# What every target of our own is built with. Not exported: an installed package imposes none of it.
add_library(dtv_options INTERFACE)

target_compile_definitions(dtv_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    $<$<BOOL:${DTV_CONSISTENCY_CHECKS}>:DTV_CONSISTENCY_CHECKS>)

if(MSVC)
    target_compile_options(dtv_options INTERFACE /W4 $<$<BOOL:${DTV_WERROR}>:/WX>)
else()
    target_compile_options(dtv_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion
        $<$<BOOL:${DTV_WERROR}>:-Werror -Wno-error=deprecated-declarations>)
endif()

if(DTV_SANITIZE)
    target_compile_options(dtv_options INTERFACE
        -fsanitize=${DTV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(dtv_options INTERFACE -fsanitize=${DTV_SANITIZE})
endif()

# dtv_add_test(NAME [LIBRARIES ...] [ARGS ...]): a test program from NAME.cpp of the current folder. Runs offscreen and in
# UTC+x so that a time that was never converted shows.
function(dtv_add_test name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES;SOURCES" ${ARGN})
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} dtvtestsupport dtv_options)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=Asia/Kolkata;LC_ALL=C.UTF-8;LANGUAGE=en;QT_LOGGING_RULES=qt.qpa.*=false"
        TIMEOUT 300)
endfunction()
