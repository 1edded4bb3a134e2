#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes small "Illustrator-like" PDFs for the generator's tests and benchmark: N pages, each a
coloured rectangle with its number, and a catalog XMP packet as Illustrator writes one (creator
tool, page count, fonts, swatch groups, a manifest of linked files).

    make-illustrator-like.py OUT.ai PAGES [--names-in-their-script]

With --names-in-their-script the swatch group, swatches, a font and a link are named in German
and Japanese, as Illustrator writes them into the XMP: UTF-8.
"""
import sys
import zlib

FONTS = [  # PostScript name, family, face, type, file
    ("NimbusSans-Regular", "Nimbus Sans", "Regular", "Open Type", "NimbusSans-Regular.otf"),
    ("TolvaneMissing-Bold", "Tolvane Missing", "Bold", "Open Type", "TolvaneMissing-Bold.otf"),
]
SWATCHES = [  # name, mode, type, components
    ("White", "CMYK", "PROCESS", [("cyan", 0), ("magenta", 0), ("yellow", 0), ("black", 0)]),
    ("Warm Red & <Co>", "CMYK", "PROCESS", [("cyan", 0), ("magenta", 90), ("yellow", 85), ("black", 0)]),
    ("Sky", "RGB", "PROCESS", [("red", 40), ("green", 150), ("blue", 255)]),
    ("Gold Spot", "CMYK", "SPOT", [("cyan", 0), ("magenta", 20), ("yellow", 60), ("black", 20)]),
]
LINKS = ["links/photo one.png", "/nonexistent/missing image.tif"]
GROUP = "Default Swatch Group"

SCRIPT_FONTS = [("KozMinPr6N-Regular", "小塚明朝 Pr6N", "R", "Open Type", "KozMinPr6N-Regular.otf")]
SCRIPT_SWATCHES = [
    ("Weiß", "CMYK", "PROCESS", [("cyan", 0), ("magenta", 0), ("yellow", 0), ("black", 0)]),
    ("défaut", "RGB", "PROCESS", [("red", 10), ("green", 20), ("blue", 30)]),
    ("赤", "CMYK", "SPOT", [("cyan", 0), ("magenta", 100), ("yellow", 100), ("black", 0)]),
]
SCRIPT_LINKS = ["/Aufträge/Verknüpfungen/Bild ä.tif"]
SCRIPT_GROUP = "Standard-Farbfeldgruppe 見本"


def xmp(pages):
    fonts = "".join(
        f"""<rdf:li rdf:parseType="Resource"><stFnt:fontName>{n}</stFnt:fontName>
<stFnt:fontFamily>{fam}</stFnt:fontFamily><stFnt:fontFace>{face}</stFnt:fontFace>
<stFnt:fontType>{kind}</stFnt:fontType><stFnt:fontFileName>{file}</stFnt:fontFileName>
</rdf:li>"""
        for n, fam, face, kind, file in FONTS)
    swatches = "".join(
        f"""<rdf:li rdf:parseType="Resource"><xmpG:swatchName>{name.replace('&', '&amp;').replace('<', '&lt;')}</xmpG:swatchName>
<xmpG:mode>{mode}</xmpG:mode><xmpG:type>{kind}</xmpG:type>"""
        + "".join(f"<xmpG:{c}>{v:.6f}</xmpG:{c}>" for c, v in comps) + "</rdf:li>"
        for name, mode, kind, comps in SWATCHES)
    links = "".join(
        f"""<rdf:li rdf:parseType="Resource"><stMfs:linkForm>ReferenceStream</stMfs:linkForm>
<stMfs:reference rdf:parseType="Resource"><stRef:filePath>{path}</stRef:filePath></stMfs:reference></rdf:li>"""
        for path in LINKS)
    return f"""<?xpacket begin="\ufeff" id="W5M0MpCehiHzreSzNTczkc9d"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
