// SPDX-License-Identifier: GPL-3.0-or-later
// Sample files: tests/data/formats/samples (see tests/data/README.md for their origins).
#include "XmpMetadata.h"

#include "FormatsTestData.h"

using namespace Formats;

namespace {

QByteArray packet(const QByteArray& descriptions)
{
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        + descriptions + "</rdf:RDF></x:xmpmeta>\n<?xpacket end=\"w\"?>";
}

XmpMetadata parsedPacket(const QByteArray& bytes)
{
    const auto result = parseXmpPacket(bytes);
    EXPECT_TRUE(result.ok()) << result.reason().toStdString();
    return result.ok() ? result.value() : XmpMetadata();
}

const QByteArray SwatchGroups = R"(
<rdf:Description rdf:about="" xmlns:t="http://ns.adobe.com/xap/1.0/t/pg/" xmlns:g="http://ns.adobe.com/xap/1.0/g/">
 <t:SwatchGroups><rdf:Seq>
  <rdf:li rdf:parseType="Resource">
   <g:groupName>Brand</g:groupName><g:groupType>1</g:groupType>
   <g:Colorants><rdf:Seq>
    <rdf:li rdf:parseType="Resource"><g:swatchName>Ink</g:swatchName><g:mode>CMYK</g:mode><g:type>SPOT</g:type>
     <g:tint>100</g:tint><g:cyan>100</g:cyan><g:magenta>72.5</g:magenta><g:yellow>0</g:yellow><g:black>18</g:black></rdf:li>
    <rdf:li><rdf:Description g:swatchName="Screen" g:mode="RGB" g:type="PROCESS" g:red="255" g:green="128" g:blue="0"/></rdf:li>
    <rdf:li rdf:parseType="Resource"><g:swatchName>Lab</g:swatchName><g:mode>LAB</g:mode><g:type>PROCESS</g:type>
     <g:L>50</g:L><g:A>-20.5</g:A><g:B>30</g:B></rdf:li>
    <rdf:li rdf:parseType="Resource"><g:swatchName>Grey</g:swatchName><g:mode>GRAY</g:mode><g:type>PROCESS</g:type>
     <g:gray>40</g:gray></rdf:li>
   </rdf:Seq></g:Colorants>
  </rdf:li>
  <rdf:li rdf:parseType="Resource"><g:groupName>Empty</g:groupName><g:groupType>0</g:groupType></rdf:li>
 </rdf:Seq></t:SwatchGroups>
</rdf:Description>)";

}

TEST(XmpMetadata, readsSwatchGroupsWithEveryColourModel)
{
    const XmpMetadata metadata = parsedPacket(packet(SwatchGroups));
    ASSERT_EQ(metadata.swatchGroups.size(), 2u);
    const XmpSwatchGroup& brand = metadata.swatchGroups[0];
    EXPECT_EQ(brand.name, QStringLiteral("Brand"));
    EXPECT_EQ(brand.groupType, 1);
    ASSERT_EQ(brand.swatches.size(), 4u);
    EXPECT_EQ(brand.swatches[0].name, QStringLiteral("Ink"));
    EXPECT_EQ(brand.swatches[0].type, QStringLiteral("SPOT"));
    EXPECT_EQ(brand.swatches[0].component(u"magenta"), 72.5);
    EXPECT_EQ(brand.swatches[0].component(u"tint"), 100);
    EXPECT_EQ(brand.swatches[0].components.size(), 5u);
    // The same structure written as attributes of a nested description.
    EXPECT_EQ(brand.swatches[1].name, QStringLiteral("Screen"));
    EXPECT_EQ(brand.swatches[1].mode, QStringLiteral("RGB"));
    EXPECT_EQ(brand.swatches[1].component(u"green"), 128);
    EXPECT_EQ(brand.swatches[2].component(u"A"), -20.5);
    EXPECT_EQ(brand.swatches[3].component(u"gray"), 40);
    EXPECT_FALSE(brand.swatches[3].component(u"black").has_value());
    EXPECT_EQ(metadata.swatchGroups[1].name, QStringLiteral("Empty"));
    EXPECT_TRUE(metadata.swatchGroups[1].swatches.empty());
}

