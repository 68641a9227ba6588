#include <basutl/BuXml.h>

#include "basutl/XmlSource.h"
#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/Utf8.h"

#include <basutl/BuErrObj.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace {

// ---- Text ----------------------------------------------------------------------------------------------------------

// Hands the wide units of a UTF-8 text to `visit` one by one, as long as that gives true. True when all were taken.
template <typename Visit>
bool ForEachWideUnit(std::string_view text, Visit visit)
{
    while (!text.empty()) {
        const auto [code, length] = platform::DecodeUtf8(text);
        text.remove_prefix(length);
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            if (!visit(static_cast<wchar_t>(0xD7C0 + (code >> 10))) ||
                !visit(static_cast<wchar_t>(0xDC00 + (code & 0x3FF))))
                return false;
        } else if (!visit(static_cast<wchar_t>(code))) {
            return false;
        }
    }
    return true;
}

// In place, as names are too short to be worth a call.
bool Equal(const char* left, const char* right)
{
    for (; *left == *right; ++left, ++right)
        if (*left == '\0')
            return true;
    return false;
}

bool Equal(const char* utf8, const wchar_t* wide)
{
    return ForEachWideUnit(utf8, [&](wchar_t unit) { return unit == *wide++; }) && *wide == L'\0';
}

// False, with `wide` unchanged, when memory is exhausted.
bool Decode(const char* utf8, BuString& wide)
{
    BuString text;
    int length = 0;
    const bool isComplete = ForEachWideUnit(utf8, [&](wchar_t unit) {
        text += unit;
        return text.GetLength() == ++length;
    });
    if (isComplete)
        wide = std::move(text);
    return isComplete;
}

// ---- Nodes ---------------------------------------------------------------------------------------------------------

pugi::xml_node ToNode(void* node)
{
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(node));
}

// The first element from a node on; null when there is none.
void* FindElement(pugi::xml_node node)
{
    for (auto type = node.type(); type != pugi::node_element && type != pugi::node_null; type = node.type())
        node = node.next_sibling();
    return node.internal_object();
}

pugi::xml_attribute FindAttribute(void* node, const wchar_t* name)
{
    pugi::xml_attribute attribute = ToNode(node).first_attribute();
    while (attribute && !Equal(attribute.name(), name))
        attribute = attribute.next_attribute();
    return attribute;
}

// ---- Files ---------------------------------------------------------------------------------------------------------

struct CloseFile
{
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

// Gives the reason when the file cannot be read, else null.
const BuErrObj* ReadFile(const wchar_t* path, XmlSource& source)
{
    const std::unique_ptr<std::FILE, CloseFile> file(platform::OpenFile(path, L"rb"));
    if (file == nullptr)
        return BuSetNativeError(L"cannot open file", platform::LastNativeError());
    platform::FileStatus status;
    const bool isRead = source.Read(file.get(), platform::Status(path, status) ? status.size : 0);
    return isRead ? nullptr : BuSetNativeError(L"cannot read file", platform::LastNativeError());
}

XmlLayout LayoutOf(pugi::xml_encoding encoding)
{
    switch (encoding) {
        case pugi::encoding_utf16_le:
            return {2, false};
        case pugi::encoding_utf16_be:
            return {2, true};
        case pugi::encoding_utf32_le:
            return {4, false};
        case pugi::encoding_utf32_be:
            return {4, true};
        default:
            return {1, false};
    }
}

// What is wrong with a file, if anything, and where; -1 when no place in it is to blame.
struct Fault
{
    const char* reason = nullptr;
    long long offset = -1;
};

// The parser takes any number of elements and texts side by side.
Fault FindFaultBesideRoot(const pugi::xml_document& document)
{
    bool hasRoot = false;
    for (const pugi::xml_node node : document.children()) {
        if (node.type() != pugi::node_element)
            return {"text outside the root element", node.offset_debug()};
        if (hasRoot)
            return {"more than one root element", node.offset_debug()};
        hasRoot = true;
    }
    return hasRoot ? Fault() : Fault{"no root element", -1};
}

Fault Parse(pugi::xml_document& document, const XmlSource& source)
{
    // The parser takes a zero for the end of the file. Among bytes it has to be found before the parser writes its own.
    const std::size_t zeroByte = source.FindZero({1, false});
    constexpr unsigned int options = pugi::parse_default | pugi::parse_fragment;
    const auto result = document.load_buffer_inplace(source.GetData(), source.GetSize(), options);
    if (result.status == pugi::status_out_of_memory)
        return {"out of memory", -1};

    Fault fault = result ? FindFaultBesideRoot(document) : Fault{result.description(), result.offset};
    const XmlLayout layout = LayoutOf(result.encoding);
    if (fault.offset > 0 && layout.width > 1)
        fault.offset = static_cast<long long>(source.FindUtf8Offset(static_cast<std::size_t>(fault.offset), layout));
    const std::size_t zero = layout.width > 1 ? source.FindZero(layout) : zeroByte;
    const bool isZeroFirst = fault.offset < 0 || zero <= static_cast<std::size_t>(fault.offset);
    return zero < source.GetSize() && isZeroFirst ? Fault{"character 0", static_cast<long long>(zero)} : fault;
}

}  // namespace

