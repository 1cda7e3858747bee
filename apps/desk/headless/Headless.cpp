#include "apps/desk/headless/Headless.h"

#include "Orvel/store/COrvel.h"
#include "apps/common/ProtocolState.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "host/enums/EnumData.h"
#include "host/files/Error.h"
#include "host/files/QtFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace orvel::desk {

namespace {

[[noreturn]] void fail(const QString& text)
{
    throw exceptions::Error(text.toStdWString());
}

DeskRun makeRun(CommandLine::Run kind, Document& document)
{
    switch (kind) {
    case CommandLine::Run::Compile:
        return runs::makeCompile(document);
    case CommandLine::Run::Adjust:
        return runs::makeAdjust(document);
    case CommandLine::Run::L1Analysis:
        break;
    }
    return runs::makeL1Analysis(document);
}

QString makePagePath(const QString& folder, int protocolType)
{
    const QString name = QString::fromStdString(getEnumData(protocolType).getTextInternal());
    return QDir(folder).filePath(name + QStringLiteral(".html"));
}

} // namespace

Headless::Headless(Document& openDocument, ProjectWindow& projectWindow, QTextStream& outputStream)
    : document(openDocument)
    , output(outputStream)
    , monitor(&projectWindow)
{}

void Headless::execute(const CommandLine& commandLine)
{
    if (!commandLine.projectFile.isEmpty())
        projectfile::load(document, commandLine.projectFile);
    if (commandLine.levellingClass)
        document.setLevellingClass(*commandLine.levellingClass);
    if (!commandLine.recordFile.isEmpty()) {
        recorder = std::make_unique<JournalRecorder>(commandLine.recordFile, document);
        QObject::connect(recorder.get(), &JournalRecorder::failed,
                         [](const QString& reason) { fail(reason); });
        monitor.setRecorder(recorder.get());
    }
    if (!commandLine.importFile.isEmpty()) {
        document.getProject().setName(QFileInfo(commandLine.importFile).completeBaseName());
        perform(runs::makeImport(document, commandLine.importFile));
    }
    for (const CommandLine::Run kind : commandLine.runs)
        perform(makeRun(kind, document));
    if (!commandLine.exportFile.isEmpty())
        perform(runs::makeExport(document, commandLine.exportFile));

    if (!commandLine.pagesFolder.isEmpty())
        writePages(commandLine.pagesFolder);
    report(commandLine.pagesFolder);
    if (!commandLine.dataFile.isEmpty())
        copyData(commandLine.dataFile);
    if (!commandLine.saveFile.isEmpty())
        projectfile::save(document, commandLine.saveFile);
}

void Headless::perform(const DeskRun& run)
{
    monitor.startRun(run);
    monitor.waitForFinished();
    if (!run.failure->isEmpty())
        fail(*run.failure);
    if (std::find(performedTypes.begin(), performedTypes.end(), run.protocolType) == performedTypes.end())
        performedTypes.push_back(run.protocolType);
}

void Headless::writePages(const QString& folder)
{
    if (!QDir().mkpath(folder))
        fail(Desk::tr("%1: папка не создаётся").arg(folder));
    for (const int type : performedTypes) {
        const QString path = makePagePath(folder, type);
        if (!document.getProtocol().CreateProtocolFile(type, path))
            fail(Desk::tr("%1: страница не записывается").arg(path));
    }
}

void Headless::report(const QString& pagesFolder)
{
    document.updateSummary();
    const ProtocolSummary& summary = document.getSummary();
    for (const int type : performedTypes) {
        const auto found = summary.types.find(type);
        const ProtocolSummary::Counts counts =
            found == summary.types.end() ? ProtocolSummary::Counts() : found->second;
        output << Desk::tr("%1: ошибок %2, предупреждений %3, сообщений %4")
                      .arg(getTypeText(type), QString::number(counts.errors),
                           QString::number(counts.warnings), QString::number(counts.messages));
        if (!pagesFolder.isEmpty())
            output << QStringLiteral("; ") << makePagePath(pagesFolder, type);
        output << '\n';
    }
    output.flush();
}

void Headless::copyData(const QString& filePath)
{
    QtFile source(apps::readProtocolState(document.getProtocol()).dataFilePath);
    source.open(QIODevice::ReadOnly);
    QtFile target(filePath);
    target.open(QIODevice::WriteOnly);
    target.device()->write(source.device()->readAll());
    target.close();
}

} // namespace orvel::desk
