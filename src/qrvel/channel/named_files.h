// The files that a drawing names itself (HPGL_FILE): which of them may be read, and what goes on meanwhile.
//
// The viewer reads such a file in one piece, while it takes the end of a transmission. Windows, hosts and signals are
// seen to between its pieces; the viewer itself hears of nothing before the end.
#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <optional>

#include "platform/regular_file.h"

namespace qrvel {

class NamedFiles final : public FileGuard {
  public:
    // Has its say as long as it lives; one at a time.
    NamedFiles() { guardRegularFiles(this); }
    ~NamedFiles() override { guardRegularFiles(nullptr); }
    NamedFiles(const NamedFiles&) = delete;
    NamedFiles& operator=(const NamedFiles&) = delete;

    // Another transmission comes. folder: of a person's file, which may name what lies there or below; a host may name
    // any file.
    void begin(std::optional<QByteArray> folder);
    // The user has had enough of it.
    void breakOff();

    bool isReading() const { return bytes_ > 0; }
    qint64 bytesRead() const { return bytesRead_; }
    qint64 bytesInAll() const { return bytes_; }
    // Why the drawing has not got what it named, or not all of it; nothing when it has.
    const QString& problem() const { return problem_; }

    bool mayOpen(const char* name, int descriptor, uint64_t bytes) override;
    bool mayGoOn(uint64_t bytesRead) override;

  private:
    std::optional<QByteArray> folder_;
    qint64 bytes_ = 0;
    qint64 bytesRead_ = 0;
    std::chrono::steady_clock::time_point seenToOthers_;
    QString problem_;
};

}  // namespace qrvel
