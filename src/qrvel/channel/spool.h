// Where a transmission is kept until it is whole: in memory, beyond 16 MiB in a temporary file without a name.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryFile>
#include <memory>
#include <string_view>

namespace qrvel {

class Spool {
  public:
    // Of a picture, and what is said of one with more.
    static qint64 mostBytes();
    static QString tooMuch();

    // False when the bytes cannot be kept; failure() then says why.
    bool append(const char* bytes, qint64 count);
    // Ends the appending. False like append.
    bool finish();
    // All bytes, after finish; valid as long as the spool.
    std::string_view bytes() const { return bytes_; }
    const QString& failure() const { return failure_; }

  private:
    bool moveToFile();
    bool write(const char* bytes, qint64 count);
    bool fail(const QString& reason);

    QByteArray memory_;
    std::unique_ptr<QTemporaryFile> file_;
    qint64 size_ = 0;
    std::string_view bytes_;
    QString failure_;
};

}  // namespace qrvel
