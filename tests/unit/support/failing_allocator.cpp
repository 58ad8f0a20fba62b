#include "failing_allocator.h"

extern "C" {
// The linker's names for the wrapped functions.
void* __real_malloc(std::size_t bytes);                     // NOLINT
void* __real_calloc(std::size_t count, std::size_t bytes);  // NOLINT
void* __wrap_malloc(std::size_t bytes);                     // NOLINT
void* __wrap_calloc(std::size_t count, std::size_t bytes);  // NOLINT
}

namespace {

int countdown = -1;
std::size_t failingSize = 0;
int allocations = 0;

bool mustFail(std::size_t bytes) {
    ++allocations;
    if (failingSize != 0 && bytes == failingSize) return true;
    if (countdown < 0) return false;
    return countdown-- == 0;
}

}  // namespace

namespace failing_allocator {

void failAfter(int n) {
    countdown = n;
}

void failSize(std::size_t bytes) {
    failingSize = bytes;
}

void reset() {
    countdown = -1;
    failingSize = 0;
    allocations = 0;
}

int count() {
    return allocations;
}

}  // namespace failing_allocator

void* __wrap_malloc(std::size_t bytes) {  // NOLINT
    return mustFail(bytes) ? nullptr : __real_malloc(bytes);
}

void* __wrap_calloc(std::size_t count, std::size_t bytes) {  // NOLINT
    return mustFail(count * bytes) ? nullptr : __real_calloc(count, bytes);
}
