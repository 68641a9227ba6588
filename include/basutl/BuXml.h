// Reading XML files: a document, its nodes, their attributes. Not for writing.
//
//   BuXmlDocument document;
//   if (document.Load(L"unit.xml"))
//       for (BuXmlNode node = document.GetRoot().GetFirstChild(); node; node = node.GetNextSibling())
//           node.GetAttribute(L"NAME", text);
//
// Text is decoded from UTF-8 (or UTF-16 and UTF-32 with a byte-order mark), entities resolved. Nodes are handles into
// their document and valid as long as it is. Names compare exactly.
#pragma once

#include <basutl/BuString.h>
#include <basutl/Export.h>

#include <cstddef>

class BASUTL_API BuXmlNode
{
public:
    BuXmlNode() noexcept = default;
    explicit operator bool() const noexcept { return m_node != nullptr; }

    // Element children and siblings in document order, text and comments skipped; no node (false) past the last one.
    BuXmlNode GetFirstChild() const noexcept;
    BuXmlNode GetNextSibling() const noexcept;

    BuString GetName() const noexcept;  // empty for no node
    bool IsNamed(const wchar_t* name) const noexcept;

    // The value of an attribute. False, with `value` unchanged, when there is none.
    bool GetAttribute(const wchar_t* name, BuString& value) const noexcept;

    // The same in UTF-8 without a copy, for names of ASCII characters: null when there is none; valid as long as the
    // document.
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

class BASUTL_API BuXmlDocument
{
public:
    BuXmlDocument() noexcept;
    ~BuXmlDocument();
    BuXmlDocument(const BuXmlDocument&) = delete;
    BuXmlDocument& operator=(const BuXmlDocument&) = delete;

    // Reads a file in place of what was held. False when it cannot be read or is not well-formed; the document is then
    // empty and says why.
    bool Load(const wchar_t* path) noexcept;

    // Why the last Load failed, "REASON at offset N" for a malformed file; empty after a success.
    const BuString& GetErrorText() const noexcept { return m_errorText; }
    // The byte in the file where reading stopped; -1 when the file was not read at all, or after a success.
    long long GetErrorOffset() const noexcept { return m_errorOffset; }

    BuXmlNode GetRoot() const noexcept;  // the outermost element; no node when empty

private:
    struct Content;
    Content* m_content = nullptr;
    BuString m_errorText;
    long long m_errorOffset = -1;
};
