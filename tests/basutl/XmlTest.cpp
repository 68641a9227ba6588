#include <basutl/BuXml.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

// ---- Documents -----------------------------------------------------------------------------------------------------

// A folder whose one file is loaded again and again.
class Xml : public testing::Test
{
protected:
    bool Load(const std::string& bytes) { return m_document.Load(m_folder.Write("test.xml", bytes).c_str()); }
    std::wstring Error() const { return m_document.GetErrorText().GetText(); }
    std::wstring Attribute(const BuXmlNode& node, const wchar_t* name) const
    {
        BuString value = L"(none)";
        node.GetAttribute(name, value);
        return value.GetText();
    }

    TemporaryFolder m_folder;
    BuXmlDocument m_document;
};

enum class Encoding
{
    Utf8,
    Utf8WithMark,
    Utf16Little,
    Utf16Big,
    Utf32Little,
    Utf32Big
};
constexpr Encoding AllEncodings[] = {Encoding::Utf8,     Encoding::Utf8WithMark, Encoding::Utf16Little,
                                     Encoding::Utf16Big, Encoding::Utf32Little,  Encoding::Utf32Big};

void AppendUnit(std::string& bytes, char32_t unit, int width, bool isBigEndian)
{
    for (int i = 0; i < width; ++i)
        bytes += static_cast<char>(unit >> 8 * (isBigEndian ? width - 1 - i : i) & 0xFF);
}

void AppendUtf8(std::string& bytes, char32_t c)
{
    const int extra = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(leads[extra] | c >> 6 * extra);
    for (int i = extra - 1; i >= 0; --i)
        bytes += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
}

// A text with its byte-order mark, if the encoding asks for one.
std::string Encode(std::u32string text, Encoding encoding)
{
    if (encoding != Encoding::Utf8)
        text.insert(text.begin(), 0xFEFF);
    std::string bytes;
    for (const char32_t c : text) {
        const bool isBigEndian = encoding == Encoding::Utf16Big || encoding == Encoding::Utf32Big;
        if (encoding == Encoding::Utf8 || encoding == Encoding::Utf8WithMark) {
            AppendUtf8(bytes, c);
        } else if (encoding == Encoding::Utf32Little || encoding == Encoding::Utf32Big) {
            AppendUnit(bytes, c, 4, isBigEndian);
        } else if (c < 0x10000) {
            AppendUnit(bytes, c, 2, isBigEndian);
        } else {
            AppendUnit(bytes, 0xD800 + ((c - 0x10000) >> 10), 2, isBigEndian);
            AppendUnit(bytes, 0xDC00 + (c & 0x3FF), 2, isBigEndian);
        }
    }
    return bytes;
}

// ---- Reading -------------------------------------------------------------------------------------------------------

TEST_F(Xml, WalksElementsAndReadsAttributes)
{
    ASSERT_TRUE(
        Load("<?xml version=\"1.0\"?>\n<!-- units -->\n<UNITS>text<!-- c -->\n"
             "<BASE_TYPE TYPE='LENGTH' EMPTY=\"\"><BASE_UNIT NAME=\"metre\"/></BASE_TYPE>more"
             "<![CDATA[<x/>]]><?pi?><UNIT_SYSTEM/></UNITS>\n<!-- end -->"));
    EXPECT_EQ(Error(), L"");
    EXPECT_EQ(m_document.GetErrorOffset(), -1);

    const BuXmlNode root = m_document.GetRoot();
    EXPECT_STREQ(root.GetName(), L"UNITS");
    EXPECT_FALSE(root.GetNextSibling());
    const BuXmlNode type = root.GetFirstChild();
    EXPECT_TRUE(type.IsNamed(L"BASE_TYPE"));
    for (const wchar_t* const other : {L"BASE_TYP", L"BASE_TYPES", L"base_type", L""})
        EXPECT_FALSE(type.IsNamed(other)) << other;
    EXPECT_EQ(Attribute(type, L"TYPE"), L"LENGTH");
    EXPECT_EQ(Attribute(type, L"EMPTY"), L"");
    EXPECT_EQ(Attribute(type, L"type"), L"(none)");
    EXPECT_STREQ(type.GetAttributeUtf8("TYPE"), "LENGTH");
    EXPECT_EQ(type.GetAttributeUtf8("TYP"), nullptr);
    EXPECT_STREQ(type.GetFirstChild().GetNameUtf8(), "BASE_UNIT");
    EXPECT_TRUE(type.GetNextSibling().IsNamed(L"UNIT_SYSTEM"));
    EXPECT_FALSE(type.GetNextSibling().GetNextSibling());
    EXPECT_FALSE(type.GetNextSibling().GetFirstChild());
}

