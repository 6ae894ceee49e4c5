#include "SimpleXMLValueLookup.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include "NQ_EException.h"
#include "NQ_TURL.h"
#include "PlainXMLLookup.h"
#include "Support.h"

using names_test::Repeated;
using names_test::S;
using names_test::Text;
using xmlvalues::LoadXMLDocument;
using xmlvalues::TDocument;

namespace {

const std::string kFault = "NQ_EException: The XML file 'FILE' is not well-formed: error at ";

class SimpleXMLValueLookup : public testing::Test {
 protected:
  SimpleXMLValueLookup() { std::filesystem::create_directories(folder_); }
  ~SimpleXMLValueLookup() override { std::filesystem::remove_all(folder_); }

  std::string Write(const std::string& content, const std::string& name = "a.xml") const {
    std::ofstream(folder_ + name, std::ios::binary) << content;
    return folder_ + name;
  }

  /// "loaded", or class and message of the error, with FILE for the file's name.
  static std::string Loaded(const std::string& path, const TNameLimits& limits = {}) {
    try {
      const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + path)), limits));
      return "loaded";
    } catch (const NQ_EException& error) {
      EXPECT_TRUE(Text(error.NQ_ExceptionFile()).starts_with("VexoNames/Private/Source/SimpleXMLValueLookup"));
      std::string text = std::string(error.ClassName()) + ": " + Text(error.NQ_Message());
      if (const auto at = text.find(path); at != text.npos) text.replace(at, path.size(), "FILE");
      return text;
    }
  }

  const xmlvalues::TXMLPlatform platform_;
  const std::string folder_ = testing::TempDir() + "SimpleXMLValueLookup" + std::to_string(getpid()) + "/";
};

// "\n" and "\xHH" as what they stand for.
std::string Unescaped(std::string_view text) {
  std::string all;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    if (escape && text[i + 1] == 'n')
      all += '\n', ++i;
    else if (escape && text[i + 1] == 'x')
      all += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16)), i += 3;
    else
      all += text[i];
  }
  return all;
}

struct Case : SimpleXMLValueLookup {
  void TestBody() override {}
  void Check(const std::string& file, const std::string& key, const std::string& expected) const {
    const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + Write(Unescaped(file))))));
    NQ_TString value("left over");
    const bool found = xmlvalues::LookupXMLValue(document->getDocumentElement(), S(key), value);
    EXPECT_EQ(found ? Text(value) : "(none)" + Text(value), Unescaped(expected));
  }
  void CheckFault(const std::string& file, const std::string& fault) const {
    EXPECT_THAT(Loaded(Write(Unescaped(file))), testing::StartsWith(kFault + fault));
  }
};

const rows_test::RowFile rowFile("SimpleXMLValueLookup.txt", {}, [](const rows_test::Row& row) {
  const auto parts = rows_test::Pieces(row.text, " => ", 3);
  parts.size() == 3 ? Case().Check(parts[0], parts[1], parts[2]) : Case().CheckFault(parts[0], parts.at(1).substr(2));
});

TEST_F(SimpleXMLValueLookup, FallsBackOnlyWhenAllowed) {
  const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + Write("<r><n>k</n><v>1</v><k>9</k></r>")))));
  const struct {
    const char16_t* name;
    const char16_t* value;
    bool fallback;
    std::u16string_view found;
  } rows[] = {
      {u"n", u"v", true, u"1"},    {u"n", u"v", false, u"1"},   {nullptr, u"v", true, u"9"},
      {u"n", nullptr, true, u"9"}, {u"n", nullptr, false, u""}, {u"n", u"x", false, u""},
  };
  for (const auto& row : rows) {
    const char16_t* const text =
        xmlvalues::FindXMLValue(document->getDocumentElement(), u"k", row.fallback, row.name, row.value);
    EXPECT_TRUE((text == nullptr ? u"" : text) == row.found) << &row - rows;
  }
}

std::string Numbered(const char* before, const char* after, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += before + std::to_string(i) + after;
  return all;
}

// Entities of which each holds several of the one before; with '%', those of a document type declaration.
std::string Bomb(const std::string& rest, char sign = '&', int levels = 12, int times = 10,
                 std::string lowest = "lol") {
  const std::string kind = sign == '%' ? "% " : "", use = sign == '%' ? "&#37;a" : "&a";
  std::string text = "<!DOCTYPE r [";
  for (int i = 0; i < levels; ++i) {
    text += "<!ENTITY " + kind + "a" + std::to_string(i) + " '" + lowest + "'>";
    lowest = Repeated(use + std::to_string(i) + ";", times);
  }
  return text + rest;
}

