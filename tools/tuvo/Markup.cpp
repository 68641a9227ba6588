#include "tools/tuvo/Markup.h"

#include "platform/Utf8.h"

namespace tool {
namespace {

bool IsAllowed(char32_t code)
{
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;  // stray bytes among them
    const bool isNoCharacter = (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code < 0xFDF0);
    return !isControl && !isSurrogate && !isNoCharacter;
}

std::string_view Escape(char c)
{
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return {};
    }
}

}  // namespace

std::string Escaped(std::string_view text)
{
    std::string escaped;
    escaped.reserve(text.size());
    while (!text.empty()) {
        const auto [code, length] = platform::DecodeUtf8(text);
        const std::string_view escape = Escape(text.front());
        escaped += !IsAllowed(code) ? "\xEF\xBF\xBD" : !escape.empty() ? escape : text.substr(0, length);
        text.remove_prefix(length);
    }
    return escaped;
}

}  // namespace tool
