#include <basutl/BuXml.h>

#include "platform/Platform.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// ---- Documents -----------------------------------------------------------------------------------------------------

// A folder whose one file is loaded again and again.
class Xml : public testing::Test
{
protected:
    bool Load(const std::string& bytes) { return m_document.Load(m_folder.Write("test.xml", bytes).c_str()); }
    BuXmlNode Root() const { return m_document.GetRoot(); }
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

// Units of 1, 2 or 4 bytes; behind a byte-order mark or not.
struct Encoding
{
    int width;
    bool isBigEndian, hasMark;
};
constexpr Encoding AllEncodings[] = {{1, false, false}, {1, false, true}, {2, false, true},
                                     {2, true, true},   {4, false, true}, {4, true, true}};

std::string Encode(std::u32string text, const Encoding& encoding)
{
    std::string bytes;
    const auto appendUnit = [&](char32_t unit) {
        for (int i = 0; i < encoding.width; ++i)
            bytes += static_cast<char>(unit >> 8 * (encoding.isBigEndian ? encoding.width - 1 - i : i) & 0xFF);
    };
    if (encoding.hasMark)
        text.insert(text.begin(), 0xFEFF);
    for (const char32_t c : text) {
        if (encoding.width == 2 && c >= 0x10000) {
            appendUnit(0xD7C0 + (c >> 10));
            appendUnit(0xDC00 + (c & 0x3FF));
        } else if (encoding.width > 1 || c < 0x80) {
            appendUnit(c);
        } else {
            const int extra = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            appendUnit((0xFF00u >> (extra + 1) & 0xFF) | c >> 6 * extra);
            for (int i = extra - 1; i >= 0; --i)
                appendUnit(0x80 | (c >> 6 * i & 0x3F));
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
    EXPECT_STREQ(Root().GetName(), L"UNITS");
    EXPECT_FALSE(Root().GetNextSibling());
    const BuXmlNode type = Root().GetFirstChild();
    EXPECT_TRUE(type.IsNamed(L"BASE_TYPE"));
    EXPECT_FALSE(type.IsNamed(L"BASE_TYP") || type.IsNamed(L"BASE_TYPES") || type.IsNamed(L"base_type"));
    EXPECT_EQ(Attribute(type, L"TYPE") + Attribute(type, L"EMPTY") + Attribute(type, L"type"), L"LENGTH(none)");
    EXPECT_STREQ(type.GetAttributeUtf8("TYPE"), "LENGTH");
    EXPECT_EQ(type.GetAttributeUtf8("TYP"), nullptr);
    EXPECT_STREQ(type.GetFirstChild().GetNameUtf8(), "BASE_UNIT");
    EXPECT_TRUE(type.GetNextSibling().IsNamed(L"UNIT_SYSTEM"));
    EXPECT_FALSE(type.GetNextSibling().GetNextSibling() || type.GetNextSibling().GetFirstChild());
}

TEST_F(Xml, HasNothingInNoNode)
{
    for (const BuXmlNode& node : {BuXmlNode(), Root()}) {
        EXPECT_FALSE(node || node.GetFirstChild() || node.GetNextSibling() || node.IsNamed(L""));
        EXPECT_STREQ(node.GetName(), L"");
        EXPECT_EQ(Attribute(node, L"NAME"), L"(none)");
        EXPECT_TRUE(node.GetNameUtf8() == nullptr && node.GetAttributeUtf8("NAME") == nullptr);
    }
    ASSERT_TRUE(Load("<a k='v'/>"));
    EXPECT_FALSE(Root().IsNamed(nullptr));
    EXPECT_EQ(Attribute(Root(), nullptr), L"(none)");
    EXPECT_EQ(Root().GetAttributeUtf8(nullptr), nullptr);
}

TEST_F(Xml, GivesSeveralAttributesAtOnce)
{
    ASSERT_TRUE(Load("<a one='1' other='-' two='2' on='0' two='second' four='4'/>"));
    constexpr const char* names[] = {"two", "on", "three", "four", "one"};
    const char* const expected[] = {"2", "0", nullptr, "4", "1"};
    const char* values[5] = {"", "", "", "", ""};
    Root().GetAttributesUtf8(names, values, 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_STREQ(values[i], expected[i]) << names[i];
    BuXmlNode().GetAttributesUtf8(names, values, 5);
    for (const char* const value : values)
        EXPECT_EQ(value, nullptr);
}

TEST_F(Xml, ReadsTheSameTextInEveryEncoding)
{
    const std::u32string text = U"<\u00e9\U0001D11E \u20ac='\u00b0\u03a9\U0001D11E\U0010FFFF'/>";
    for (const Encoding& encoding : AllEncodings) {
        ASSERT_TRUE(Load(Encode(text, encoding))) << encoding.width << ' ' << testing::PrintToString(Error());
        EXPECT_STREQ(Root().GetName(), L"\u00e9\U0001D11E");
        EXPECT_TRUE(Root().IsNamed(L"\u00e9\U0001D11E"));
        EXPECT_EQ(Attribute(Root(), L"\u20ac"), L"\u00b0\u03a9\U0001D11E\U0010FFFF");
        EXPECT_STREQ(Root().GetAttributeUtf8("\xE2\x82\xAC"), "\xC2\xB0\xCE\xA9\xF0\x9D\x84\x9E\xF4\x8F\xBF\xBF");
    }
    ASSERT_TRUE(Load("<?xml version='1.0' encoding='ISO-8859-1'?><a k='\xB0\xE9'/>"));
    EXPECT_EQ(Attribute(Root(), L"k"), L"\u00b0\u00e9");
}

// Bytes that are no UTF-8 are carried as they are in any narrow text, here on every system.
TEST_F(Xml, ResolvesEntitiesAndLineEndsAndCarriesStrayBytes)
{
    ASSERT_TRUE(
        Load("<a k='&lt;&gt;&amp;&quot;&apos;&#176;&#x1D11E;&unknown;' l='one\r\ntwo\tthree' "
             "m='\xC3\xA9\xE2\x82' n='\xC0\x80\xF4\x90'/>"));
    const auto stray = [](int byte) { return static_cast<wchar_t>(0xDC00 + byte); };
    EXPECT_EQ(Attribute(Root(), L"k"), L"<>&\"'\u00b0\U0001D11E&unknown;");
    EXPECT_EQ(Attribute(Root(), L"l"), L"one two three");
    EXPECT_EQ(Attribute(Root(), L"m"), (std::wstring{L'\u00e9', stray(0xE2), stray(0x82)}));
    EXPECT_EQ(Attribute(Root(), L"n"), (std::wstring{stray(0xC0), stray(0x80), stray(0xF4), stray(0x90)}));
    EXPECT_STREQ(Root().GetAttributeUtf8("m"), "\xC3\xA9\xE2\x82");
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
        {"\xEF\xBB\xBF\n", L"no root element", -1},
        {"<?xml version='1.0'?><!-- only a comment --><!DOCTYPE a>", L"no root element", -1},
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
    ASSERT_TRUE(Load("<a/>"));
    EXPECT_TRUE(Error().empty() && m_document.GetErrorOffset() == -1);  // nothing of a failure stays
}

// The place counts bytes of the file, not of the form that the parser works on.
TEST_F(Xml, TellsThePlaceInEveryEncoding)
{
    const std::u32string before = U"<a k='\u00b0\u20ac\U0001D11E'><b></";  // "b" is expected behind it
    for (const Encoding& encoding : AllEncodings) {
        EXPECT_FALSE(Load(Encode(before + U"a></b>", encoding)));
        const std::size_t offset = Encode(before, encoding).size();
        EXPECT_EQ(m_document.GetErrorOffset(), static_cast<long long>(offset));
        EXPECT_TRUE(Error().ends_with(L" at offset " + std::to_wstring(offset))) << testing::PrintToString(Error());
    }
}

TEST_F(Xml, RefusesAFileCutAnywhere)
{
    const std::u32string text =
        U"<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE a [<!ELEMENT a ANY>]>\n<!-- \u00e9 -->"
        U"<a k='\u20ac&lt;&#176;' l=\"'\"><b/>\u00e9 text &amp; <![CDATA[<]]><c d='1'><e></e></c><?pi x?></a>";
    for (const Encoding& encoding : {AllEncodings[0], AllEncodings[2]}) {
        const std::string whole = Encode(text, encoding);
        ASSERT_TRUE(Load(whole)) << testing::PrintToString(Error());
        for (std::size_t size = 0; size < whole.size(); ++size) {
            ASSERT_FALSE(Load(whole.substr(0, size)) || Root() || Error().empty()) << size;
            ASSERT_LE(m_document.GetErrorOffset(), static_cast<long long>(size));
        }
    }
}

TEST_F(Xml, SaysWhyAFileCannotBeRead)
{
    constexpr int notFound = 2;
    EXPECT_FALSE(m_document.Load(m_folder.Path("missing.xml").c_str()));
    EXPECT_EQ(Error(), L"cannot open file: " + platform::NativeErrorText(notFound));
    for (const wchar_t* const path : {m_folder.Path().c_str(), L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_FALSE(m_document.Load(path));
        EXPECT_TRUE(Error().starts_with(L"cannot open file: ")) << testing::PrintToString(Error());
    }
    if (platform::Separator() == L'\\')
        return;
    // Files of the system's own tell no size, and one of them fails when it is read.
    EXPECT_FALSE(m_document.Load(L"/proc/self/maps"));
    EXPECT_EQ(Error(), L"text outside the root element at offset 0");
    EXPECT_FALSE(m_document.Load(L"/proc/self/mem"));
    EXPECT_EQ(Error(), L"cannot read file: Input/output error");
}

TEST_F(Xml, HoldsDeepNesting)
{
    constexpr int depth = 100'000;
    std::string deep;
    for (int i = 0; i < 2 * depth; ++i)
        deep += i < depth ? "<e>" : "</e>";
    ASSERT_TRUE(Load(deep));
    int found = 0;
    for (BuXmlNode node = Root(); node; node = node.GetFirstChild())
        ++found;
    EXPECT_EQ(found, depth);
}

}  // namespace
