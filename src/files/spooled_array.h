// An array that only grows at its end, and lies in a file without a name where it is large: the system can put what is
// not looked at there, and growing copies nothing.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "temporary_file.h"

namespace kelfiles {

template <class T>
class SpooledArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    // Elements, while they are in memory alone.
    static constexpr std::size_t MOST_IN_MEMORY = (std::size_t{16} << 20) / sizeof(T);

    SpooledArray() = default;
    ~SpooledArray() { release(); }
    SpooledArray(SpooledArray&& other) noexcept { swap(other); }
    SpooledArray& operator=(SpooledArray&& other) noexcept {
        swap(other);
        return *this;
    }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const T& back() const { return data()[size_ - 1]; }
    std::span<const T> all() const { return {data(), size_}; }
    void clear() { SpooledArray().swap(*this); }

    // Throws std::bad_alloc when there is no room; what is there stays.
    void push_back(const T& element) {
        if (size_ == capacity_) grow();
        data()[size_++] = element;
    }

  private:
    T* data() { return mapped_ != nullptr ? mapped_ : memory_.data(); }
    const T* data() const { return mapped_ != nullptr ? mapped_ : memory_.data(); }

    void swap(SpooledArray& other) noexcept {
        std::swap(memory_, other.memory_);
        std::swap(mapped_, other.mapped_);
        std::swap(file_, other.file_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    void release() {
        if (mapped_ != nullptr) munmap(mapped_, capacity_ * sizeof(T));
        if (file_ >= 0) close(file_);
    }

    void grow() {
        if (capacity_ < MOST_IN_MEMORY) {
            memory_.resize(std::min(std::max<std::size_t>(capacity_ * 2, 1024), MOST_IN_MEMORY));
            capacity_ = memory_.size();
        } else {
            growFile(capacity_ + capacity_ / 2);
        }
    }

    // Room that a file has not got yet would be asked for when it is written to, and a full disk be a signal then.
    void growFile(std::size_t capacity) {
        if (file_ < 0) file_ = openTemporaryFile();
        const auto bytes = static_cast<off_t>(capacity * sizeof(T));
        if (file_ < 0 || posix_fallocate(file_, 0, bytes) != 0) throw std::bad_alloc();
        void* const mapped = mapped_ != nullptr
                                 ? mremap(mapped_, capacity_ * sizeof(T), capacity * sizeof(T), MREMAP_MAYMOVE)
                                 : mmap(nullptr, capacity * sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0);
        if (mapped == MAP_FAILED) throw std::bad_alloc();
        const bool first = mapped_ == nullptr;
        mapped_ = static_cast<T*>(mapped);
        capacity_ = capacity;
        if (!first) return;
        std::copy_n(memory_.data(), size_, mapped_);
        memory_ = {};
    }

    std::vector<T> memory_;
    T* mapped_ = nullptr;  // of the file; null: all is in memory
    int file_ = -1;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace kelfiles