TEST_F(SimpleXMLValueLookup, LargeFilesAreRefused) {
  const struct {
    std::string document, error;  // how the message begins
  } rows[] = {
      {Bomb("]><r>&a11;</r>"), "1 column 659:more than 10000 uses of entities (limit xmlEntities)"},
      {Bomb("]><r a='&a11;'/>"), "1 column 662:more than 10000 uses of entities (limit xmlEntities)"},
      {Bomb("<!ATTLIST r a CDATA '&a11;'>]><r/>"), "1 column 675:more than 262144 characters of document type"},
      {Bomb("%a11;]><r/>", '%', 12, 10, " "), "1 column 1116:more than 262144 characters of document type"},
      {Bomb(Repeated("%a0;", 100), '%', 1, 1, "<!ELEMENT r (a" + Numbered("|a", "", 9'000) + ")>"), "1 column"},
      {"<!DOCTYPE r [<!ENTITY a '<!--" + std::string(100'000, 'x') + "-->'>]><r>" + Repeated("&a;", 9'999),
       "1 column 100544:more than 16777216 characters of entities and declared attributes (limit xmlBytes)"},
      {"<!DOCTYPE r [<!ENTITY a '" + std::string(60'000, 'x') + "'>]><r a='" + Repeated("&a;", 9'999) + "'/>",
       "1 column 60876:more than 16777216 characters of entities"},
      {"<!DOCTYPE r [<!ENTITY a SYSTEM '" + std::string(60'000, 'x') + "'>]><r>" + Repeated("&a;", 9'999),
       "1 column 60880:more than 16777216 characters of entities"},
      {Bomb("]><r>&a2999;</r>", '&', 3'000, 1), "1 column "},
      {"<!DOCTYPE r [<!ELEMENT r (a" + Repeated(",a", 200'000) + ")>]><r/>", "1 column 294913:more than 262144 char"},
      {"<r>" + Repeated("<a/>", 1'000'000) + "</r>",
       "1 column 2000004:more than 500000 elements, attributes and other nodes (limit xmlNodes)"},
      {"<r>" + Repeated("<!---->", 600'000) + "</r>", "1 column 3500004:more than 500000 elements"},
      {"<r>" + Repeated("<?p?>", 600'000) + "</r>", "1 column 2500004:more than 500000 elements"},
      {"<r>" + Repeated("<![CDATA[]]>", 600'000) + "</r>", "1 column 6000004:more than 500000 elements"},
      {"\n" + Repeated("<a>", 100'000), "2 column 3004:more than 1000 elements within each other (limit xmlDepth)"},
      {"<r>" + Numbered("<a", "/>", 450'000) + "</r>",
       "1 column 116163:more than 100000000 comparisons of names (limit xmlNameSteps)"},
      {"<r>" + Numbered("<a a", "=''/>", 240'000) + "</r>", "1 column 128881:more than 100000000 comparisons"},
      {"<!DOCTYPE r [<!ATTLIST a i ID #IMPLIED>]><r>" + Repeated("<a i='x'/>", 240'000) + "</r>",
       "1 column 141395:more than 100000000 comparisons"},
      {"<!DOCTYPE r [<!ATTLIST a" + Numbered(" a", " CDATA #IMPLIED", 2'500) + ">]><r>" + Repeated("<a/>", 490'000),
       "1 column 2"},
      {"<!DOCTYPE r [<!ATTLIST a b CDATA '" + std::string(60'000, 'x') + "'>]><r>" + Repeated("<a/>", 240'000),
       "1 column 61162:more than 16777216 characters of entities and declared attributes"},
      {"<r" + Numbered(" a", "=''", 200'000) + "/>", "1 column 2088895:more than 1000 attributes of an element"},
      {"<r" + Numbered(" a", "=''", 1'600'000) + "/>", "1 column "},
      {"<r>" + std::string(17 * 1024 * 1024, 'x') + "</r>", "1 column 16"},
  };
  for (const auto& row : rows) {
    const std::string loaded = Loaded(Write(row.document));
    EXPECT_THAT(loaded, testing::StartsWith(kFault + "line " + row.error));
    EXPECT_THAT(loaded, testing::HasSubstr("(limit xml"));
  }
}

TEST_F(SimpleXMLValueLookup, FilesUpToTheLimitsAreRead) {
  const struct {
    const char* limit;
    TNameLimits limits;
    std::string within, beyond;
  } rows[] = {
      {"xmlNodes", {.xmlNodes = 12}, "<r>" + Repeated("<a b=''/>", 5) + "<c/></r>", "<r>" + Repeated("<a b=''/>", 6)},
      {"xmlAttributes", {.xmlAttributes = 2}, "<r a='' b=''/>", "<r a='' b='' c=''/>"},
      {"xmlDepth", {.xmlDepth = 3}, "<r>" + Repeated("<a><b/></a>", 2) + "</r>", "<r><a><b><c/></b></a></r>"},
      {"xmlBytes", {.xmlBytes = 100}, "<r>" + std::string(93, 'x') + "</r>", "<r>" + std::string(94, 'x') + "</r>"},
      {"xmlBytes",
       {.xmlBytes = 100},
       "<!DOCTYPE r [<!ENTITY e '" + std::string(25, 'x') + "'>]><r>&e;&e;&e;&e;</r>",
       "<!DOCTYPE r [<!ENTITY e '" + std::string(25, 'x') + "'>]><r>&e;&e;&e;&e;&e;</r>"},
      {"xmlEntities", {.xmlEntities = 1}, "<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>", Bomb("]><r>&a1;</r>")},
      {"xmlDoctype", {.xmlDoctype = 7}, Bomb("%a0;]><r/>", '%', 1, 1, " "), Bomb("%a1;]><r/>", '%', 2, 1, " ")},
      {"xmlNameSteps", {.xmlNameSteps = 6}, "<r><a/><b/></r>", "<r><a/><b/><a/></r>"},
      {"xmlMemory", {.xmlMemory = 1'000'000}, "<r/>", "<r a='" + std::string(1'000'000, 'x') + "'/>"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Loaded(Write(row.within), row.limits), "loaded") << row.limit;
    EXPECT_THAT(Loaded(Write(row.beyond), row.limits), testing::EndsWith(std::string("(limit ") + row.limit + ")"));
    EXPECT_THAT(Loaded(Write(row.beyond)), testing::Not(testing::HasSubstr("limit"))) << row.limit;
  }
}

// A document of few names, so that keys meet in it; also its texts are keys.
std::string RandomElement(std::minstd_rand& random, int depth) {
  static constexpr const char* kNames[] = {"name", "name", "value", "value", "k", "l", "kk"};
  static constexpr const char* kTexts[] = {"k", "l", "kk", "<!--k-->", "<![CDATA[k]]>", "&e;", " ", "name", "value"};
  const std::string name = kNames[random() % std::size(kNames)];
  std::string content;
  for (auto left = random() % 6; left > 0; --left)
    content += depth > 0 && random() % 2 == 0 ? RandomElement(random, depth - 1) : kTexts[random() % std::size(kTexts)];
  return "<" + name + ">" + content + "</" + name + ">";
}

TEST_F(SimpleXMLValueLookup, TheIndexFindsWhatThePlainWalkFinds) {
  std::minstd_rand random(7);
  int found = 0;
  for (int round = 0; round < 500; ++round) {
    const std::string text = "<!DOCTYPE r [<!ENTITY e 'k<k>l</k>'>]>" + RandomElement(random, 5);
    const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + Write(text)))));
    const auto* const root = document->getDocumentElement();
    const xmlvalues::TValueIndex index = xmlvalues::IndexXMLValues(root);
    for (const char* key : {"k", "l", "kk", " ", "", "name", "value", "none", "*"}) {
      NQ_TString value, again;
      const XMLCh* const expected = plain_xml::Find(root, S(key).WideText());
      EXPECT_EQ(xmlvalues::LookupXMLValue(index, key, value), expected != nullptr) << key << " in " << text;
      EXPECT_EQ(Text(value), Text(NQ_TString(expected))) << key << " in " << text;
      EXPECT_TRUE(xmlvalues::LookupXMLValue(root, key, again) == (expected != nullptr) && again == value) << text;
      found += expected != nullptr ? 1 : 0;
    }
  }
  EXPECT_GT(found, 100);
}

// The work grows as the document does, whatever its shape; a key more is no walk more.
TEST_F(SimpleXMLValueLookup, NodesAreVisitedForTheDocumentNotForEachKey) {
  const struct {
    const char *before, *after;  // of a number
    std::string rest;            // once after them all
  } rows[] = {
      {"<p><name>k", "</name><value>1</value></p>", ""},
      {"<name>k", "</name>", Repeated("<!---->", 1'000)},
      {"<name><!--", "--></name>", ""},
      {"<k", "/>", ""},
      {"<!--", "-->", "<name>k</name>"},
  };
  for (const auto& row : rows) {
    const auto indexed = [&](int count) {
      const std::string text = "<r>" + Numbered(row.before, row.after, count) + row.rest + "</r>";
      const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + Write(text)))));
      return xmlvalues::IndexXMLValues(document->getDocumentElement()).NodesVisited();
    };
    const std::size_t once = indexed(1'000), twice = indexed(2'000);
    EXPECT_GE(once, 1'000U) << row.before;
    EXPECT_LE(once, 11'000U) << row.before;
    EXPECT_LE(twice, 2 * once) << row.before;
  }
  const TDocument document(LoadXMLDocument(NQ_TURL(S("file://" + Write("<r><k>9</k><l>8</l></r>")))));
  auto* const root = document->getDocumentElement();
  const xmlvalues::TValueIndex index = xmlvalues::IndexXMLValues(root);
  while (root->getFirstChild() != nullptr) root->removeChild(root->getFirstChild());
  EXPECT_TRUE(index.Find(u"k", true) == std::u16string_view(u"9") && index.Find(u"l", true) != nullptr);
}

// What a thread meets that still reads files while the process ends: here, after the platform is gone.
TEST(SimpleXMLValueLookupAtExit, ThePlatformStaysWhileItIsUsed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const struct {
    bool used;
    const char* printed;
  } rows[] = {{true, "^read$"}, {false, "^NQ_EException: The XML library is not running$"}};
  for (const auto& row : rows) {
    const auto end = [&] {
      auto platform = std::make_unique<const xmlvalues::TXMLPlatform>();
      auto use = row.used ? std::make_unique<const xmlvalues::TXMLUse>() : nullptr;
      platform.reset();
      try {
        const xmlvalues::TXMLUse another;
        const std::string path = testing::TempDir() + "SimpleXMLValueLookupAtExit" + std::to_string(getpid());
        std::ofstream(path) << "<r/>";
        TDocument(LoadXMLDocument(NQ_TURL(S("file://" + path))));
        std::filesystem::remove(path);
        std::cerr << "read";
      } catch (const NQ_EException& error) {
        std::cerr << error.ClassName() << ": " << Text(error.NQ_Message());
      }
      std::_Exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(0), row.printed);
  }
}

TEST_F(SimpleXMLValueLookup, OnlyPlainFilesAreRead) {
  mkfifo((folder_ + "pipe").c_str(), 0600);  // opening it would wait for a writer
  std::filesystem::create_symlink(Write("<r/>"), folder_ + "link");
  for (const std::string& path : {Write("<r/>"), Write("<r/>", "J\xC3\xB8rgen 100%25 #1.xml"), folder_ + "link"})
    EXPECT_EQ(Loaded(path), "loaded") << path;
  for (const std::string& path : {folder_ + "missing.xml", folder_, folder_ + "pipe", std::string("/dev/zero")})
    EXPECT_THAT(Loaded(path), testing::StartsWith(kFault + "line 0 column 0:"));
  EXPECT_THAT(Loaded(Write("<r/>") + '\0'), testing::HasSubstr(":unable to open"));
}

TEST_F(SimpleXMLValueLookup, EveryKindOfErrorHasItsMessageAndLine) {
  const struct {
    std::function<void()> raise;
    std::string error;
  } rows[] = {
      {[] { throw xercesc::OutOfMemoryException(); }, "NQ_EOutOfMemory 54: "},
      {[] { throw xercesc::RuntimeException("x.cpp", 7, xercesc::XMLExcepts::Str_ZeroSizedTargetBuf); },
       "NQ_EException 59: XML exception at line 7 in file F:"},
      {[] { throw xercesc::SAXParseException(u"no end", u"", u"", 3, 4); },
       "NQ_EException 64: The XML file 'F' is not well-formed: error at line 3 column 4:no end"},
      {[] { throw xercesc::SAXException(u"sax"); }, "NQ_EException 69: sax"},
      {[] { throw xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR); }, "NQ_EException 74: "},
      {[] { nq::Throw(NQ_EException("2 parser errors"), "f", 9); }, "NQ_EException 9: 2 parser errors"},
  };
  for (const auto& row : rows) {
    std::string text;
    try {
      try {
        row.raise();
      } catch (...) {
        xmlvalues::RaiseAsFrameworkError("F");
      }
    } catch (const NQ_EException& error) {
      text = std::string(error.ClassName()) + " " + std::to_string(error.NQ_ExceptionLine()) + ": " +
             Text(error.NQ_Message());
    }
    EXPECT_TRUE(text.starts_with(row.error)) << row.error << "\n" << text;
  }
}

}  // namespace
