#pragma once

#include <cstddef>
#include <vector>

// Memory for one HTML parse. The parser makes millions of small allocations for a large
// bookmark file and frees them all again at the end; taken from the C heap, freeing them
// costs nearly as much as parsing, and the heap then spends more time merging the freed
// pieces the next time a large block is freed. Here small pieces come from large blocks,
// a freed piece is kept for the next request of its size, and the blocks go back all at
// once when the arena is destroyed.
class ParseArena final
{
public:
    ParseArena() = default;
    ~ParseArena();
    ParseArena(const ParseArena &) = delete;
    ParseArena &operator=(const ParseArena &) = delete;

    // As malloc and free: nullptr when memory ran out.
    void *allocate(size_t size);
    void deallocate(void *pointer);

    // In the shape the parser's options take, with the arena as their user data.
    static void *allocateIn(void *arena, size_t size)
    {
        return static_cast<ParseArena *>(arena)->allocate(size);
    }
    static void deallocateIn(void *arena, void *pointer)
    {
        static_cast<ParseArena *>(arena)->deallocate(pointer);
    }

private:
    static constexpr size_t Granule = 16;
    static constexpr size_t LargestSmall = 1024;
    static constexpr size_t Classes = LargestSmall / Granule + 1;
    static constexpr size_t BlockSize = size_t(1) << 20;

    struct FreePiece
    {
        FreePiece *next;
    };

    // Starts a new block and returns its start, or nullptr when memory ran out.
    char *newBlock();

    FreePiece *m_free[Classes] = {};
    std::vector<char *> m_blocks;
    char *m_at = nullptr; // the unused rest of the newest block
    char *m_end = nullptr;
};
