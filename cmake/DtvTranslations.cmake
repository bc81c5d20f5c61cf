# dtv_add_translations(TARGET NAME FOLDER): builds FOLDER/NAME_<language>.ts of each language and embeds the results in TARGET
# as ":/NAME/NAME_<language>.qm", where the translation centre looks for them. Without Qt's linguist tools, which only Qt 4 may
# lack, the texts stay English. After a change of texts: lupdate -no-obsolete -locations none . -ts i18n/NAME_de.ts in the
# target's folder; what has no context (the annotation entries of the menu) is kept in the library's file only.
if(DTV_QT_MAJOR EQUAL 4)
    set(DTV_RCC Qt4::rcc)
    set(DTV_LRELEASE ${QT_LRELEASE_EXECUTABLE})
    set(DTV_LUPDATE ${QT_LUPDATE_EXECUTABLE})
else()
    set(DTV_RCC Qt${DTV_QT_MAJOR}::rcc)
    set(DTV_LRELEASE Qt${DTV_QT_MAJOR}::lrelease)
    set(DTV_LUPDATE $<TARGET_FILE:Qt${DTV_QT_MAJOR}::lupdate>)
endif()

function(dtv_add_translations target name folder)
    if(NOT DTV_LRELEASE)
        message(STATUS "No lrelease: ${name} is built without translations")
        return()
    endif()
    set(build_folder "${CMAKE_CURRENT_BINARY_DIR}/i18n")
    set(resources "${build_folder}/${name}_i18n.qrc")
    set(source "${build_folder}/qrc_${name}_i18n.cpp")
    set(entries)
    set(built_files)
    file(GLOB ts_files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${name}_*.ts")
    foreach(ts_file IN LISTS ts_files)
        get_filename_component(base "${ts_file}" NAME_WE)
        add_custom_command(OUTPUT "${build_folder}/${base}.qm"
            COMMAND ${DTV_LRELEASE} -silent "${ts_file}" -qm "${build_folder}/${base}.qm"
            DEPENDS "${ts_file}" VERBATIM)
        list(APPEND built_files "${build_folder}/${base}.qm")
        string(APPEND entries "<file>${base}.qm</file>")
    endforeach()
    file(GENERATE OUTPUT "${resources}"
        CONTENT "<RCC><qresource prefix=\"/${name}\">${entries}</qresource></RCC>\n")
    add_custom_command(OUTPUT "${source}"
        COMMAND ${DTV_RCC} -name ${name}_i18n -o "${source}" "${resources}"
        DEPENDS "${resources}" ${built_files} VERBATIM)
    set_source_files_properties("${source}" PROPERTIES SKIP_AUTOGEN ON)
    target_sources(${target} PRIVATE "${source}")
endfunction()
