// A descriptor that pages are written to. Other than QFile it remembers the first thing that went wrong.
#pragma once

#include <unistd.h>

#include <QByteArray>
#include <QIODevice>
#include <cerrno>
#include <cstring>

namespace qrvel {

class FileDevice final : public QIODevice {
  public:
    // The descriptor stays the caller's.
    explicit FileDevice(int descriptor) : descriptor_(descriptor) { open(WriteOnly); }

    // After it nothing may be written any more. Answers what went wrong since the beginning, or nothing.
    QString finish() {
        flush();
        return error_ == 0 ? QString() : QString::fromLocal8Bit(std::strerror(error_));
    }

    qint64 size() const override { return size_; }

  protected:
    qint64 readData(char* /*bytes*/, qint64 /*most*/) override { return -1; }

    qint64 writeData(const char* bytes, qint64 count) override {
        constexpr qsizetype ENOUGH = 65536;
        waiting_.append(bytes, count);
        size_ += count;
        if (waiting_.size() >= ENOUGH) flush();
        return error_ == 0 ? count : -1;
    }

  private:
    void flush() {
        qsizetype done = 0;
        while (error_ == 0 && done < waiting_.size()) {
            const ssize_t count =
                ::write(descriptor_, waiting_.constData() + done, std::size_t(waiting_.size() - done));
            if (count < 0 && errno != EINTR) error_ = errno;
            if (count > 0) done += count;
        }
        waiting_.clear();
    }

    int descriptor_;
    int error_ = 0;
    qint64 size_ = 0;
    QByteArray waiting_;
};

}  // namespace qrvel
