// operator new of the code under test, told to fail. The program is linked so that every such call of the toolkit's
// comes here; Qt's own memory does not.
#pragma once

#include <cstddef>

namespace failing_new {

// While it lives, every allocation of at least that many bytes fails.
class Guard {
  public:
    explicit Guard(std::size_t bytes);
    ~Guard();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
};

}  // namespace failing_new
