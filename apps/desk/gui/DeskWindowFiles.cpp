// What the window reads and writes: imports, exports, the project.

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/Questions.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/gui/TemplateWizard.h"
#include "host/app/Application.h"
#include "host/files/Error.h"

#include <QFileInfo>
#include <QScopedValueRollback>
#include <QStatusBar>

#include <algorithm>

namespace orvel::desk {

void DeskWindow::importFiles(const QStringList& paths)
{
    QStringList tables;
    std::vector<ImportSource> sources;
    for (const QString& path : paths) {
        if (filedialogs::isTableFile(path))
            tables.append(path);
        else if (!path.isEmpty())
            sources.push_back({path, std::nullopt});
    }
    if (isRunWorking())
        return;
    if (sources.empty()) {
        if (!tables.isEmpty())
            showTemplateWizard(tables);
        return;
    }
    importSources(sources);
    // Whoever gives up the one does not mean the other.
    if (isRunWorking())
        tablesToImport = tables;
}

void DeskWindow::showTemplateWizard(const QStringList& paths)
{
    auto* wizard = new TemplateWizard(paths, this);
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    connect(wizard, &QDialog::accepted, this, [this, wizard] {
        std::vector<ImportSource> sources;
        for (const QString& path : wizard->getFiles())
            sources.push_back({path, wizard->getFormat()});
        // The wizard is gone before there are questions.
        QMetaObject::invokeMethod(
            this, [this, sources] { importSources(sources); }, Qt::QueuedConnection);
    });
    wizard->open();
}

void DeskWindow::importSources(const std::vector<ImportSource>& sources)
{
    if (isRunWorking())
        return;
    for (const ImportSource& source : sources) {
        if (const QString reason = filedialogs::describeNoFile(source.filePath); !reason.isEmpty()) {
            Application::warning(reason, this);
            return;
        }
    }
    // Nobody is asked to give up something for nothing.
    if (const auto refusal = findRefusal(sources)) {
        startImport(runs::makeRefusedImport(sources, *refusal));
        return;
    }
    const bool isSaved = !document->getProject().getFilePath().isEmpty();
    const bool wasEmpty = document->isEmpty();
    const std::optional<ImportMode> mode = chooseMode();
    if (!mode)
        return;
    for (const ImportSource& source : sources)
        recentfiles::add(source.filePath);
    // A saved project stays what it is in its file: another network makes another project.
    const bool isOther = *mode == ImportMode::Replace && (isSaved || wasEmpty);
    startImport(
        runs::makeImport(*document, sources, *mode,
                         isOther ? QFileInfo(sources.front().filePath).completeBaseName() : QString()));
}

void DeskWindow::startImport(DeskRun run)
{
    // What the network that stays comes from is told by the import that has read it.
    run.keepsProtocol = !document->isEmpty();
    start(run);
}

/// Why the files give no network, where there is something to ask of before they take the place of the
/// present one.
std::optional<ImportRefusal> DeskWindow::findRefusal(const std::vector<ImportSource>& sources)
{
    if (document->isEmpty() && !document->isModified())
        return std::nullopt;
    const QScopedValueRollback<bool> guard(readsFiles, true);
    return runs::findRefusal(*document, sources);
}

/// How files are imported, after the questions that this asks for; nothing if the user gave up.
std::optional<ImportMode> DeskWindow::chooseMode()
{
    const bool isSaved = !document->getProject().getFilePath().isEmpty();
    const auto replace = [&]() -> std::optional<ImportMode> {
        if (isSaved && !mayLoseChanges())
            return std::nullopt;
        return ImportMode::Replace;
    };
    if (document->isEmpty())
        return replace();
    switch (
        questions::askToImport(this, document->getProject().getName(), document->getHandChanges().size())) {
    case questions::Import::Replace:
        return replace();
    case questions::Import::Add:
        return ImportMode::Add;
    case questions::Import::Cancel:
        break;
    }
    return std::nullopt;
}

void DeskWindow::exportFile(const QString& path)
{
    if (path.isEmpty())
        return;
    start(runs::makeExport(*document, path));
}

bool DeskWindow::saveFile(const QString& path)
{
    try {
        projectfile::save(*document, path, projectfile::takeLock(*document, path));
    } catch (const exceptions::Error& error) {
        Application::warning(
            Desk::tr("Проект не сохранён. %1 Выберите другое место командой «Сохранить как».")
                .arg(QString::fromStdWString(error.getText())),
            this);
        return false;
    }
    recentfiles::add(path);
    statusBar()->showMessage(Desk::tr("Проект сохранён: %1").arg(path), 5000);
    tellOfLock();
    return true;
}

void DeskWindow::tellOfLock()
{
    const std::shared_ptr<ProjectLock> lock = document->getOrigin().lock;
    const QString warning = lock ? lock->takeWarning() : QString();
    if (!warning.isEmpty())
        messageBar->showMessage(warning);
}

bool DeskWindow::save()
{
    const QString path = document->getProject().getFilePath();
    if (path.isEmpty())
        return chooseAndSave();
    if (!document->isFileChanged())
        return saveFile(path);
    switch (questions::askToOverwrite(this, path)) {
    case questions::Overwrite::Yes:
        return saveFile(path);
    case questions::Overwrite::Elsewhere:
        return chooseAndSave();
    case questions::Overwrite::No:
        break;
    }
    return false;
}

bool DeskWindow::mayBeClosed()
{
    if (document->isChecking() || readsFiles)
        return false;
    if (isRunWorking() && !questions::mayStopRun(this, *monitor))
        return false;
    // A run that still works is stopped first; this is asked again when it is over.
    return isRunWorking() || mayLoseChanges();
}

bool DeskWindow::mayLoseChanges()
{
    if (!document->isModified())
        return true;
    switch (questions::askForChanges(this, document->getProject().getName())) {
    case questions::Changes::Save:
        return save();
    case questions::Changes::Discard:
        return true;
    case questions::Changes::Keep:
        break;
    }
    return false;
}

bool DeskWindow::chooseAndSave()
{
    const QString path = filedialogs::chooseProjectTarget(this, document->getProject().getName());
    return !path.isEmpty() && saveFile(path);
}

void DeskWindow::openFile(const QString& path)
{
    if (path.isEmpty())
        return;
    if (filedialogs::isNetworkFile(path))
        importFile(path);
    else
        Q_EMIT openRequested(path);
}

/// Several files are one network; a project among them is opened, and nothing else.
void DeskWindow::openFiles(const QStringList& paths)
{
    const auto project = std::find_if_not(paths.begin(), paths.end(), &filedialogs::isNetworkFile);
    if (project != paths.end())
        openFile(*project);
    else
        importFiles(paths);
}

} // namespace orvel::desk
