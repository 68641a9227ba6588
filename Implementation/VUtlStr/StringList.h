// An array of new strings that is being filled. What is not given away is freed again.
#pragma once

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/TrackedPtr.h"
#include "VUtlStr/FieldCut.h"
#include "VUtlStr/NewText.h"

#include <TuvoUtil/Memory.h>

#include <string_view>

class StringList
{
public:
    // Makes room for `capacity` strings, at least 1.
    explicit StringList(std::size_t capacity)
        : m_strings(modules::VUtlStr, fieldcut::NewArray(capacity, modules::VUtlStr, __LINE__)),
          m_isWhole(static_cast<bool>(m_strings))
    {}
    ~StringList()
    {
        for (int i = 0; m_strings && i < m_count; ++i)
            VBU_FREE(m_strings[static_cast<std::size_t>(i)], modules::VUtlStr, __LINE__);
    }
    StringList(const StringList&) = delete;
    StringList& operator=(const StringList&) = delete;

    // Appends a copy; there must be room for it. After a failure nothing is appended any more.
    void Append(std::string_view text)
    {
        char* const copy = m_isWhole ? strings::NewCopy(text) : nullptr;
        m_isWhole = copy != nullptr;
        if (m_isWhole)
            m_strings[static_cast<std::size_t>(m_count++)] = copy;
    }

    // Gives the array away and tells how many strings it holds; null and 0 when memory was exhausted.
    int Release(char*** strings)
    {
        *strings = m_isWhole ? m_strings.Release() : nullptr;
        return m_isWhole ? m_count : 0;
    }

private:
    TrackedPtr<char*> m_strings;
    int m_count = 0;
    bool m_isWhole;
};
