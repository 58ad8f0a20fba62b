// A file that was named, or standard input: one picture.
#pragma once

#include <QByteArray>
#include <memory>

#include "source_reader.h"
#include "speaker.h"

namespace qrvel {

class DataChannel;

class FileSource final : public Speaker {
  public:
    // name: a file's, whatever its bytes are, or "-" for standard input. mayBeEmpty: a pipe that was found rather than
    // named; when nothing comes, there was none.
    FileSource(DataChannel& channel, QByteArray name, bool mayBeEmpty);

    void takeTurn() override;
    void giveUp() override;
    qint64 bytesDone() const override { return reader_ ? reader_->bytesRead() : 0; }
    qint64 bytesInAll() const override { return reader_ ? reader_->bytesInAll() : 0; }
    QByteArray fileName() const override { return name_ == STANDARD_INPUT ? QByteArray() : name_; }
    void shown() override;
    void refused(const QString& reason) override;

  private:
    void isRead();

    DataChannel& channel_;
    QByteArray name_;
    bool mayBeEmpty_;
    std::unique_ptr<SourceReader> reader_;
};

}  // namespace qrvel
