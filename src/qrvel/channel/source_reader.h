// Reads one source to its end, a little at each turn of the event loop, into a spool.
#pragma once

#include <QSocketNotifier>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

#include "qrvel/base/options.h"
#include "qrvel/channel/spool.h"

namespace qrvel {

class SourceReader {
  public:
    // Called once, from the event loop; it may destroy the reader.
    using Done = std::function<void()>;

    // name: a file's, whatever its bytes are, or "-" for standard input.
    SourceReader(QByteArray name, Done done);
    ~SourceReader();
    SourceReader(const SourceReader&) = delete;
    SourceReader& operator=(const SourceReader&) = delete;

    const QByteArray& name() const { return name_; }
    // Why the source could not be read; empty when all went well.
    const QString& failure() const { return failure_; }
    qint64 bytesRead() const { return bytesRead_; }
    // The size of a regular file, 0 of anything else.
    qint64 bytesInAll() const { return bytesInAll_; }
    // What was read, whole.
    std::unique_ptr<Spool> takeSpool() { return std::move(spool_); }

  private:
    void readOn();
    void end(const QString& failure);

    QByteArray name_;
    QString failure_;
    Done done_;
    int file_;
    QSocketNotifier* notifier_ = nullptr;
    QTimer notOpened_;
    qint64 bytesRead_ = 0;
    qint64 bytesInAll_ = 0;
    std::unique_ptr<Spool> spool_ = std::make_unique<Spool>();
};

}  // namespace qrvel