// Names are namespace URIs: an unusual prefix reads the same, a familiar prefix bound to another
// URI is not ours.
TEST(XmpMetadata, resolvesNamespacesByUri)
{
    const XmpMetadata metadata = parsedPacket(packet(R"(
<rdf:Description rdf:about="" xmlns:zz="http://ns.adobe.com/xap/1.0/" xmlns:xmpTPg="http://example.com/not-pages/"
  xmlns:pg="http://ns.adobe.com/xap/1.0/t/pg/" zz:CreatorTool="Odd Prefix 1.0" xmpTPg:NPages="99" pg:NPages="3"/>
<rdf:Description rdf:about="" xmlns:xmpTPg="http://example.com/not-pages/" xmlns:stFnt="http://ns.adobe.com/xap/1.0/sType/Font#">
 <xmpTPg:Fonts><rdf:Bag><rdf:li rdf:parseType="Resource"><stFnt:fontName>Wrong</stFnt:fontName></rdf:li></rdf:Bag></xmpTPg:Fonts>
</rdf:Description>)"));
    EXPECT_EQ(metadata.creatorTool, QStringLiteral("Odd Prefix 1.0"));
    EXPECT_EQ(metadata.pageCount, 3);
    EXPECT_TRUE(metadata.fonts.empty());
}

TEST(XmpMetadata, readsFontsLinksAndThumbnails)
{
    const QByteArray jpeg("\xFF\xD8\xFF\xE0 not really a picture \xFF\xD9", 27);
    const XmpMetadata metadata = parsedPacket(packet(R"(
<rdf:Description rdf:about="" xmlns:xmpTPg="http://ns.adobe.com/xap/1.0/t/pg/" xmlns:stFnt="http://ns.adobe.com/xap/1.0/sType/Font#"
  xmlns:xmpMM="http://ns.adobe.com/xap/1.0/mm/" xmlns:stRef="http://ns.adobe.com/xap/1.0/sType/ResourceRef#"
  xmlns:stMfs="http://ns.adobe.com/xap/1.0/sType/ManifestItem#" xmlns:xmp="http://ns.adobe.com/xap/1.0/"
  xmlns:xmpGImg="http://ns.adobe.com/xap/1.0/g/img/">
 <xmpTPg:Fonts><rdf:Bag><rdf:li rdf:parseType="Resource">
  <stFnt:fontName>MyriadPro-Regular</stFnt:fontName><stFnt:fontFamily>Myriad Pro</stFnt:fontFamily>
  <stFnt:fontFace>Regular</stFnt:fontFace><stFnt:fontType>Open Type</stFnt:fontType>
  <stFnt:versionString>Version 2.106</stFnt:versionString><stFnt:composite>False</stFnt:composite>
  <stFnt:fontFileName>MyriadPro-Regular.otf</stFnt:fontFileName></rdf:li></rdf:Bag></xmpTPg:Fonts>
 <xmpMM:Manifest><rdf:Seq><rdf:li rdf:parseType="Resource"><stMfs:linkForm>ReferenceStream</stMfs:linkForm>
  <stMfs:reference rdf:parseType="Resource"><stRef:filePath>/Users/a/Links/photo.psd</stRef:filePath>
  <stRef:documentID>xmp.did:1</stRef:documentID><stRef:instanceID>xmp.iid:2</stRef:instanceID></stMfs:reference>
 </rdf:li></rdf:Seq></xmpMM:Manifest>
 <xmp:Thumbnails><rdf:Alt><rdf:li rdf:parseType="Resource"><xmpGImg:width>256</xmpGImg:width>
  <xmpGImg:height>128</xmpGImg:height><xmpGImg:format>JPEG</xmpGImg:format>
  <xmpGImg:image>)"
        + jpeg.first(12).toBase64() + "&#xA;" + jpeg.sliced(12).toBase64()
        + R"(</xmpGImg:image></rdf:li></rdf:Alt></xmp:Thumbnails>
 <xmp:PageInfo><rdf:Seq><rdf:li rdf:parseType="Resource"><xmpTPg:PageNumber>2</xmpTPg:PageNumber>
  <xmpGImg:width>64</xmpGImg:width><xmpGImg:height>32</xmpGImg:height><xmpGImg:format>JPEG</xmpGImg:format>
  <xmpGImg:image>AAEC</xmpGImg:image></rdf:li></rdf:Seq></xmp:PageInfo>
</rdf:Description>)"));
    ASSERT_EQ(metadata.fonts.size(), 1u);
    const XmpFont& font = metadata.fonts[0];
    EXPECT_EQ(QStringList({ font.fontName, font.fontFamily, font.fontFace, font.fontType,
                  font.fontFileName }),
        QStringList({ "MyriadPro-Regular", "Myriad Pro", "Regular", "Open Type",
            "MyriadPro-Regular.otf" }));
    EXPECT_FALSE(font.composite);
    ASSERT_EQ(metadata.links.size(), 1u);
    EXPECT_EQ(metadata.links[0].filePath, QStringLiteral("/Users/a/Links/photo.psd"));
    EXPECT_EQ(metadata.links[0].linkForm, QStringLiteral("ReferenceStream"));
    EXPECT_EQ(metadata.links[0].documentId, QStringLiteral("xmp.did:1"));
    ASSERT_EQ(metadata.thumbnails.size(), 2u);
    EXPECT_EQ(metadata.thumbnails[0].pageNumber, 0);
    EXPECT_EQ(metadata.thumbnails[0].width, 256);
    EXPECT_EQ(metadata.thumbnails[0].height, 128);
    EXPECT_EQ(metadata.thumbnails[0].image, jpeg);
    EXPECT_EQ(metadata.thumbnails[1].pageNumber, 2);
    EXPECT_EQ(metadata.thumbnails[1].image, QByteArray("\x00\x01\x02", 3));
}

TEST(XmpMetadata, aPacketThatDoesNotParseIsDamaged)
{
    const auto result = parseXmpPacket(packet("<rdf:Description><unclosed>"));
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error(), FormatError::DamagedFile);
}

