#include "apps/desk/headless/Headless.h"

#include "Orvel/store/COrvel.h"
#include "apps/common/TerminationSignals.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/print/ReportFile.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/reports/PageLook.h"
#include "apps/desk/runs/RunKinds.h"
#include "apps/desk/templates/TemplateFile.h"
#include "apps/desk/tolerances/ToleranceFile.h"
#include "host/enums/EnumData.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

QString makePagePath(const QString& folder, int protocolType)
{
    const QString name = QString::fromStdString(getEnumData(protocolType).getTextInternal());
    return QDir(folder).filePath(name + QStringLiteral(".html"));
}

} // namespace

Headless::Headless(Document& openDocument, ProjectWindow& projectWindow, Complain complainFunction)
    : document(openDocument)
    , picture(openDocument)
    , complain(std::move(complainFunction))
    , monitor(&projectWindow)
{}

int Headless::execute(const CommandLine& commandLine)
{
    if (load(commandLine))
        performAll(commandLine);
    // Its last lines may fail, too.
    monitor.setRecorder(nullptr);
    recorder.reset();
    return exitCode;
}

void Headless::performAll(const CommandLine& commandLine)
{
    if (commandLine.levellingClass)
        document.setLevellingClass(*commandLine.levellingClass);
    if (toleranceRules)
        document.setToleranceRules(*toleranceRules);
    if (!commandLine.recordFile.isEmpty())
        startRecording(commandLine.recordFile);

    bool hasInput = true;
    if (!commandLine.imports.empty())
        hasInput = import(commandLine.sigma);
    if (hasInput) {
        for (const int protocolType : commandLine.runs)
            perform(runs::make(protocolType, document));
        if (!commandLine.exportFile.isEmpty())
            perform(runs::makeExport(document, commandLine.exportFile));
    }

    // What an interrupted run has done is no result to be kept.
    if (apps::TerminationSignals::hasCome())
        return;
    for (const CommandLine::ReportFile& file : commandLine.reports) {
        if (hasInput)
            writeReport(file);
    }
    if (!commandLine.pagesFolder.isEmpty())
        writePages(commandLine.pagesFolder);
    if (!commandLine.dataFile.isEmpty())
        copyData(commandLine.dataFile);
    // Without a network there is no project, and an earlier one of that name is worth more.
    if (!commandLine.saveFile.isEmpty() && hasInput)
        save(commandLine.saveFile);
    report(commandLine);
    judge(commandLine.failLevel);
}

/// Whether all files have given their part of the network.
bool Headless::import(const std::optional<SectionSigma>& sigma)
{
    const QString& firstFile = sources.front().filePath;
    const QString name =
        standardstreams::isStream(firstFile) ? QString() : QFileInfo(firstFile).completeBaseName();
    ImportMode mode = ImportMode::Replace;
    for (const std::vector<ImportSource>& group : groupSources(sources)) {
        const QString newName = mode == ImportMode::Replace ? name : QString();
        if (!perform(runs::makeImport(document, group, mode, newName, sigma)))
            return false;
        mode = ImportMode::Add;
    }
    return true;
}

bool Headless::load(const CommandLine& commandLine)
{
    try {
        for (const CommandLine::ImportFile& file : commandLine.imports) {
            sources.push_back({file.path, std::nullopt});
            if (!file.templateFile.isEmpty())
                sources.back().format = templatefile::read(file.templateFile);
        }
        if (!commandLine.toleranceFile.isEmpty())
            toleranceRules = tolerancefile::read(commandLine.toleranceFile);
        // A project that is only read may be open elsewhere: it is always whole.
        if (!commandLine.saveFile.isEmpty())
            lock = ProjectLock::take(commandLine.saveFile);
        if (!commandLine.projectFile.isEmpty())
            projectfile::load(document, commandLine.projectFile);
    } catch (const exceptions::Error& error) {
        fail(Refused, QString::fromStdWString(error.getText()));
        return false;
    }
    return true;
}

void Headless::startRecording(const QString& path)
{
    recorder = std::make_unique<JournalRecorder>(path, document);
    QObject::connect(recorder.get(), &JournalRecorder::failed,
                     [this](const QString& reason) { fail(Refused, reason); });
    monitor.setRecorder(recorder.get());
}

/// Whether the run did what it is for.
bool Headless::perform(const DeskRun& run)
{
    if (apps::TerminationSignals::hasCome() || !checkProtocol())
        return false;
    monitor.startRun(run);
    monitor.waitForFinished();
    if (apps::TerminationSignals::hasCome())
        return false;
    performedTypes.erase(std::remove(performedTypes.begin(), performedTypes.end(), run.protocolType),
                         performedTypes.end());
    // What there is of the type after an interruption, or when the file was not written, is an earlier run's.
    if (monitor.wasInterrupted())
        checkProtocol();
    else if (checkProtocol(run.protocolType))
        performedTypes.push_back(run.protocolType);
    if (run.failure->kind == RunFailure::Kind::None)
        return true;
    fail(run.failure->kind == RunFailure::Kind::NoResult ? NoResult : Refused, run.failure->text);
    return false;
}

void Headless::writeReport(const CommandLine::ReportFile& file)
{
    const deskreports::Report report = *deskreports::find(file.type);
    if (report.needsResults && !document.hasResults()) {
        fail(NoResult,
             Desk::tr("ведомость «%1» составляется по результатам, а сеть не уравнена").arg(report.title));
        return;
    }
    try {
        ProjectLock::requireFree(file.path);
        const auto make = deskreports::prepare(document, report, [this] { return picture.draw(); });
        standardstreams::write(file.path, reportfile::make(make(), file.path));
    } catch (const exceptions::Error& error) {
        fail(Refused, QString::fromStdWString(error.getText()));
    }
}

