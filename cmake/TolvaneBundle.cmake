# SPDX-License-Identifier: GPL-3.0-or-later
# Helpers that lay out directory bundles (Name.app/Contents/{Info.plist,Linux,Resources}).

# tolvane_bundle_info_plist(BUNDLE_DIR TEMPLATE): writes BUNDLE_DIR/Contents/Info.plist from
# TEMPLATE, substituting @VARIABLES@ of the calling scope.
function(tolvane_bundle_info_plist bundle_dir template)
    configure_file("${template}" "${bundle_dir}/Contents/Info.plist" @ONLY)
endfunction()

# tolvane_place_in_bundle(TARGET BUNDLE_DIR): builds TARGET's executable into the bundle.
function(tolvane_place_in_bundle target bundle_dir)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${bundle_dir}/Contents/Linux")
endfunction()
