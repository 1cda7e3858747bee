#pragma once

#include "host/app/TempFolder.h"
#include "host/host_export.h"

#include <QObject>
#include <QSet>
#include <QStandardPaths>
#include <QStringList>

/// The application: its temporary files, its installed data and its warnings. At most one exists at a time,
/// and it needs a QCoreApplication.
class HOST_EXPORT Application : public QObject
{
    Q_OBJECT

public:
    /// Makes the temporary folder. Throws qor::CFileException if that is not possible.
    explicit Application(QObject* parent = nullptr);
    /// Removes the registered files and the temporary folder.
    ~Application() override;

    /// Null when there is no application object.
    static Application* instance();

    /// Absolute path of this instance's own folder, readable by its user only and removed at the end, or by
    /// the next start when this instance is killed. Empty without an application object.
    static QString getTempFolder();
    /// Makes that folder again, empty, if somebody has removed it. A folder that is made by hand would be
    /// taken for a left one by the next start. May be called in any thread, but in one at a time.
    static void restoreTempFolder();
    /// A path in the temporary folder that no file has and that was not given before: the pattern's file name
    /// with a number for "%1", or with a number and "_" before it when it has no "%1". The file is not made.
    /// Empty without an application object.
    static QString getTmpFileName(const QString& pattern);
    /// Has the file removed when the application ends. It needn't exist.
    void registerTmpFile(const QString& path);

    /// Absolute path of installed data, or empty. Looked for, in this order, in the folder that the variable
    /// `ORVEL_DATA_DIR` of the environment names; in `share/orvel` beside the folder of the executable
    /// (installed and build tree alike); in the data folder with which this library was installed; and in
    /// `orvel` in the system's generic data locations. A file is looked for, or with LocateDirectory a
    /// folder.
    static QString locateData(const QString& name,
                              QStandardPaths::LocateOptions options = QStandardPaths::LocateFile);

    /// Shows the user a warning; `parent` is the object on whose behalf, or null. Without an application
    /// object the message goes to the standard error output.
    static void warning(const QString& message, QObject* parent);

protected:
    /// Writes the message to the standard error output, as one line.
    virtual void showWarning(const QString& message, QObject* parent);

private:
    static Application* s_instance;

    TempFolder tempFolder;
    int lastTmpFileNumber = 0;
    QSet<QString> givenFileNames;
    QStringList tmpFiles;
};

/// Application::instance().
HOST_EXPORT Application* getApplication();
