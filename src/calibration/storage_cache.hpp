// Storage of the error-correction matrices and the process-wide cache of
// released storage. The per-frequency-point loops acquire and release the
// same few small shapes at every point; the cache hands the released records
// back instead of allocating each time. Unlocked: one thread at a time.
#pragma once

#include "calibration/complex.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>

namespace dsp_calib {

// Largest element count: its byte size must fit in 32 bits.
constexpr uint64_t kMaxElements = 0x0FFFFFFF;

// The library's allocation failure: a std::bad_alloc whose message is
// "bad allocation". Thrown for any failed allocation and for element counts
// beyond kMaxElements; nothing inside the library catches it.
class BadAllocation : public std::bad_alloc {
public:
    const char *what() const noexcept override;
};

// Raw bytes from the global allocator; failure throws BadAllocation. Every
// allocation of the error-correction code goes through here.
void *allocate_bytes(std::size_t bytes);
void free_bytes(void *p) noexcept;

// Called with the byte size before every allocate_bytes when set: lets tests
// and diagnostics count the allocations, or make one fail by throwing
// std::bad_alloc (which then surfaces as BadAllocation). Null by default.
using AllocationHook = void (*)(std::size_t bytes);
void set_allocation_hook(AllocationHook hook);

// One record shared by every matrix handle that refers to it. Elements are
// row-major: (i, j) at i * cols + j.
struct MatrixStorage {
    Complex *elements;
    uint32_t count;  // rows * cols
    uint32_t capacity;
    uint32_t rows;
    uint32_t cols;
    int32_t references;
};

// A record of rows x cols with one reference, taken from the cache when a
// slot holds that shape (its old element values remain: every user writes
// all elements before reading them), else newly allocated.
MatrixStorage *acquire_storage(uint32_t rows, uint32_t cols);
// A newly allocated record of rows x cols with one reference, bypassing the
// cache; elements are not initialised.
MatrixStorage *new_storage(uint32_t rows, uint32_t cols);
// Gives back a record whose reference count reached 0. Releasing the last
// live record frees the whole cache as well.
void release_storage(MatrixStorage *record);

// The cache as it stands, for diagnostics and tests.
struct CacheState {
    int32_t live;     // records acquired or made and not yet released
    int32_t reentry;  // nesting depth of cache operations (0 between calls)
    std::array<const MatrixStorage *, 4> slots;
};
CacheState cache_state();

}  // namespace dsp_calib
