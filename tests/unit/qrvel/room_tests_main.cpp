// The toolkit itself without a display, and without the recorder that stands in its place elsewhere.
#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>
#include <cstdint>
#include <new>

#include "failing_new.h"

extern "C" {
// The linker's names for the wrapped operator.
void* __real__Znwm(std::size_t bytes);  // NOLINT
void* __wrap__Znwm(std::size_t bytes);  // NOLINT
}

namespace {

std::size_t leastFailing = SIZE_MAX;

}  // namespace

namespace failing_new {

Guard::Guard(std::size_t bytes) {
    leastFailing = bytes;
}

Guard::~Guard() {
    leastFailing = SIZE_MAX;
}

}  // namespace failing_new

void* __wrap__Znwm(std::size_t bytes) {  // NOLINT
    if (bytes >= leastFailing) throw std::bad_alloc();
    return __real__Znwm(bytes);
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qt(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