TEST(XmpMetadataSamples, illustratorEpsHasSwatchGroupsAndAThumbnail)
{
    // A DOS binary EPS with CR line endings: exempi's EPS handler finds the packet.
    const auto result = readXmpOfFile(
        TestEnvironment::dataPath(QStringLiteral("formats/samples/illustrator24.eps")));
    ASSERT_TRUE(result.ok()) << result.reason().toStdString();
    const XmpMetadata& metadata = *result;
    EXPECT_EQ(metadata.creatorTool, QStringLiteral("Adobe Illustrator 24.1 (Macintosh)"));
    EXPECT_EQ(metadata.pageCount, 1);
    ASSERT_FALSE(metadata.swatchGroups.empty());
    EXPECT_EQ(metadata.swatchGroups[0].name, QStringLiteral("Default Swatch Group"));
    const auto& swatches = metadata.swatchGroups[0].swatches;
    const auto red = std::find_if(swatches.begin(), swatches.end(),
        [](const XmpSwatch& swatch) { return swatch.name == u"R=193 G=39 B=45"; });
    ASSERT_NE(red, swatches.end());
    EXPECT_EQ(red->component(u"red"), 193);
    EXPECT_EQ(red->component(u"green"), 39);
    EXPECT_EQ(red->type, QStringLiteral("PROCESS"));
    ASSERT_EQ(metadata.thumbnails.size(), 1u);
    EXPECT_EQ(metadata.thumbnails[0].width, 256);
    EXPECT_TRUE(metadata.thumbnails[0].image.startsWith("\xFF\xD8\xFF"));
}

TEST(XmpMetadataSamples, aFileWithoutPacketIsNotThisKind)
{
    const auto result = readXmpOfFile(
        TestEnvironment::dataPath(QStringLiteral("formats/samples/illustrator88.eps")));
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error(), FormatError::NotThisKind);
}
