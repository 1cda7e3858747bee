#pragma once

#include "host/model/LongId.h"

#include <QFile>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <vector>

namespace orvel::desk {

class Document;

/// Records the runs on a document as a journal that can be replayed elsewhere: one JSON object per line.
///
/// The journal begins with the project as it is at the first run. Every line is in the file at once, so that
/// a journal tells of a crash, too.
class JournalRecorder : public QObject
{
    Q_OBJECT

public:
    /// The document outlives the recorder.
    JournalRecorder(const QString& journalPath, Document& openDocument, QObject* parent = nullptr);
    /// Ends the journal by the pages of all runs, named by their types, like "Adjust.html".
    ~JournalRecorder() override;

    void beginRun(int protocolType);
    /// One of the "do" words for lines and stages.
    void writeLine(const QString& command, const QString& text);
    void finishStage();
    void endRun(bool isInterrupted);

Q_SIGNALS:
    /// The journal cannot be written; it stays as it is.
    void failed(const QString& reason);

private:
    QString openFile();
    void writeHeader();
    void writeEnum(int value);
    void copyData();
    void replaceItems();
    void addItem(LONGID id, qint64 type, const QString& name);
    void writePages();
    void write(const QString& command, const QJsonObject& arguments = {});

    Document& document;
    QFile file;
    bool hasFailed = false;
    std::vector<LONGID> items; ///< those that the journal has added
    std::vector<int> performedTypes;
};

} // namespace orvel::desk
