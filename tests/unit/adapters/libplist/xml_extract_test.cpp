// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/libplist/xml_extract.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace pallimo::adapters::libplist {
namespace {

const std::string kRefused = "(refused)";

std::string extracted(std::string_view bytes) {
  std::string scratch;
  const std::optional<std::string_view> document = extractXML(bytes, scratch);
  return document ? std::string(*document) : kRefused;
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

std::string nested(std::size_t levels) {
  return repeated("<array>", levels) + repeated("</array>", levels);
}

TEST(XMLExtract, TakesTheDocumentFromItsFirstTagToItsLast) {
  EXPECT_EQ(extracted("<plist><dict/></plist>"), "<plist><dict/></plist>");
  EXPECT_EQ(extracted("<dict><key>a</key><true/></dict>"), "<dict><key>a</key><true/></dict>");
  EXPECT_EQ(extracted("<dict/>"), "<dict/>");
}

TEST(XMLExtract, CopiesNothingOfAPlainDocument) {
  const std::string bytes = "<?xml version=\"1.0\"?>\n<plist><dict/></plist>\n";
  std::string scratch;
  const auto document = extractXML(bytes, scratch);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->data(), bytes.data() + 22);
}

TEST(XMLExtract, CutsOffWhatPrecedesTheFirstTag) {
  EXPECT_EQ(extracted("\xEF\xBB\xBF \r\n\t<dict/>"), "<dict/>");
  EXPECT_EQ(extracted("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<dict/>"),
            "<dict/>");
  EXPECT_EQ(extracted("<!-- <array> --><?a <array> ?><!-- --><dict/>"), "<dict/>");
}

TEST(XMLExtract, CutsOffADoctypeWithAllThatMayStandInIt) {
  EXPECT_EQ(extracted("<!DOCTYPE p [ <!ENTITY a \"]><array>\"> ]><dict/>"), "<dict/>");
  EXPECT_EQ(extracted("<!DOCTYPE p [ <!ENTITY a ']><array>'> ]><dict/>"), "<dict/>");
  EXPECT_EQ(extracted("<!DOCTYPE p [ <!-- don't ]> --> <?a don't ]> ?> ] ><dict/>"), "<dict/>");
  EXPECT_EQ(extracted("<!DOCTYPE p SYSTEM \"a>b\"><dict/>"), "<dict/>");
}

TEST(XMLExtract, CutsOffWhatFollowsTheLastTag) {
  EXPECT_EQ(extracted("<dict/>\n"), "<dict/>");
  EXPECT_EQ(extracted(std::string_view("<dict/>\n\0", 9)), "<dict/>");
  EXPECT_EQ(extracted("<dict></dict></dict>"), "<dict></dict>");
  EXPECT_EQ(extracted("<dict/>junk <"), "<dict/>");
  EXPECT_EQ(extracted("<plist><dict/></plist><plist><array/></plist>"), "<plist><dict/></plist>");
}

TEST(XMLExtract, TakesOutCommentsAndProcessingInstructions) {
  EXPECT_EQ(extracted("<array><!-- <array> --><true/></array>"), "<array><true/></array>");
  EXPECT_EQ(extracted("<array><?a <array> ?><true/></array>"), "<array><true/></array>");
  EXPECT_EQ(extracted("<string>a<!-- <x> -->b<?c d?></string>"), "<string>ab</string>");
}

TEST(XMLExtract, EndsACommentWhereXMLDoes) {
  EXPECT_EQ(extracted("<array><!--> <array> --></array>"), "<array></array>");
  EXPECT_EQ(extracted("<array><!---> <array> --></array>"), "<array></array>");
  EXPECT_EQ(extracted("<array><!-- \" --><true/><!-- \" --></array>"), "<array><true/></array>");
  EXPECT_EQ(extracted("<array><?> <array> ?></array>"), "<array></array>");
}

TEST(XMLExtract, TurnsCDATAIntoEscapedText) {
  EXPECT_EQ(extracted("<string>a<![CDATA[<b> & ]] > \"]]>c</string>"),
            "<string>a&lt;b> &amp; ]] > \"c</string>");
  EXPECT_EQ(extracted("<string><![CDATA[]]></string>"), "<string></string>");
}

TEST(XMLExtract, MakesTwoTagsOfAKeyInOne) {
  EXPECT_EQ(extracted("<dict><key/><true/></dict>"), "<dict><key></key><true/></dict>");
  EXPECT_EQ(extracted("<dict><key /><true/><key a=\"b\"/><string/></dict>"),
            "<dict><key></key><true/><key></key><string/></dict>");
}

TEST(XMLExtract, RefusesCDATAOutsideAText) {
  EXPECT_EQ(extracted("<array><![CDATA[<true/>]]></array>"), kRefused);
  EXPECT_EQ(extracted("<![CDATA[<true/>]]>"), kRefused);
}

TEST(XMLExtract, RefusesADocumentThatIsNotWhole) {
  const std::string_view whole =
      "<?xml version=\"1.0\"?><!DOCTYPE plist [ ]><!-- a --><plist "
      "version=\"1.0\"><dict><key>a</key>"
      "<string>b<!-- c --><![CDATA[d]]></string></dict></plist>";
  ASSERT_NE(extracted(whole), kRefused);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(extracted(whole.substr(0, length)), kRefused) << length;
  }
}

