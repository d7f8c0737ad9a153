#include "calibration/storage_cache.hpp"

#include <utility>

namespace dsp_calib {
namespace {

// Zero-initialised before first use: empty slots, no live record.
std::array<MatrixStorage *, 4> slots;
int32_t live_records;
// Guards the slots against an acquire or release nested inside another
// (a nested one bypasses the cache).
int32_t reentry;
AllocationHook allocation_hook;

// The record header and its elements in one block: elements follow the
// header, which keeps them aligned for doubles.
constexpr std::size_t kHeaderBytes =
    (sizeof(MatrixStorage) + alignof(Complex) - 1) / alignof(Complex) * alignof(Complex);

MatrixStorage *allocate_record(uint32_t rows, uint32_t cols)
{
    const uint64_t count = static_cast<uint64_t>(rows) * cols;
    if (count > kMaxElements) throw BadAllocation();
    unsigned char *block = static_cast<unsigned char *>(
        allocate_bytes(kHeaderBytes + static_cast<std::size_t>(count) * sizeof(Complex)));
    MatrixStorage *record = new (block) MatrixStorage;
    record->elements = reinterpret_cast<Complex *>(block + kHeaderBytes);
    record->count = static_cast<uint32_t>(count);
    record->capacity = record->count;
    record->rows = rows;
    record->cols = cols;
    record->references = 1;
    return record;
}

void free_record(MatrixStorage *record) { free_bytes(record); }

}  // namespace

const char *BadAllocation::what() const noexcept { return "bad allocation"; }

void *allocate_bytes(std::size_t bytes)
{
    try {
        if (allocation_hook) allocation_hook(bytes);
        return ::operator new(bytes);
    } catch (const std::bad_alloc &) {
        throw BadAllocation();
    }
}

void free_bytes(void *p) noexcept { ::operator delete(p); }

void set_allocation_hook(AllocationHook hook) { allocation_hook = hook; }

MatrixStorage *acquire_storage(uint32_t rows, uint32_t cols)
{
    if (++reentry == 1) {
        for (MatrixStorage *&slot : slots) {
            if (slot && slot->rows == rows && slot->cols == cols) {
                MatrixStorage *record = std::exchange(slot, nullptr);
                record->references = 1;
                --reentry;
                ++live_records;
                return record;
            }
        }
    }
    --reentry;
    return new_storage(rows, cols);
}

MatrixStorage *new_storage(uint32_t rows, uint32_t cols)
{
    // Counted only once the allocation has succeeded, so a throw leaves the
    // live count true.
    MatrixStorage *record = allocate_record(rows, cols);
    ++live_records;
    return record;
}

void release_storage(MatrixStorage *record)
{
    if (--live_records == 0) {
        for (MatrixStorage *&slot : slots) free_record(std::exchange(slot, nullptr));
        free_record(record);
        return;
    }
    if (++reentry == 1) {
        // Most recent first: insert at slot 0 and shift the occupants down
        // as far as the first empty slot; one pushed out of slot 3 is freed.
        MatrixStorage *carried = record;
        for (MatrixStorage *&slot : slots) {
            std::swap(carried, slot);
            if (!carried) break;
        }
        free_record(carried);
    } else {
        free_record(record);
    }
    --reentry;
}

CacheState cache_state()
{
    CacheState state{live_records, reentry, {}};
    for (std::size_t i = 0; i < slots.size(); ++i) state.slots[i] = slots[i];
    return state;
}

}  // namespace dsp_calib
