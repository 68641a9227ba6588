// Fixed-width fields. A source is read only as far as its fields reach: it may be a line of a long text, or of a record
// without a NUL.
#include <TuvoUtil/StringBreak.h>

#include <algorithm>
#include <cstring>

namespace {

std::size_t Width(int width)
{
    return static_cast<std::size_t>(std::max(width, 0));
}

bool IsComplete(char** fields, const char* source, const int* widths, const char* buffer)
{
    return fields != nullptr && source != nullptr && widths != nullptr && buffer != nullptr;
}

}  // namespace

int UtlBreakString(int count, char** const fields, char* source, int* const widths, char* buffer)
{
    if (count < 1)
        return count;
    if (!IsComplete(fields, source, widths, buffer))
        return 0;
    for (int i = 0; i < count; ++i) {
        fields[i] = buffer;
        const std::size_t width = Width(widths[i]);
        const std::size_t copied = ::strnlen(source, width);
        std::memcpy(buffer, source, copied);
        source += copied;
        buffer += copied;
        // Kept: a field that meets the end takes the NUL of the source and one of its own; buffers are shared by place.
        if (copied < width)
            *buffer++ = '\0';
        *buffer++ = '\0';
    }
    return count;
}

int UtlOptimizeBreakString(int count, char** const fields, const char* source, int* const widths, char* buffer,
                           int fastLength)
{
    if (count < 1)
        return count;
    if (!IsComplete(fields, source, widths, buffer))
        return 0;
    if (::strnlen(source, Width(fastLength)) < Width(fastLength))
        return UtlBreakString(count, fields, const_cast<char*>(source), widths, buffer);
    for (int i = 0; i < count; ++i) {
        fields[i] = buffer;
        const std::size_t width = Width(widths[i]);
        const std::size_t copied = ::strnlen(source, width);
        std::memcpy(buffer, source, copied);
        std::memset(buffer + copied, 0, width - copied + 1);
        source += copied;
        buffer += width + 1;
    }
    return count;
}
