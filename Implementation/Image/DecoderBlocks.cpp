#include "Image/DecoderBlocks.h"

#include "platform/Platform.h"

#include <cassert>
#include <cstdlib>
#include <new>

namespace {

// A thread that ends is decoding nothing.
void ReleaseNothing(void*) {}

constinit platform::ThreadSlot g_blocks(ReleaseNothing);

image::DecoderBlocks& Current()
{
    assert(g_blocks.Get() != nullptr);
    return *static_cast<image::DecoderBlocks*>(g_blocks.Get());
}

}  // namespace

image::DecoderBlocks::DecoderBlocks()
{
    assert(g_blocks.Get() == nullptr);
    if (!g_blocks.Set(this))
        throw std::bad_alloc();
}

image::DecoderBlocks::~DecoderBlocks()
{
    for (void* const block : m_blocks)
        std::free(block);
    g_blocks.Set(nullptr);
}

void* image::DecoderBlocks::Allocate(std::size_t size)
{
    void** const place = Current().m_blocks.AppendUnset();
    if (place == nullptr)
        throw std::bad_alloc();
    *place = std::calloc(1, size);
    if (*place == nullptr)
        throw std::bad_alloc();
    return *place;
}

void* image::DecoderBlocks::Resize(void* block, std::size_t size)
{
    if (block == nullptr)
        return Allocate(size);
    void*& place = Current().PlaceOf(block);
    void* const resized = std::realloc(block, size);
    if (resized == nullptr)
        throw std::bad_alloc();
    place = resized;
    return resized;
}

void image::DecoderBlocks::Free(void* block) noexcept
{
    if (block == nullptr)
        return;
    Current().GiveAway(block);
    std::free(block);
}

void image::DecoderBlocks::GiveAway(const void* block) noexcept
{
    if (block == nullptr)
        return;
    PlaceOf(block) = m_blocks[m_blocks.Size() - 1];
    m_blocks.Truncate(m_blocks.Size() - 1);
}

void*& image::DecoderBlocks::PlaceOf(const void* block) noexcept
{
    std::size_t i = m_blocks.Size() - 1;
    while (m_blocks[i] != block)  // a block of the decoder is always among them
        --i;
    return m_blocks[i];
}
