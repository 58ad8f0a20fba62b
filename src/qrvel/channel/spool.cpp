#include "qrvel/channel/spool.h"

#include "system/memory.h"

#include <cerrno>

#include "qrvel/channel/error_text.h"

namespace qrvel {

namespace {

constexpr qint64 MOST_IN_MEMORY = qint64{16} * 1024 * 1024;

// A drawing takes several times its size when it is parsed, so half of the memory is the limit.
struct Limit {
    qint64 bytes = static_cast<qint64>(kelsystem::memoryInAll() / 2);
    QString reason = "more data than half of the memory";
};

Limit chosenLimit() {
    const qint64 bytes = qgetenv("KEL_MOST_BYTES").toLongLong();
    return bytes > 0 ? Limit{bytes, QString("more data than KEL_MOST_BYTES (%1)").arg(bytes)} : Limit{};
}

const Limit& limit() {
    static const Limit chosen = chosenLimit();
    return chosen;
}

}  // namespace

qint64 Spool::mostBytes() {
    return limit().bytes;
}

QString Spool::tooMuch() {
    return limit().reason;
}

bool Spool::fail(const QString& reason) {
    failure_ = reason;
    return false;
}

bool Spool::moveToFile() {
    file_ = std::make_unique<QTemporaryFile>();
    if (!file_->open()) return fail(file_->errorString());
    if (!write(memory_.constData(), memory_.size())) return false;
    memory_ = {};
    return true;
}

// Not by Qt, which knows no reason when the first of the bytes still find room: only the next ones are refused with
// one.
bool Spool::write(const char* bytes, qint64 count) {
    while (count > 0) {
        const ssize_t written = ::write(file_->handle(), bytes, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return fail(errorText());
        bytes += written;
        count -= written;
    }
    return true;
}

bool Spool::append(const char* bytes, qint64 count) {
    size_ += count;
    if (size_ > limit().bytes) return fail(limit().reason);
    if (!file_ && size_ <= MOST_IN_MEMORY) {
        memory_.append(bytes, count);
        return true;
    }
    if (!file_ && !moveToFile()) return false;
    return write(bytes, count);
}

bool Spool::finish() {
    if (!file_) {
        bytes_ = {memory_.constData(), static_cast<std::size_t>(memory_.size())};
        return true;
    }
    const uchar* mapped = file_->map(0, size_);
    if (mapped == nullptr) return fail(file_->errorString());
    bytes_ = {reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(size_)};
    return true;
}

}  // namespace qrvel
