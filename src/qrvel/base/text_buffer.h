// Texts one behind another in a buffer of the viewer's.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <cstring>

namespace qrvel {

class TextBuffer {
  public:
    TextBuffer(char* buffer, int32_t size) : next_(buffer), room_(buffer != nullptr ? size : 0) {}

    // The text's copy in the buffer, terminated; null when it does not fit, and then nothing is taken.
    const char* add(const QByteArray& text) {
        const qsizetype length = text.size() + 1;
        if (length > room_) return nullptr;
        char* const copy = next_;
        std::memcpy(copy, text.constData(), static_cast<std::size_t>(length));
        next_ += length;
        room_ -= length;
        return copy;
    }

  private:
    char* next_;
    qsizetype room_;
};

}  // namespace qrvel
