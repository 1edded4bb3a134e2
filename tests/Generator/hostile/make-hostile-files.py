#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the hostile documents the generator's tests feed it, so that none of them, small or
huge, lives in the repository. Files of gigabytes are sparse: they take no room on disk.

usage: make-hostile-files.py FOLDER NAME...   (NAME: one of the writers below, without .py)
"""
import struct
import sys
import zipfile
from pathlib import Path


def pdf(page_count, side, fonts_on_every_page=False):
    """A PDF of page_count pages of side × side points sharing one drawing (and one font)."""
    content = b"BT /F1 24 Tf 100 100 Td (Tolvane) Tj ET 0 0 1 rg 0 0 50 50 re f"
    resources = "/Resources << /Font << /F1 4 0 R >> >>" if fonts_on_every_page else ""
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        None,  # the page tree, once the pages are numbered
        b"<< /Length %d >>\nstream\n" % len(content) + content + b"\nendstream",
        b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
    ]
    first_page = len(objects) + 1
    for _ in range(page_count):
        objects.append(("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Contents 3 0 R %s >>"
                        % (side, side, resources)).encode())
    kids = " ".join("%d 0 R" % (first_page + i) for i in range(page_count))
    objects[1] = ("<< /Type /Pages /Count %d /Kids [%s] >>" % (page_count, kids)).encode()
    out = bytearray(b"%PDF-1.4\n")
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n" % number + body + b"\nendobj\n"
    xref = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    out += b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    out += b"trailer\n<< /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, xref)
    return bytes(out)


def huge_pages(folder):
    """Eight pages of a million points a side."""
    (folder / "huge-pages.ai").write_bytes(pdf(8, 1000000))


def many_pages(folder):
    """A hundred thousand pages, each naming its font."""
    (folder / "many-pages.ai").write_bytes(pdf(100000, 612, fonts_on_every_page=True))


def many_links(folder):
    """An IDML package whose spread links two hundred thousand files, each twice."""
    links = "".join('<Link Self="l%d" LinkResourceURI="file:///links/picture-%d.tif"/>\n'
                    % (i, i % 200000) for i in range(400000))
    with zipfile.ZipFile(folder / "many-links.idml", "w") as package:
        package.writestr("mimetype", "application/vnd.adobe.indesign-idml-package",
                         compress_type=zipfile.ZIP_STORED)
        package.writestr("designmap.xml", '<?xml version="1.0"?><Document/>',
                         compress_type=zipfile.ZIP_DEFLATED)
        package.writestr("Spreads/Spread_1.xml",
                         '<?xml version="1.0"?><Spread><Page/>' + links + "</Spread>",
                         compress_type=zipfile.ZIP_DEFLATED)


def many_fonts(folder):
    """An EPS whose comments name a hundred thousand fonts (each twice) and twenty thousand
    custom colours (Ghostscript's own reading of colour comments grows with their square)."""
    fonts, colours = 100000, 20000
    lines = ["%!PS-Adobe-3.0 EPSF-3.0", "%%BoundingBox: 0 0 72 72", "%%DocumentFonts: Font-0"]
    lines += ["%%%%+ Font-%d Font-%d" % (i, i - 1) for i in range(1, fonts)]
    lines.append("%%DocumentCustomColors: (Colour 0)")
    lines += ["%%%%+ (Colour %d)" % i for i in range(1, colours)]
    lines.append("%%CMYKCustomColor: 0 0 0 1 (Colour 0)")
    lines += ["%%%%+ 0 0 %d 0 (Colour %d)" % (i % 2, i) for i in range(1, colours)]
    lines += ["%%EndComments", "0 0 72 72 rectfill", "showpage", "%%EOF", ""]
    (folder / "many-fonts.eps").write_text("\n".join(lines))


def million_swatches(folder):
    """A Swatch Exchange file of a million swatches."""
    count = 1000000
    out = bytearray(b"ASEF" + struct.pack(">HHI", 1, 0, count))
    for i in range(count):
        name = ("Swatch %d" % i).encode("utf-16-be") + b"\0\0"
        body = struct.pack(">H", len(name) // 2) + name + b"RGB " + struct.pack(
            ">fffH", (i % 256) / 255, 0.5, 0.25, 2)
        out += struct.pack(">HI", 1, len(body)) + body
    (folder / "million-swatches.ase").write_bytes(bytes(out))


def sparse(path, head, size, tail=b""):
    with open(path, "wb") as file:
        file.write(head)
        file.truncate(size - len(tail))
        file.seek(size - len(tail))
        file.write(tail)


def huge_eps(folder):
    """An EPS of 2.2 GB, mostly a hole, that carries an EPSI preview (left half black)."""
    head = (b"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 72 36\n%%EndComments\n"
            b"%%BeginPreview: 16 2 1 2\n%FF00\n%FF00\n%%EndPreview\n0 0 72 36 rectfill\n")
    sparse(folder / "huge.eps", head, 2200 * 1000 * 1000, b"\nshowpage\n%%Trailer\n%%EOF\n")


def huge_idml(folder):
    """A ZIP archive of 2.2 GB, mostly a hole, named as an IDML package."""
    sparse(folder / "huge.idml", b"PK\x03\x04", 2200 * 1000 * 1000)


if __name__ == "__main__":
    target = Path(sys.argv[1])
    target.mkdir(parents=True, exist_ok=True)
    for writer in sys.argv[2:]:
        globals()[writer.replace("-", "_")](target)
