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

#include "system/temporary_file.h"

namespace kelsystem {

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

    std::size_t size() const { return mapped_ != nullptr ? size_ : memory_.size(); }
    bool empty() const { return size() == 0; }
    T& back() { return data()[size() - 1]; }
    const T& back() const { return data()[size() - 1]; }
    std::span<const T> all() const { return {data(), size()}; }
    void clear() { SpooledArray().swap(*this); }

    // Throws std::bad_alloc when there is no room; what is there stays.
    void push_back(const T& element) {
        if (mapped_ == nullptr && memory_.size() < MOST_IN_MEMORY) {
            memory_.push_back(element);
            return;
        }
        if (size_ == capacity_) grow();
        mapped_[size_++] = element;
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

    // Room that a file has not got yet would be asked for when it is written to, and a full disk be a signal then.
    void grow() {
        const std::size_t capacity = std::max(capacity_ + capacity_ / 2, 2 * MOST_IN_MEMORY);
        if (file_ < 0) file_ = openTemporaryFile();
        if (file_ < 0 || posix_fallocate(file_, 0, static_cast<off_t>(capacity * sizeof(T))) != 0)
            throw std::bad_alloc();
        void* const mapped = mapped_ != nullptr
                                 ? mremap(mapped_, capacity_ * sizeof(T), capacity * sizeof(T), MREMAP_MAYMOVE)
                                 : mmap(nullptr, capacity * sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0);
        if (mapped == MAP_FAILED) throw std::bad_alloc();
        if (mapped_ == nullptr) {
            size_ = memory_.size();
            std::ranges::copy(memory_, static_cast<T*>(mapped));
            memory_ = {};
        }
        mapped_ = static_cast<T*>(mapped);
        capacity_ = capacity;
    }

    std::vector<T> memory_;  // empty once the file is there
    T* mapped_ = nullptr;
    int file_ = -1;
    std::size_t size_ = 0;  // of what is mapped
    std::size_t capacity_ = 0;
};

}  // namespace kelsystem