void Headless::writePages(const QString& folder)
{
    if (!QDir().mkpath(folder)) {
        fail(Refused, Desk::tr("не удалось создать папку «%1»: %2")
                          .arg(folder, utils::describeReason(qt_error_string())));
        return;
    }
    for (const int type : performedTypes)
        writePage(type, makePagePath(folder, type));
    if (const QString lack = pagelook::describeLack(); !lack.isEmpty())
        fail(Refused, lack);
}

void Headless::writePage(int type, const QString& path)
{
    const ProtocolKeeper::Outcome before = document.checkProtocol();
    ProtocolKeeper::Outcome after;
    bool isWritten = false;
    if (before.isWhole) {
        if (!before.message.isEmpty())
            fail(Refused, before.message);
        isWritten = document.getProtocol().CreateProtocolFile(type, path);
        after = document.checkProtocol();
    }
    // A page whose lines have had to be restored was made without them.
    const QString& reason = before.isWhole ? after.message : before.message;
    if (isWritten && !reason.isEmpty())
        QFile::remove(path);
    if (isWritten && reason.isEmpty()) {
        pages[type] = path;
        return;
    }
    const QString failure = QFileInfo(path).isFile()
                                ? Desk::tr("не удалось записать страницу «%1», там осталась прежняя")
                                : Desk::tr("не удалось записать страницу «%1»");
    fail(Refused, reason.isEmpty() ? failure.arg(path) : failure.arg(path) + QStringLiteral(": ") + reason);
}

void Headless::copyData(const QString& filePath)
{
    if (!checkProtocol())
        return;
    const QByteArray data = document.getProtocolData();
    if (data.isEmpty()) {
        fail(Refused, Desk::tr("в проекте нет протоколов, копировать в «%1» нечего").arg(filePath));
        return;
    }
    try {
        ProjectLock::requireFree(filePath);
        standardstreams::write(filePath, data);
    } catch (const exceptions::Error& error) {
        fail(Refused, QString::fromStdWString(error.getText()));
    }
}

/// Whether the lines of the protocols are all there.
bool Headless::checkProtocol(std::optional<int> finishedRun)
{
    const ProtocolKeeper::Outcome outcome = document.checkProtocol(finishedRun);
    if (!outcome.message.isEmpty())
        fail(Refused, outcome.message);
    return outcome.isWhole;
}

void Headless::save(const QString& filePath)
{
    if (!checkProtocol())
        return;
    try {
        if (lock->isOf(document.getProject().getFilePath()) && document.isFileChanged())
            throw exceptions::Error(
                Desk::tr("Проект «%1» не сохранён: другая программа изменила его тем временем.")
                    .arg(filePath)
                    .toStdWString());
        projectfile::save(document, filePath, lock);
        if (const QString warning = lock->takeWarning(); !warning.isEmpty())
            complain(warning);
    } catch (const exceptions::Error& error) {
        fail(Refused, QString::fromStdWString(error.getText()));
    }
}

void Headless::report(const CommandLine& commandLine)
{
    QString text;
    for (const int type : performedTypes) {
        const ProtocolSummary::Counts counts = getCounts(type);
        text += Desk::tr("%1: ошибок %2, предупреждений %3, сообщений %4")
                    .arg(getTypeText(type), QString::number(counts.errors), QString::number(counts.warnings),
                         QString::number(counts.messages));
        const auto page = pages.find(type);
        if (page != pages.end())
            text += QStringLiteral("; ") + utils::escapeControls(page->second);
        text += QLatin1Char('\n');
    }
    if (text.isEmpty())
        return;
    // What was sent to the standard output has it for itself.
    const bool isOutputTaken =
        standardstreams::isOutput(commandLine.exportFile) || standardstreams::isOutput(commandLine.dataFile);
    const QString stream = isOutputTaken ? QStringLiteral("/dev/stderr") : QStringLiteral("/dev/stdout");
    try {
        standardstreams::write(stream, text.toLocal8Bit());
    } catch (const exceptions::Error& error) {
        fail(Refused, QString::fromStdWString(error.getText()));
    }
}

void Headless::judge(CommandLine::FailLevel level)
{
    ProtocolSummary::Counts all;
    for (const int type : performedTypes) {
        const ProtocolSummary::Counts counts = getCounts(type);
        all.errors += counts.errors;
        all.warnings += counts.warnings;
    }
    const bool isReached = (level != CommandLine::FailLevel::Never && all.errors > 0) ||
                           (level == CommandLine::FailLevel::Warning && all.warnings > 0);
    if (isReached)
        fail(NoResult, Desk::tr("достигнут уровень --fail-on: ошибок %1, предупреждений %2")
                           .arg(QString::number(all.errors), QString::number(all.warnings)));
}

ProtocolSummary::Counts Headless::getCounts(int protocolType) const
{
    const auto& types = document.getSummary().types;
    const auto found = types.find(protocolType);
    return found == types.end() ? ProtocolSummary::Counts() : found->second;
}

void Headless::fail(ExitCode code, const QString& text)
{
    complain(text);
    exitCode = std::max(exitCode, static_cast<int>(code));
}

} // namespace orvel::desk
