#include "pagearray.h"

#include <cstdlib>
#include <new>
#include <utility>

#ifdef __linux__
#include <bit>
#include <cstdint>
#include <sys/mman.h>
#endif

namespace ovtrace {

#ifdef __linux__
namespace {

constexpr std::size_t HugePage = std::size_t(1) << 21;

} // namespace
#endif

PageMemory::PageMemory(std::size_t bytes) {
#ifdef __linux__
    if (bytes >= HugePage) {
        mappingSize = bytes + HugePage;
        void* mapped =
            mmap(nullptr, mappingSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED)
            throw std::bad_alloc();
        mapping = mapped;
        const auto address = std::bit_cast<std::uintptr_t>(mapped);
        memory = static_cast<char*>(mapped) + (HugePage - address % HugePage) % HugePage;
        madvise(memory, bytes, MADV_HUGEPAGE); // a wish; nothing depends on it
        return;
    }
#endif
    memory = std::calloc(bytes, 1);
    if (memory == nullptr && bytes != 0)
        throw std::bad_alloc();
}

PageMemory::PageMemory(PageMemory&& other) noexcept
    : memory(std::exchange(other.memory, nullptr)), mapping(std::exchange(other.mapping, nullptr)),
      mappingSize(other.mappingSize) {
}

PageMemory& PageMemory::operator=(PageMemory&& other) noexcept {
    std::swap(memory, other.memory);
    std::swap(mapping, other.mapping);
    std::swap(mappingSize, other.mappingSize);
    return *this;
}

void PageMemory::shrink(std::size_t bytes) {
#ifdef __linux__
    if (mapping != nullptr) {
        const auto start =
            static_cast<std::size_t>(static_cast<char*>(memory) - static_cast<char*>(mapping));
        const std::size_t kept = start + (bytes + HugePage - 1) / HugePage * HugePage;
        if (kept < mappingSize) {
            munmap(static_cast<char*>(mapping) + kept, mappingSize - kept);
            mappingSize = kept;
        }
        return;
    }
#endif
    if (void* shrunk = std::realloc(memory, bytes); shrunk != nullptr)
        memory = shrunk;
}

PageMemory::~PageMemory() {
#ifdef __linux__
    if (mapping != nullptr) {
        munmap(mapping, mappingSize);
        return;
    }
#endif
    std::free(memory);
}

} // namespace ovtrace
