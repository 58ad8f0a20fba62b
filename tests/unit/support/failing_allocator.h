// malloc and calloc of the code under test, told to fail. The test programs are linked so that every such call of the
// viewer's comes here; the C++ library's own memory does not.
#pragma once

#include <cstddef>

namespace failing_allocator {

// The n-th allocation from now on fails (0: the next one), once.
void failAfter(int n);

// Every allocation of exactly that many bytes fails until reset.
void failSize(std::size_t bytes);

void reset();

// Allocations since the last reset.
int count();

// Resets at the end of a test, whatever happens in it.
struct Guard {
    Guard() { reset(); }
    ~Guard() { reset(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
};

}  // namespace failing_allocator