TEST_F(Xml, HasNothingInNoNode)
{
    for (const BuXmlNode& node : {BuXmlNode(), m_document.GetRoot()}) {
        EXPECT_FALSE(node);
        EXPECT_FALSE(node.GetFirstChild());
        EXPECT_FALSE(node.GetNextSibling());
        EXPECT_STREQ(node.GetName(), L"");
        EXPECT_FALSE(node.IsNamed(L""));
        EXPECT_EQ(Attribute(node, L"NAME"), L"(none)");
        EXPECT_EQ(node.GetNameUtf8(), nullptr);
        EXPECT_EQ(node.GetAttributeUtf8("NAME"), nullptr);
    }
    EXPECT_FALSE(Load("<a>"));
    ASSERT_TRUE(Load("<a k='v'/>"));
    EXPECT_EQ(Error(), L"");  // nothing of the failure stays
    EXPECT_EQ(m_document.GetErrorOffset(), -1);
    EXPECT_FALSE(m_document.GetRoot().IsNamed(nullptr));
    EXPECT_EQ(Attribute(m_document.GetRoot(), nullptr), L"(none)");
    EXPECT_EQ(m_document.GetRoot().GetAttributeUtf8(nullptr), nullptr);
}

TEST_F(Xml, GivesSeveralAttributesAtOnce)
{
    ASSERT_TRUE(Load("<a one='1' other='-' two='2' on='0' two='second' four='4'/>"));
    constexpr const char* names[] = {"two", "on", "three", "four", "one"};
    const char* const expected[] = {"2", "0", nullptr, "4", "1"};
    const char* values[5] = {"", "", "", "", ""};
    m_document.GetRoot().GetAttributesUtf8(names, values, 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_STREQ(values[i], expected[i]) << names[i];
    BuXmlNode().GetAttributesUtf8(names, values, 5);
    for (const char* const value : values)
        EXPECT_EQ(value, nullptr);
}

TEST_F(Xml, ReadsTheSameTextInEveryEncoding)
{
    const std::u32string text = U"<\u00e9\U0001D11E \u20ac='\u00b0\u03a9\U0001D11E\U0010FFFF'/>";
    for (const Encoding encoding : AllEncodings) {
        ASSERT_TRUE(Load(Encode(text, encoding)))
            << static_cast<int>(encoding) << ' ' << testing::PrintToString(Error());
        const BuXmlNode root = m_document.GetRoot();
        EXPECT_STREQ(root.GetName(), L"\u00e9\U0001D11E");
        EXPECT_TRUE(root.IsNamed(L"\u00e9\U0001D11E"));
        EXPECT_EQ(Attribute(root, L"\u20ac"), L"\u00b0\u03a9\U0001D11E\U0010FFFF");
        EXPECT_STREQ(root.GetAttributeUtf8("\xE2\x82\xAC"), "\xC2\xB0\xCE\xA9\xF0\x9D\x84\x9E\xF4\x8F\xBF\xBF");
    }
    ASSERT_TRUE(Load("<?xml version='1.0' encoding='ISO-8859-1'?><a k='\xB0\xE9'/>"));
    EXPECT_EQ(Attribute(m_document.GetRoot(), L"k"), L"\u00b0\u00e9");
}

TEST_F(Xml, ResolvesEntitiesAndLineEndsInAttributes)
{
    ASSERT_TRUE(Load("<a k='&lt;&gt;&amp;&quot;&apos;&#176;&#x1D11E;&unknown;' l='one\r\ntwo\tthree'/>"));
    EXPECT_EQ(Attribute(m_document.GetRoot(), L"k"), L"<>&\"'\u00b0\U0001D11E&unknown;");
    EXPECT_EQ(Attribute(m_document.GetRoot(), L"l"), L"one two three");
}

// Bytes that are no UTF-8 are carried as they are in any narrow text, here on every system.
TEST_F(Xml, CarriesStrayBytes)
{
    ASSERT_TRUE(Load("<a k='20\xB0\xC3' l='\xC3\xA9\xE2\x82' m='\xC0\x80\xF4\x90\x80\x80'/>"));
    const BuXmlNode root = m_document.GetRoot();
    const auto stray = [](int byte) { return static_cast<wchar_t>(0xDC00 + byte); };
    EXPECT_EQ(Attribute(root, L"k"), std::wstring(L"20") + stray(0xB0) + stray(0xC3));
    EXPECT_EQ(Attribute(root, L"l"), std::wstring(L"\u00e9") + stray(0xE2) + stray(0x82));
    EXPECT_EQ(Attribute(root, L"m"),
              (std::wstring{stray(0xC0), stray(0x80), stray(0xF4), stray(0x90), stray(0x80), stray(0x80)}));
    EXPECT_STREQ(root.GetAttributeUtf8("k"), "20\xB0\xC3");
}

// ---- Failures ------------------------------------------------------------------------------------------------------

TEST_F(Xml, TellsWhatIsWrongAndWhere)
{
    const struct
    {
        std::string bytes;
        const wchar_t* error;
        long long offset;
    } rows[] = {
        {"", L"no root element", -1},
        {" \r\n\t", L"no root element", -1},
        {"\xEF\xBB\xBF\n", L"no root element", -1},
        {"<?xml version='1.0'?><!-- only a comment --><!DOCTYPE a>", L"no root element", -1},
        {"just text", L"text outside the root element at offset 0", 0},
        {"<a/> tail", L"text outside the root element at offset 4", 4},
        {"<a/><![CDATA[tail]]>", L"text outside the root element at offset 13", 13},
        {"<a/><b/>", L"more than one root element at offset 5", 5},
        {std::string("<a/>\n\0\0\0", 8), L"character 0 at offset 5", 5},
        {std::string("<a>\0</a>", 8), L"character 0 at offset 3", 3},
        {std::string("\xFF\xFE<\0a\0/\0>\0\0\0", 12), L"character 0 at offset 10", 10},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(Load(row.bytes)) << row.bytes;
        EXPECT_EQ(Error(), row.error) << row.bytes;
        EXPECT_EQ(m_document.GetErrorOffset(), row.offset) << row.bytes;
    }
}

TEST_F(Xml, RefusesMalformedFiles)
{
    for (const char* const text : {"<", "<a", "<a>", "<a/", "<a></b>", "</a>", "<a></a></a>", "<a><b></a></b>",
                                   "<a k/>", "<a k=1/>", "<a k='v/>", "<a k='v'l='w'/>", "<a 'v'/>", "<1/>", "<a/><",
                                   "<a><!-- ></a>", "<a><![CDATA[</a>", "<a><? ></a>", "<!DOCTYPE"}) {
        EXPECT_FALSE(Load(text)) << text;
        const std::wstring offset = std::to_wstring(m_document.GetErrorOffset());
        EXPECT_TRUE(Error().ends_with(L" at offset " + offset)) << text << ": " << testing::PrintToString(Error());
        EXPECT_FALSE(m_document.GetRoot());
    }
}

// The place counts bytes of the file, not of the form that the parser works on.
TEST_F(Xml, TellsThePlaceInEveryEncoding)
{
    const std::u32string before = U"<a k='\u00b0\u20ac\U0001D11E'><b></";  // "b" is expected behind it
    for (const Encoding encoding : AllEncodings) {
        EXPECT_FALSE(Load(Encode(before + U"a></b>", encoding)));
        EXPECT_EQ(m_document.GetErrorOffset(), static_cast<long long>(Encode(before, encoding).size()))
            << static_cast<int>(encoding);
    }
}

TEST_F(Xml, RefusesAFileCutAnywhere)
{
    const std::u32string text =
        U"<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE a [<!ELEMENT a ANY>]>\n<!-- \u00e9 -->"
        U"<a k='\u20ac&lt;&#176;' l=\"'\"><b/>\u00e9 text &amp; <![CDATA[<]]><c d='1'><e></e></c><?pi x?></a>";
    for (const Encoding encoding : {Encoding::Utf8, Encoding::Utf16Little}) {
        const std::string whole = Encode(text, encoding);
        ASSERT_TRUE(Load(whole)) << testing::PrintToString(Error());
        for (std::size_t size = 0; size < whole.size(); ++size) {
            ASSERT_FALSE(Load(whole.substr(0, size))) << size;
            ASSERT_NE(Error(), L"") << size;
            ASSERT_LE(m_document.GetErrorOffset(), static_cast<long long>(size));
            ASSERT_FALSE(m_document.GetRoot()) << size;
        }
    }
}

TEST_F(Xml, SaysWhyAFileCannotBeRead)
{
    constexpr int notFound = 2;
    EXPECT_FALSE(m_document.Load(m_folder.Path("missing.xml").c_str()));
    EXPECT_EQ(Error(), L"cannot open file: " + platform::NativeErrorText(notFound));
    EXPECT_EQ(m_document.GetErrorOffset(), -1);
    for (const wchar_t* const path : {m_folder.Path().c_str(), L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_FALSE(m_document.Load(path));
        EXPECT_TRUE(Error().starts_with(L"cannot open file: ")) << testing::PrintToString(Error());
    }
}

// Files of the system's own tell no size, and one of them fails when it is read.
TEST_F(Xml, ReadsFilesOfUnknownSize)
{
    if (platform::Separator() == L'\\')
        GTEST_SKIP() << "this system has no such files";
    EXPECT_FALSE(m_document.Load(L"/proc/self/maps"));
    EXPECT_EQ(Error(), L"text outside the root element at offset 0");
    EXPECT_FALSE(m_document.Load(L"/proc/self/mem"));
    EXPECT_EQ(Error(), L"cannot read file: Input/output error");
}

TEST_F(Xml, OpensAnyPath)
{
    std::wstring path = m_folder.Path() + L"\u00e9\u20ac\U0001D11E.xml";
    std::FILE* const file = platform::OpenFile(path.c_str(), L"wb");
    ASSERT_NE(file, nullptr);
    std::fputs("<a/>", file);
    std::fclose(file);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    EXPECT_TRUE(m_document.Load(path.c_str())) << testing::PrintToString(Error());
}

// ---- Size ----------------------------------------------------------------------------------------------------------

TEST_F(Xml, HoldsAMillionElements)
{
    constexpr int count = 1'000'000;
    std::string text = "<r>";
    for (int i = 0; i < count; ++i)
        text += "<e i='" + std::to_string(i) + "'/>\n";
    ASSERT_TRUE(Load(text + "</r>"));
    int expected = 0;
    for (BuXmlNode node = m_document.GetRoot().GetFirstChild(); node; node = node.GetNextSibling())
        ASSERT_EQ(std::atoi(node.GetAttributeUtf8("i")), expected++);
    EXPECT_EQ(expected, count);
}

TEST_F(Xml, HoldsDeepNesting)
{
    constexpr int depth = 100'000;
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<e>";
    for (int i = 0; i < depth; ++i)
        text += "</e>";
    ASSERT_TRUE(Load(text));
    int found = 0;
    for (BuXmlNode node = m_document.GetRoot(); node; node = node.GetFirstChild())
        ++found;
    EXPECT_EQ(found, depth);
}

}  // namespace