<rdf:Description rdf:about="" xmlns:xmp="http://ns.adobe.com/xap/1.0/"
 xmlns:xmpTPg="http://ns.adobe.com/xap/1.0/t/pg/" xmlns:stDim="http://ns.adobe.com/xap/1.0/sType/Dimensions#"
 xmlns:stFnt="http://ns.adobe.com/xap/1.0/sType/Font#" xmlns:xmpG="http://ns.adobe.com/xap/1.0/g/"
 xmlns:xmpMM="http://ns.adobe.com/xap/1.0/mm/" xmlns:stMfs="http://ns.adobe.com/xap/1.0/sType/ManifestItem#"
 xmlns:stRef="http://ns.adobe.com/xap/1.0/sType/ResourceRef#">
<xmp:CreatorTool>Adobe Illustrator 24.0 (Tolvane test file)</xmp:CreatorTool>
<xmpTPg:NPages>{pages}</xmpTPg:NPages>
<xmpTPg:Fonts><rdf:Bag>{fonts}</rdf:Bag></xmpTPg:Fonts>
<xmpTPg:SwatchGroups><rdf:Seq><rdf:li rdf:parseType="Resource">
<xmpG:groupName>{GROUP}</xmpG:groupName><xmpG:groupType>0</xmpG:groupType>
<xmpG:Colorants><rdf:Seq>{swatches}</rdf:Seq></xmpG:Colorants></rdf:li></rdf:Seq></xmpTPg:SwatchGroups>
<xmpMM:Manifest><rdf:Seq>{links}</rdf:Seq></xmpMM:Manifest>
</rdf:Description>
</rdf:RDF>
</x:xmpmeta>
<?xpacket end="w"?>""".encode("utf-8")


def pdf(pages):
    objects = []  # bodies, object n is objects[n - 1]

    def add(body):
        objects.append(body)
        return len(objects)

    metadata = xmp(pages)
    meta = add(b"<< /Type /Metadata /Subtype /XML /Length %d >>\nstream\n" % len(metadata)
               + metadata + b"\nendstream")
    font = add(b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
    pages_id = len(objects) + 2 * pages + 1
    kids = []
    for n in range(1, pages + 1):
        r, g, b = (n * 37 % 100) / 100, (n * 61 % 100) / 100, (n * 83 % 100) / 100
        content = zlib.compress(
            (f"{r:.2f} {g:.2f} {b:.2f} rg 36 36 540 720 re f\n"
             f"0 0 0 rg BT /F1 72 Tf 200 380 Td (Page {n}) Tj ET\n").encode())
        stream = add(b"<< /Length %d /Filter /FlateDecode >>\nstream\n" % len(content) + content
                     + b"\nendstream")
        kids.append(add(b"<< /Type /Page /Parent %d 0 R /MediaBox [0 0 612 792] "
                        b"/Resources << /Font << /F1 %d 0 R >> >> /Contents %d 0 R >>"
                        % (pages_id, font, stream)))
    assert add(b"<< /Type /Pages /Kids [%s] /Count %d >>"
               % (b" ".join(b"%d 0 R" % k for k in kids), pages)) == pages_id
    catalog = add(b"<< /Type /Catalog /Pages %d 0 R /Metadata %d 0 R >>" % (pages_id, meta))

    out = bytearray(b"%PDF-1.5\n%\xe2\xe3\xcf\xd3\n")
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n" % number + body + b"\nendobj\n"
    xref = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    out += b"".join(b"%010d 00000 n \n" % o for o in offsets)
    out += b"trailer\n<< /Size %d /Root %d 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (
        len(objects) + 1, catalog, xref)
    return bytes(out)


if __name__ == "__main__":
    if len(sys.argv) == 4 and sys.argv[3] == "--names-in-their-script":
        FONTS, SWATCHES, LINKS, GROUP = SCRIPT_FONTS, SCRIPT_SWATCHES, SCRIPT_LINKS, SCRIPT_GROUP
    elif len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], "wb") as f:
        f.write(pdf(int(sys.argv[2])))
