#include "platform/Demangle.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

std::string platform::Demangle(const char* symbol)
{
    if (!std::string_view(symbol).starts_with("_Z"))
        return symbol;  // "i" would be taken for the type int
    struct Free
    {
        void operator()(char* text) const { std::free(text); }
    };
    std::size_t size = 256;
    std::unique_ptr<char, Free> buffer(static_cast<char*>(std::malloc(size)));
    if (buffer == nullptr)
        throw std::bad_alloc();
    int status = 0;
    char* const readable = abi::__cxa_demangle(symbol, buffer.get(), &size, &status);
    if (readable == nullptr)
        return symbol;
    static_cast<void>(buffer.release());  // it was handed on, and may have grown
    buffer.reset(readable);
    return readable;
}
