// Reading XML files: a document, its nodes, their attributes. Not for writing.
//
//   BuXmlDocument document;
//   if (document.Load(L"unit.xml"))
//       for (BuXmlNode node = document.GetRoot().GetFirstChild(); node; node = node.GetNextSibling())
//           node.GetAttribute(L"NAME", text);
//
// Text is decoded from UTF-8, UTF-16 or UTF-32, told by the byte-order mark or the first "<", or from Latin-1 where the
// XML declaration says so. Character references and the five named entities are resolved; others, and a document type,
// are not. A byte b that is not part of valid UTF-8 becomes the lone unit 0xDC00 + b, on every system. Nodes are
// handles into their document, valid until it is loaded anew or destroyed. Names compare exactly. A document may be
// read from several threads, and loaded from one at a time.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

#include <cstddef>

// An element of a document, or none.
class BASUTL_API BuXmlNode
{
public:
    // No node; whether this is one. No node has no name, no attributes, no children and no siblings.
    BuXmlNode() noexcept = default;
    explicit operator bool() const noexcept { return m_node != nullptr; }

    // Element children and siblings in document order, text and comments skipped; no node (false) past the last one.
    BuXmlNode GetFirstChild() const noexcept;
    BuXmlNode GetNextSibling() const noexcept;

    // The name, empty for no node; whether it is this one.
    BuString GetName() const noexcept;
    bool IsNamed(const wchar_t* name) const noexcept;

    // The value of an attribute. False, with `value` unchanged, when there is none or memory is exhausted.
    bool GetAttribute(const wchar_t* name, BuString& value) const noexcept;

    // The same in UTF-8 without a copy: null when there is none; valid as long as the node.
    const char* GetNameUtf8() const noexcept;
    const char* GetAttributeUtf8(const char* name) const noexcept;

    // The same for several attributes in one walk over them, null for each name that is not there. Quickest when the
    // names stand in the order of the file. Names must not be null nor repeat.
    void GetAttributesUtf8(const char* const* names, const char** values, int count) const noexcept;

private:
    friend class BuXmlDocument;
    explicit BuXmlNode(void* node) noexcept : m_node(node) {}
    void* m_node = nullptr;
};

// A document, which owns its elements.
class BASUTL_API BuXmlDocument
{
public:
    BuXmlDocument() noexcept;
    ~BuXmlDocument();
    BuXmlDocument(const BuXmlDocument&) = delete;
    BuXmlDocument& operator=(const BuXmlDocument&) = delete;

    // Reads a file in place of what was held. False when it cannot be read or is not well-formed; the document is then
    // empty and says why. Neither the depth of the elements nor their number is limited but by memory.
    bool Load(const wchar_t* path) noexcept;

    // Why the last Load failed: "REASON at offset N" for a malformed file, "cannot open file: REASON" in the system's
    // words, "no root element" for a file that is empty or holds only comments. Empty after a success.
    const BuString& GetErrorText() const noexcept { return m_errorText; }
    // The byte in the file that is to blame (in a Latin-1 file, where characters above 127 count twice, of its UTF-8
    // form); -1 when no place is to blame, or after a success.
    long long GetErrorOffset() const noexcept { return m_errorOffset; }

    BuXmlNode GetRoot() const noexcept;  // the outermost element; no node when empty

private:
    struct Content;
    Content* m_content = nullptr;
    BuString m_errorText;
    long long m_errorOffset = -1;
};
