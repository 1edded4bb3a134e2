# SPDX-License-Identifier: GPL-3.0-or-later
# Packs BUNDLE (Tolvane.app) into OUTPUT/Tolvane-VERSION.tar.xz, signs it with PRIVATE_KEY through
# TOOL (tolvane-release) and writes the feed item for it to OUTPUT/appcast-item.xml.
if(NOT PRIVATE_KEY OR NOT EXISTS "${PRIVATE_KEY}")
    message(FATAL_ERROR "release-archive needs the release's private key: configure with "
        "-DTOLVANE_RELEASE_PRIVATE_KEY=/path/to/key (made by tolvane-release generate-keys)")
endif()

get_filename_component(bundle_folder "${BUNDLE}" DIRECTORY)
get_filename_component(bundle_name "${BUNDLE}" NAME)
set(archive_name "Tolvane-${VERSION}.tar.xz")
set(archive "${OUTPUT}/${archive_name}")
file(MAKE_DIRECTORY "${OUTPUT}")
file(REMOVE "${archive}")
execute_process(COMMAND "${CMAKE_COMMAND}" -E tar cJf "${archive}" "${bundle_name}"
    WORKING_DIRECTORY "${bundle_folder}" COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND "${TOOL}" sign --private-key "${PRIVATE_KEY}" "${archive}"
    OUTPUT_VARIABLE enclosure_attributes OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)

string(TIMESTAMP publication_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${OUTPUT}/appcast-item.xml" "    <item>
      <title>Version ${VERSION}</title>
      <pubDate>${publication_date}</pubDate>
      <sparkle:version>${BUILD_NUMBER}</sparkle:version>
      <sparkle:shortVersionString>${VERSION}</sparkle:shortVersionString>
      <sparkle:minimumSystemVersion>3.10.0</sparkle:minimumSystemVersion>
      <enclosure url=\"${DOWNLOAD_URL}${archive_name}\" type=\"application/x-xz\"
                 ${enclosure_attributes}/>
    </item>
")
message(STATUS "Release archive: ${archive}")
message(STATUS "Feed item: ${OUTPUT}/appcast-item.xml")
