#pragma once

#include <QFile>

namespace orvel::apps {

/// A file to be read, which may be a pipe or a terminal. Where that has nothing for a while, a signal that
/// ends the program ends the file, too; what there is comes at once.
class InputFile : public QFile
{
public:
    using QFile::open;
    using QFile::QFile;

    /// A pipe is open at once, also while nobody writes to it.
    bool open(OpenMode mode) override;

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 readLineData(char* data, qint64 size) override;
};

} // namespace orvel::apps