TEST(XMLExtract, RefusesWhatDoesNotBeginWithATag) {
  EXPECT_EQ(extracted("hello <dict/>"), kRefused);
  EXPECT_EQ(extracted("{a=b;}"), kRefused);
  EXPECT_EQ(extracted("</dict>"), kRefused);
}

TEST(XMLExtract, RefusesANULBeforeTheEnd) {
  EXPECT_EQ(extracted(std::string_view("\0<dict/>", 8)), kRefused);
  EXPECT_EQ(extracted(std::string_view("<string>a\0b</string>", 20)), kRefused);
}

TEST(XMLExtract, RefusesTagsThatDoNotMatch) {
  EXPECT_EQ(extracted("<array></dict></array>"), kRefused);
  EXPECT_EQ(extracted("<plist><array></plist></array></plist>"), kRefused);
  EXPECT_EQ(extracted("<array><string></array></string></array>"), kRefused);
}

TEST(XMLExtract, RefusesElementsInsideText) {
  EXPECT_EQ(extracted("<string><array></array></string>"), kRefused);
  EXPECT_EQ(extracted("<bogus><array></array></bogus>"), kRefused);
}

TEST(XMLExtract, RefusesAPlistInsideADocument) {
  EXPECT_EQ(extracted("<plist><plist><array/></plist></plist>"), kRefused);
  EXPECT_EQ(extracted("<array><plist></plist></array>"), kRefused);
}

TEST(XMLExtract, RefusesASecondValueInAPlist) {
  EXPECT_EQ(extracted("<plist><true/><false/></plist>"), kRefused);
  EXPECT_EQ(extracted("<plist><array></array><string></string></plist>"), kRefused);
}

TEST(XMLExtract, RefusesATagWhoseEndCouldBeArguedAbout) {
  EXPECT_EQ(extracted("<array a=\"/>\"></array>"), kRefused);
  EXPECT_EQ(extracted("<array a='/>'></array>"), kRefused);
  EXPECT_EQ(extracted("<array a='\"'></array>"), kRefused);
  EXPECT_EQ(extracted("<array a=\"<\"></array>"), kRefused);
  EXPECT_EQ(extracted("<array <true/>></array>"), kRefused);
  EXPECT_EQ(extracted("< array></array>"), kRefused);
  EXPECT_EQ(extracted("<array></ array>"), kRefused);
  EXPECT_EQ(extracted("<array></array/>"), kRefused);
  EXPECT_EQ(extracted("<array><></></array>"), kRefused);
}

