#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the derived test files in samples/ from the original sample files.

Run as: make-derived.py FOLDER-WITH-THE-ORIGINAL-SAMPLES
The Illustrator files are cut to their first 64 KiB (all that the kind sniffer reads, and
enough to hold their XMP packet); the IDML package's XMP is taken out of the ZIP.
"""
import pathlib
import sys
import zipfile

HEAD_SIZE = 64 * 1024


def main():
    source = pathlib.Path(sys.argv[1])
    target = pathlib.Path(__file__).resolve().parent / "samples"
    for name, derived in [
        ("illustrator-normal.ai", "illustrator-normal.head.ai"),
        ("illustrator-without-pdf-content.ai", "illustrator-without-pdf-content.head.ai"),
        ("illustrator-saved-as.pdf", "illustrator-saved-as.head.pdf"),
    ]:
        (target / derived).write_bytes((source / name).read_bytes()[:HEAD_SIZE])
    with zipfile.ZipFile(source / "idml-4-pages-layers.idml") as package:
        (target / "idml-4-pages-layers.metadata.xml").write_bytes(package.read("META-INF/metadata.xml"))


if __name__ == "__main__":
    main()
