# Installs the build into a scratch prefix and checks the installed tree: the program, the
# reserve store, the menu entry, the icons and the metainfo, validated where the tools exist.
# Run as: cmake -DBUILD_DIR=<build> -DAPP_ID=<id> -DBINDIR=<bin> -DDATADIR=<share> -P check_install.cmake
cmake_minimum_required(VERSION 3.25)

set(prefix ${BUILD_DIR}/install-check)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install failed: ${result}")
endif()

set(expected
    ${BINDIR}/Vantry
    ${DATADIR}/vantry/Vantry.rdb
    ${DATADIR}/applications/${APP_ID}.desktop
    ${DATADIR}/metainfo/${APP_ID}.metainfo.xml
    ${DATADIR}/icons/hicolor/scalable/apps/${APP_ID}.svg)
foreach(size 16 32 48 64 128 256)
    list(APPEND expected ${DATADIR}/icons/hicolor/${size}x${size}/apps/${APP_ID}.png)
endforeach()
foreach(file ${expected})
    if(NOT EXISTS ${prefix}/${file})
        message(FATAL_ERROR "not installed: ${file}")
    endif()
    file(SIZE ${prefix}/${file} size)
    if(size EQUAL 0)
        message(FATAL_ERROR "installed empty: ${file}")
    endif()
endforeach()
if(NOT IS_DIRECTORY ${prefix}/${BINDIR} OR NOT EXISTS ${prefix}/${BINDIR}/Vantry)
    message(FATAL_ERROR "no program in ${BINDIR}")
endif()
file(GLOB extra RELATIVE ${prefix}/${BINDIR} ${prefix}/${BINDIR}/*)
if(NOT extra STREQUAL "Vantry")
    message(FATAL_ERROR "the bin folder holds more than the program: ${extra}")
endif()

# The menu entry starts the installed program and shows the installed icon.
file(STRINGS ${prefix}/${DATADIR}/applications/${APP_ID}.desktop entry)
foreach(line "Exec=Vantry" "Icon=${APP_ID}" "Name=Vantry! Vantry!")
    if(NOT line IN_LIST entry)
        message(FATAL_ERROR "the menu entry lacks ${line}")
    endif()
endforeach()
file(READ ${prefix}/${DATADIR}/metainfo/${APP_ID}.metainfo.xml metainfo)
if(NOT metainfo MATCHES "<launchable type=\"desktop-id\">${APP_ID}.desktop</launchable>"
   OR metainfo MATCHES "@")
    message(FATAL_ERROR "the metainfo doesn't name the menu entry or has an unfilled field")
endif()

# Each PNG is the size its folder names (width and height in the IHDR chunk).
foreach(size 16 32 48 64 128 256)
    file(READ ${prefix}/${DATADIR}/icons/hicolor/${size}x${size}/apps/${APP_ID}.png header
         LIMIT 24 HEX)
    math(EXPR want "${size}" OUTPUT_FORMAT HEXADECIMAL)
    string(SUBSTRING ${header} 32 16 dimensions)
    string(REGEX REPLACE "^0x" "" want ${want})
    string(LENGTH ${want} length)
    math(EXPR pad "8 - ${length}")
    string(REPEAT "0" ${pad} zeros)
    set(want "${zeros}${want}")
    if(NOT dimensions STREQUAL "${want}${want}")
        message(FATAL_ERROR "the ${size} pixel icon is ${dimensions}")
    endif()
endforeach()

find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE)
    execute_process(COMMAND ${DESKTOP_FILE_VALIDATE}
                            ${prefix}/${DATADIR}/applications/${APP_ID}.desktop
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "desktop-file-validate rejects the menu entry")
    endif()
endif()
find_program(APPSTREAMCLI appstreamcli)
if(APPSTREAMCLI)
    execute_process(COMMAND ${APPSTREAMCLI} validate --no-net
                            ${prefix}/${DATADIR}/metainfo/${APP_ID}.metainfo.xml
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "appstreamcli rejects the metainfo")
    endif()
endif()
file(REMOVE_RECURSE ${prefix})
