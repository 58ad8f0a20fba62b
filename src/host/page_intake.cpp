#include "host/page_intake.h"

#include <utility>

namespace kelhost {

void PageIntake::append(std::string& to, std::string_view bytes) {
    if (bytes.size() <= mostBytes_ - making_->format.size() - making_->bytes.size()) {
        to += bytes;
    } else {
        making_.reset();
        tooLarge_ = true;
    }
}

void PageIntake::finish() {
    whole_ = std::exchange(making_, std::nullopt);
    tooLarge_ = false;
}

void PageIntake::take(FrameKind kind, std::string_view bytes) {
    if (mostBytes_ == 0) return;
    if (kind == FrameKind::PageBegin) {
        making_.emplace();
        append(making_->format, bytes);
    } else if (kind == FrameKind::PageData && making_) {
        append(making_->bytes, bytes);
    } else if (kind == FrameKind::PageEnd && making_) {
        finish();
    }
}

bool PageIntake::handOut(ReceivedPage& page) {
    if (whole_) {
        page = std::move(*whole_);
        whole_.reset();
        return true;
    }
    tooLarge_ = false;
    return false;
}

}  // namespace kelhost
