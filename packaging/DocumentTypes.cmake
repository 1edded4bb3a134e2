# SPDX-License-Identifier: GPL-3.0-or-later
# The one table of the kinds of documents Tolvane opens and its generator previews. From it the
# build writes the type declarations of both Info.plists, the MIME types that Linux does not know
# (tolvane-mime.xml) and the thumbnailer entry. The type tests in Shared/VistrelUtilities keep
# their own identifier lists, which older files and other applications still write; PackagingTest
# checks that every identifier of this table passes one of them.
#
# One row per MIME type:
#   identifier | description | extensions | MIME type | conforms to | MIME parent | icon | magic
#   | further identifiers the generator draws (dynamic and older ones)
# A MIME type whose magic is "system" comes with shared-mime-info and is not declared again;
# otherwise magic names packaging/magic/<name>.xml, or is empty for a type known by name alone.
# Rows of one identifier form one document type, with the extensions of all of them.
set(TOLVANE_DOCUMENT_TYPES
    "com.adobe.illustrator.ai-image|Adobe Illustrator document|ai|application/illustrator|com.adobe.pdf|||system|"
    "com.adobe.illustrator.ait-template|Adobe Illustrator template|ait|application/x-illustrator-template|com.adobe.pdf|application/illustrator|image-x-generic||dyn.ah62d4rv4ge80c4py"
    "com.adobe.indesign-document|Adobe InDesign document|indd|application/x-indesign|public.data||x-office-document|indesign|com.adobe.indesign.indd-document,dyn.ah62d4rv4gk8yw5wequ,dyn.ah62d4rv4ge80w5xequ,dyn.ah62d4rv4ge8xa"
    "com.adobe.indesign-template|Adobe InDesign template|indt|application/x-indesign-template|public.data|application/x-indesign|x-office-document||com.adobe.indesign.indt-template,dyn.ah62d4rv4ge80w5xesu"
    "com.adobe.indesign-interchange|Adobe InDesign interchange document|inx|application/x-indesign-interchange|public.xml|application/xml|x-office-document|interchange|com.adobe.indesign.inx-interchange"
    "com.adobe.indesign-interchange|Adobe InDesign Markup document|idml|application/vnd.adobe.indesign-idml-package|public.xml|application/zip|x-office-document|idml|"
    "com.adobe.encapsulated-postscript|Encapsulated PostScript document|eps,epsf,epsi|image/x-eps|com.adobe.postscript|||system|"
    "com.macromedia.freehand.fh11-image|FreeHand document|fh,fh3,fh4,fh5,fh6,fh7,fh8,fh9,fh10,fh11,ft11|application/x-freehand|public.data||image-x-generic|freehand|"
    "com.adobe.ase-file|Adobe Swatch Exchange file|ase|application/x-adobe-ase|public.data||image-x-generic|ase|dyn.ah62d4rv4ge80c65f"
)

# tolvane_document_type_fields(ROW PREFIX): PREFIX_IDENTIFIER, _DESCRIPTION, _EXTENSIONS (a list),
# _MIME, _CONFORMS, _PARENT, _ICON, _MAGIC, _FURTHER (a list).
function(tolvane_document_type_fields row prefix)
    string(REPLACE "|" ";" fields "${row}")
    set(names IDENTIFIER DESCRIPTION EXTENSIONS MIME CONFORMS PARENT ICON MAGIC FURTHER)
    foreach(index RANGE 8)
        list(GET fields ${index} value)
        list(GET names ${index} name)
        string(REPLACE "," ";" value "${value}")
        set(${prefix}_${name} "${value}" PARENT_SCOPE)
    endforeach()
endfunction()

function(_tolvane_plist_strings out indent)
    set(text "")
    foreach(value IN LISTS ARGN)
        string(APPEND text "${indent}<string>${value}</string>\n")
    endforeach()
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# tolvane_document_type_plists(): TOLVANE_PLIST_DOCUMENT_TYPES (the application's
# CFBundleDocumentTypes entries), TOLVANE_PLIST_IMPORTED_TYPES (UTImportedTypeDeclarations
# entries) and TOLVANE_PLIST_GENERATOR_TYPES (the generator's LSItemContentTypes strings).
function(tolvane_document_type_plists)
    set(identifiers "")
    foreach(row IN LISTS TOLVANE_DOCUMENT_TYPES)
        tolvane_document_type_fields("${row}" T)
        if(NOT T_IDENTIFIER IN_LIST identifiers)
            list(APPEND identifiers "${T_IDENTIFIER}")
            set(description_${T_IDENTIFIER} "${T_DESCRIPTION}")
            set(mime_${T_IDENTIFIER} "${T_MIME}")
            set(conforms_${T_IDENTIFIER} "${T_CONFORMS}")
        endif()
        list(APPEND extensions_${T_IDENTIFIER} ${T_EXTENSIONS})
        list(APPEND further_${T_IDENTIFIER} ${T_FURTHER})
    endforeach()
    set(documents "")
    set(imported "")
    set(generator "")
    foreach(id IN LISTS identifiers)
        _tolvane_plist_strings(extensions "\t\t\t\t" ${extensions_${id}})
        string(APPEND documents "\t\t<dict>\n"
            "\t\t\t<key>CFBundleTypeName</key>\n\t\t\t<string>${description_${id}}</string>\n"
            "\t\t\t<key>CFBundleTypeRole</key>\n\t\t\t<string>Viewer</string>\n"
            "\t\t\t<key>LSHandlerRank</key>\n\t\t\t<string>Alternate</string>\n"
            "\t\t\t<key>NSDocumentClass</key>\n\t\t\t<string>TLDocument</string>\n"
            "\t\t\t<key>CFBundleTypeExtensions</key>\n\t\t\t<array>\n${extensions}\t\t\t</array>\n"
            "\t\t\t<key>LSItemContentTypes</key>\n\t\t\t<array>\n"
            "\t\t\t\t<string>${id}</string>\n\t\t\t</array>\n\t\t</dict>\n")
        _tolvane_plist_strings(extensions "\t\t\t\t\t" ${extensions_${id}})
        string(APPEND imported "\t\t<dict>\n"
            "\t\t\t<key>UTTypeIdentifier</key>\n\t\t\t<string>${id}</string>\n"
            "\t\t\t<key>UTTypeDescription</key>\n\t\t\t<string>${description_${id}}</string>\n"
            "\t\t\t<key>UTTypeConformsTo</key>\n\t\t\t<array>\n"
            "\t\t\t\t<string>${conforms_${id}}</string>\n\t\t\t</array>\n"
            "\t\t\t<key>UTTypeTagSpecification</key>\n\t\t\t<dict>\n"
            "\t\t\t\t<key>public.filename-extension</key>\n\t\t\t\t<array>\n${extensions}"
            "\t\t\t\t</array>\n"
            "\t\t\t\t<key>public.mime-type</key>\n\t\t\t\t<string>${mime_${id}}</string>\n"
            "\t\t\t</dict>\n\t\t</dict>\n")
        _tolvane_plist_strings(types "\t\t\t\t" ${id} ${further_${id}})
        string(APPEND generator "${types}")
    endforeach()
    set(TOLVANE_PLIST_DOCUMENT_TYPES "${documents}" PARENT_SCOPE)
    set(TOLVANE_PLIST_IMPORTED_TYPES "${imported}" PARENT_SCOPE)
    set(TOLVANE_PLIST_GENERATOR_TYPES "${generator}" PARENT_SCOPE)
endfunction()