struct BuXmlDocument::Content
{
    XmlSource source;  // the nodes point into it
    pugi::xml_document document;
};

BuXmlNode BuXmlNode::GetFirstChild() const noexcept
{
    return BuXmlNode(FindElement(ToNode(m_node).first_child()));
}

BuXmlNode BuXmlNode::GetNextSibling() const noexcept
{
    return BuXmlNode(FindElement(ToNode(m_node).next_sibling()));
}

BuString BuXmlNode::GetName() const noexcept
{
    BuString name;
    Decode(ToNode(m_node).name(), name);
    return name;
}

bool BuXmlNode::IsNamed(const wchar_t* name) const noexcept
{
    return m_node != nullptr && name != nullptr && Equal(ToNode(m_node).name(), name);
}

bool BuXmlNode::GetAttribute(const wchar_t* name, BuString& value) const noexcept
{
    if (name == nullptr)
        return false;
    const pugi::xml_attribute attribute = FindAttribute(m_node, name);
    return attribute && Decode(attribute.value(), value);
}

const char* BuXmlNode::GetNameUtf8() const noexcept
{
    return m_node != nullptr ? ToNode(m_node).name() : nullptr;
}

const char* BuXmlNode::GetAttributeUtf8(const char* name) const noexcept
{
    if (name == nullptr)
        return nullptr;
    const pugi::xml_attribute attribute = ToNode(m_node).attribute(name);
    return attribute ? attribute.value() : nullptr;
}

void BuXmlNode::GetAttributesUtf8(const char* const* names, const char** values, int count) const noexcept
{
    std::fill_n(values, count, nullptr);
    int next = 0;  // the name after the last one found, which is tried first
    auto attribute = ToNode(m_node).first_attribute();
    for (const char* name = attribute.name(); *name != '\0'; name = attribute.name()) {
        for (int tried = 0; tried < count; ++tried) {
            const int i = next;
            next = next + 1 < count ? next + 1 : 0;
            if (Equal(name, names[i])) {
                if (values[i] == nullptr)
                    values[i] = attribute.value();
                break;
            }
        }
        attribute = attribute.next_attribute();
    }
}

BuXmlDocument::BuXmlDocument() noexcept = default;

BuXmlDocument::~BuXmlDocument()
{
    delete m_content;
}

bool BuXmlDocument::Load(const wchar_t* path) noexcept
{
    delete std::exchange(m_content, nullptr);
    m_errorText.Empty();
    m_errorOffset = -1;

    std::unique_ptr<Content> content(new (std::nothrow) Content);
    if (content == nullptr) {
        m_errorText = L"out of memory";
        return false;
    }
    if (const BuErrObj* const error = ReadFile(path, content->source)) {
        m_errorText = error->GetMessageText();
        return false;
    }
    const Fault outOfMemory{"out of memory", -1};  // what a host gave the parser as its allocator may throw
    const Fault fault = platform::Guarded(outOfMemory, [&] { return Parse(content->document, content->source); });
    if (fault.reason == nullptr) {
        m_content = content.release();
        return true;
    }
    m_errorOffset = fault.offset;
    m_errorText.Format(fault.offset < 0 ? L"%S" : L"%S at offset %lld", fault.reason, fault.offset);
    return false;
}

BuXmlNode BuXmlDocument::GetRoot() const noexcept
{
    return BuXmlNode(m_content != nullptr ? FindElement(m_content->document.first_child()) : nullptr);
}
