#include "core/html/parsearena.h"

#include <cstdlib>

namespace {
// Every piece starts with a header that holds its size class (0 for a large piece taken
// straight from the C heap), so that freeing needs nothing but the pointer. Sixteen bytes
// keep the pieces aligned for any type.
struct alignas(16) Header
{
    size_t sizeClass;
};
static_assert(sizeof(Header) == 16);
} // namespace

ParseArena::~ParseArena()
{
    for (char *block : m_blocks)
        std::free(block);
}

void *ParseArena::allocate(size_t size)
{
    if (size > LargestSmall) {
        auto *header = static_cast<Header *>(std::malloc(sizeof(Header) + size));
        if (!header)
            return nullptr;
        header->sizeClass = 0;
        return header + 1;
    }
    const size_t sizeClass = (size + Granule - 1) / Granule + (size == 0 ? 1 : 0);
    if (FreePiece *piece = m_free[sizeClass]) {
        m_free[sizeClass] = piece->next;
        return piece;
    }
    const size_t bytes = sizeof(Header) + sizeClass * Granule;
    char *at = size_t(m_end - m_at) >= bytes ? m_at : newBlock();
    if (!at)
        return nullptr;
    m_at = at + bytes;
    auto *header = reinterpret_cast<Header *>(at);
    header->sizeClass = sizeClass;
    return header + 1;
}

char *ParseArena::newBlock()
{
    char *block = static_cast<char *>(std::malloc(BlockSize));
    if (!block)
        return nullptr;
    m_blocks.push_back(block);
    m_end = block + BlockSize;
    return block;
}

void ParseArena::deallocate(void *pointer)
{
    if (!pointer)
        return;
    Header *header = static_cast<Header *>(pointer) - 1;
    if (header->sizeClass == 0) {
        std::free(header);
        return;
    }
    auto *piece = static_cast<FreePiece *>(pointer);
    piece->next = m_free[header->sizeClass];
    m_free[header->sizeClass] = piece;
}
