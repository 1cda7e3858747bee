#pragma once

#include "host/host_export.h"

#include <QIODevice>
#include <QString>

#include <memory>

class QFileDevice;

/// A file that reports every failure as a qor::CFileException, whose description names the file and the
/// reason.
///
/// What is written goes to a file beside the target, which replaces the target on close(): whatever happens
/// before, the old file stays whole. An old file that this program has failed to read keeps a second name
/// beside its own when it is replaced, and the user is told: what it holds may be missing in the new one.
/// Where the path leads to a device or a pipe, it is written directly; a path like /dev/stdout is written
/// where that stream stands. A link that another user has laid into a folder where everybody may, like /tmp,
/// is not followed for writing.
class HOST_EXPORT QtFile
{
public:
    /// The file @p filePath, which is not touched before open().
    explicit QtFile(const QString& filePath);
    QtFile(const QtFile&) = delete;
    QtFile& operator=(const QtFile&) = delete;
    /// Without close() before, gives up what was written.
    ~QtFile();

    /// Opens for reading (QIODevice::ReadOnly) or for writing from the start (QIODevice::WriteOnly), with or
    /// without QIODevice::Text; other ways of writing are refused. A file that is open is given up first.
    void open(QIODevice::OpenMode mode);
    /// The open device, else null. Valid until close().
    QIODevice* device() const;
    /// Puts the written file into place. Throws if that fails, or if any read or write has failed since
    /// open(); the file is closed then, and the old one stays. Does nothing when no file is open.
    void close();

private:
    void openForReading(QIODevice::OpenMode mode);
    void openForWriting(QIODevice::OpenMode mode);
    void openDescriptor(int descriptor, QIODevice::OpenMode mode);

    QString path;
    std::unique_ptr<QFileDevice> file;
};
