#pragma once

#include <QFile>
#include <QString>

/// A file that stands beside another until it is complete, and then takes its place.
///
/// While it is unfinished it is noted in a folder of the program's own, so that the next start can remove
/// what a killed program has left among the user's files.
class UnfinishedFile : public QFile
{
public:
    explicit UnfinishedFile(const QString& targetPath);
    /// Removes the file unless it has taken its place.
    ~UnfinishedFile() override;

    bool open(OpenMode mode) override;
    /// Whether what was written has reached the disk. The old file would be lost for a new one that is not
    /// there after a power cut.
    bool sync();
    /// Closes the file and puts it into its place.
    bool commit();

    /// Has the files of all threads noted in that folder; empty for nowhere. To be called when none is open.
    static void noteIn(const QString& folder);
    /// Removes the files that a program which has ended has noted in that folder.
    static void removeThoseNotedIn(const QString& folder);

protected:
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool fail(const QString& reason);
    void forget();

    QString target;
    QString path; ///< while there is a file
    QString note; ///< empty where none could be left
    bool hasFailed = false;
};
