#include "apps/desk/process/JournalRecorder.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/reports/DeskReports.h"
#include "host/app/SDIApplication.h"
#include "host/enums/EnumData.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"
#include "host/files/WholeFile.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>

namespace orvel::desk {

namespace {

QString getScheme()
{
    return static_cast<SDIApplication*>(getApplication())->getUriScheme();
}

} // namespace

JournalRecorder::JournalRecorder(const QString& journalPath, Document& openDocument, QObject* parent)
    : QObject(parent)
    , document(openDocument)
    , file(journalPath)
{
    connect(&document, &Document::networkReplaced, this, &JournalRecorder::replaceItems);
}

JournalRecorder::~JournalRecorder()
{
    writePages();
}

void JournalRecorder::beginRun(int protocolType)
{
    if (!file.isOpen())
        writeHeader();
    if (std::find(performedTypes.begin(), performedTypes.end(), protocolType) == performedTypes.end())
        performedTypes.push_back(protocolType);
    write(QStringLiteral("begin"), {{QStringLiteral("type"), protocolType}});
}

void JournalRecorder::writeLine(const QString& command, const QString& text)
{
    write(command, {{QStringLiteral("text"), text}});
}

void JournalRecorder::finishStage()
{
    write(QStringLiteral("finishStage"));
}

void JournalRecorder::endRun(bool isInterrupted)
{
    write(isInterrupted ? QStringLiteral("interrupt") : QStringLiteral("end"));
}

/// Says why the journal cannot be written; nothing if it can.
QString JournalRecorder::openFile()
{
    try {
        ProjectLock::requireFree(file.fileName());
    } catch (const exceptions::Error& error) {
        return QString::fromStdWString(error.getText());
    }
    return file.open(QIODevice::WriteOnly) ? QString() : utils::describeReason(file.errorString());
}

void JournalRecorder::writeHeader()
{
    if (hasFailed)
        return;
    const QString failure = openFile();
    if (!failure.isEmpty()) {
        hasFailed = true;
        Q_EMIT failed(Desk::tr("Журнал «%1» не записывается: %2").arg(file.fileName(), failure));
        return;
    }
    for (const int type : {kPointItemType, kSectionItemType, kGeneralItemType})
        writeEnum(type);
    for (const deskreports::Report& report : deskreports::getReports())
        writeEnum(report.type);
    for (const int type : getProtocolTypes())
        writeEnum(type);
    QJsonObject project{{QStringLiteral("name"), document.getProject().getName()},
                        {QStringLiteral("scheme"), getScheme()},
                        {QStringLiteral("reportGenerator"), true}};
    if (QLocale().language() == QLocale::English)
        project.insert(QStringLiteral("language"), QStringLiteral("en"));
    write(QStringLiteral("project"), project);
    for (const auto& [protocolType, types] : deskreports::getTypesByProtocol()) {
        QJsonArray reports;
        for (const int type : types)
            reports.append(type);
        write(QStringLiteral("reportTypes"),
              {{QStringLiteral("type"), protocolType}, {QStringLiteral("reports"), reports}});
    }
    copyData();
    replaceItems();
}

void JournalRecorder::writeEnum(int value)
{
    const EnumData record = getEnumData(value);
    write(QStringLiteral("enum"),
          {{QStringLiteral("value"), value},
           {QStringLiteral("internal"), QString::fromStdString(record.getTextInternal())},
           {QStringLiteral("singular"), QString::fromStdWString(record.getTextSingular())},
           {QStringLiteral("plural"), QString::fromStdWString(record.getTextPlural())}});
}

/// Lays what the protocol holds already beside the journal.
void JournalRecorder::copyData()
{
    const QByteArray data = document.getProtocolData();
    if (data.isEmpty())
        return;
    const QString copy = file.fileName() + QStringLiteral(".xml");
    try {
        files::writeAll(copy, data);
    } catch (const exceptions::Error& error) {
        hasFailed = true;
        Q_EMIT failed(Desk::tr("Журнал «%1» не записывается: %2")
                          .arg(file.fileName(), QString::fromStdWString(error.getText())));
        return;
    }
    write(QStringLiteral("loadData"), {{QStringLiteral("from"), QFileInfo(copy).fileName()}});
}

void JournalRecorder::replaceItems()
{
    if (!file.isOpen())
        return;
    for (const LONGID id : items)
        write(QStringLiteral("remove"), {{QStringLiteral("id"), QString::number(id)}});
    if (!items.empty()) {
        for (const int type : document.getClearedTypes())
            write(QStringLiteral("clear"), {{QStringLiteral("type"), type}});
    }
    items.clear();
    for (const LevellingPoint* point : document.getPoints())
        addItem(point->getId(), point->getType(), point->getName());
    for (const LevellingSection* section : document.getSections())
        addItem(section->getId(), section->getType(), section->getName());
}

void JournalRecorder::addItem(LONGID id, qint64 type, const QString& name)
{
    items.push_back(id);
    write(QStringLiteral("item"), {{QStringLiteral("id"), QString::number(id)},
                                   {QStringLiteral("type"), type},
                                   {QStringLiteral("name"), name}});
}

void JournalRecorder::writePages()
{
    for (const int type : performedTypes) {
        const QString name = QString::fromStdString(getEnumData(type).getTextInternal());
        write(QStringLiteral("page"),
              {{QStringLiteral("type"), type}, {QStringLiteral("to"), name + QStringLiteral(".html")}});
    }
}

void JournalRecorder::write(const QString& command, const QJsonObject& arguments)
{
    if (!file.isOpen() || hasFailed)
        return;
    QJsonObject line = arguments;
    line.insert(QStringLiteral("do"), command);
    file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    if (file.flush())
        return;
    hasFailed = true;
    Q_EMIT failed(Desk::tr("Журнал «%1» не записывается: %2")
                      .arg(file.fileName(), utils::describeReason(file.errorString())));
}

} // namespace orvel::desk