TEST(XMLExtract, RefusesOtherDeclarationsInsideADocument) {
  EXPECT_EQ(extracted("<array><!DOCTYPE a></array>"), kRefused);
  EXPECT_EQ(extracted("<array><!ENTITY a></array>"), kRefused);
  EXPECT_EQ(extracted("<array><!></array>"), kRefused);
}

TEST(XMLExtract, LetsAttributesAndSpacesInTagsPass) {
  for (const std::string document :
       {"<plist version=\"1.0\"><dict/></plist>", "<plist version='1.0'><dict /></plist >",
        "<array\n>\n</array\t>", "<dict a=\"1\" b='2'/>"}) {
    EXPECT_EQ(extracted(document), document);
  }
}

TEST(XMLExtract, RefusesATextOfEntitiesAloneWhereTheyAreTooMany) {
  EXPECT_NE(extracted("<string>" + repeated("&amp;", 5'000) + "</string>"), kRefused);
  EXPECT_EQ(extracted("<string>" + repeated("&amp;", 20'000) + "</string>"), kRefused);
}

TEST(XMLExtract, CountsTheEntitiesThatCDATABecomes) {
  EXPECT_NE(extracted("<string><![CDATA[" + repeated("&", 5'000) + "]]></string>"), kRefused);
  EXPECT_EQ(extracted("<string><![CDATA[" + repeated("&", 20'000) + "]]></string>"), kRefused);
  EXPECT_EQ(extracted("<string><![CDATA[" + repeated("<", 20'000) + "]]></string>"), kRefused);
}

TEST(XMLExtract, CountsNoEntitiesWhereThereAreNone) {
  EXPECT_EQ(extracted("<array><!--" + repeated("&amp;", 20'000) + "--></array>"),
            "<array></array>");
  EXPECT_EQ(extracted("<dict/>" + repeated("&amp;", 20'000)), "<dict/>");
}

TEST(XMLExtract, LetsNineHundredNinetyNineLevelsPassAndRefusesOneMore) {
  EXPECT_EQ(extracted(nested(999)), nested(999));
  EXPECT_EQ(extracted(nested(1'000)), kRefused);
  EXPECT_NE(extracted(repeated("<array>", 998) + "<dict/>" + repeated("</array>", 998)), kRefused);
  EXPECT_EQ(extracted(repeated("<array>", 999) + "<dict/>" + repeated("</array>", 999)), kRefused);
}

TEST(XMLExtract, CountsContainersAloneAsLevels) {
  const std::string text = repeated("<array>", 999) + "<string>a</string><true/>";
  EXPECT_NE(extracted("<plist>" + text + repeated("</array>", 999) + "</plist>"), kRefused);
}

TEST(XMLExtract, CountsLevelsNotNeighbours) {
  EXPECT_NE(extracted("<array>" + repeated("<array></array><dict/>", 2'000) + "</array>"),
            kRefused);
}

TEST(XMLExtract, CountsNoLevelWhereThereIsNone) {
  const std::string hidden = repeated("<array>", 2'000);
  EXPECT_EQ(extracted("<array><!--" + hidden + "--></array>"), "<array></array>");
  EXPECT_EQ(extracted("<array><?" + hidden + "?></array>"), "<array></array>");
  EXPECT_NE(extracted("<string><![CDATA[" + hidden + "]]></string>"), kRefused);
}

TEST(XMLExtract, IsNotFooledByEndTagsThatAreNone) {
  for (const std::string_view ends :
       {"<!-- </array> -->", "<?a </array> ?>", "<string><![CDATA[</array>]]></string>"}) {
    const std::string document = repeated("<array>" + std::string(ends), 1'000);
    EXPECT_EQ(extracted(document + repeated("</array>", 1'000)), kRefused) << ends;
  }
}

}  // namespace
}  // namespace pallimo::adapters::libplist
