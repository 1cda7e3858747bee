// A host that does all that the guide for hosts asks for, but what its arguments name, and tells what became
// of it.

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/enums/EnumData.h"
#include "host/files/CTranslater.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/model/ItemTypes.h"
#include "host/window/ProjectWindow.h"

#include <QAbstractItemDelegate>
#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTextBrowser>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <cstdio>

namespace {

constexpr LONGID kPoint = 12;

struct Point : CModelElement
{
    int getType() const override { return kPointItemType; }
};

/// Counts the pages that are opened.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    Q_INVOKABLE void open(const QUrl& /*url*/) { ++opened; }

    int opened = 0;
};

/// What the program was told to leave out.
class Omissions
{
public:
    Omissions(int argc, char* argv[])
    {
        for (int i = 1; i < argc; ++i)
            names.append(QString::fromLocal8Bit(argv[i]));
    }

    bool has(const char* name) const { return names.contains(QLatin1String(name)); }

private:
    QStringList names;
};

void tell(const char* fact, const QString& value)
{
    std::printf("%s: %s\n", fact, qUtf8Printable(value));
}

void tell(const char* fact, bool value)
{
    tell(fact, value ? QStringLiteral("yes") : QStringLiteral("no"));
}

void registerPoints()
{
    registerEnumData(EnumData(kPointItemType, "LevellingPoint", "point", "points"));
}

void translateTexts()
{
    CTranslater::GetInstance().loadTranslation(
        Application::locateData(QStringLiteral("translations/orvel_en.qm")));
}

QString readPage(COrvel& protocol)
{
    QString html;
    protocol.CreateProtocolHtml(enums::Adjust, html);
    return html;
}

bool hasLine(const QString& page)
{
    return page.contains(QLatin1String("Misclosure"));
}

void tellPage(const QString& page)
{
    tell("template", page.startsWith(QLatin1String("<!DOCTYPE html>"), Qt::CaseInsensitive));
    tell("title", QRegularExpression(QStringLiteral("<h1>(.*)</h1>")).match(page).captured(1));
    tell("line", hasLine(page));
    tell("grouped", page.contains(QLatin1String(">Points (1)<")));
    tell("English captions", page.contains(QLatin1String(">Errors and warnings (")));
    tell("English groups", page.contains(QLatin1String(">General (")));
    tell("mark-up of its own", page.contains(QLatin1String("<b>12")));
}

/// Runs one processing. While it works, what a host must not do then is done if it is to be.
void runProcessing(OrvelProcessMonitor& monitor, ProjectWindow& window, const Omissions& omissions)
{
    const std::wstring name = omissions.has("escaping") ? L"R<b>12" : L"R&lt;b&gt;12";
    const bool hasStage = !omissions.has("stage");
    QSemaphore end;
    monitor.start([&end, name, hasStage](qor::IProcessMonitor& run) {
        if (hasStage)
            run.startProtocolStage(L"Residuals");
        run.writeError(L"Misclosure at " + run.getItemLink(kPoint, name) + L": 41 mm, limit 20 mm");
        run.writeError(L"Levels of two makers");
        if (hasStage)
            run.finishProtocolStage();
        end.acquire();
    });
    while (!monitor.getJournal()->toPlainText().contains(QLatin1String("Misclosure")))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);

    OrvelProcessMonitor other(&window);
    other.start([](qor::IProcessMonitor&) {});
    tell("second run", other.isRunning());
    if (omissions.has("one-run"))
        monitor.getOrvel()->ProtocolBegin(enums::Import);
    if (omissions.has("no-page"))
        readPage(*monitor.getOrvel());
    end.release();
    monitor.waitForFinished();
}

/// Whether a run does all its work, and makes the user wait, although its window is closed.
bool isWorkedOn(ProjectWindow& window, const Omissions& omissions)
{
    const bool asks = !omissions.has("question");
    std::atomic<bool> isWorkDone{false};
    {
        OrvelProcessMonitor monitor(&window);
        monitor.start([&isWorkDone, asks](qor::IProcessMonitor& run) {
            constexpr int kSteps = 100;
            for (int step = 0; step < kSteps; ++step) {
                if (asks && !run.isProcessRunning())
                    return;
                QThread::msleep(10);
            }
            isWorkDone = true;
        });
    }
    return isWorkDone;
}

/// Whether another program that opens the project finds the line: one that has none of this one's files.
bool isSaved(COrvel& protocol, CProjectModel& model, const Omissions& omissions)
{
    const orvel::SavedProtocol saved = orvel::SavedProtocol::take(protocol);
    QFile::remove(saved.state.dataFilePath);
    COrvel other(&model, QStringLiteral("survey"));
    (omissions.has("saving") ? saved.state : saved.unpack()).write(other);
    return hasLine(readPage(other));
}

} // namespace

int main(int argc, char* argv[])
{
    const Omissions omissions(argc, argv);
    std::unique_ptr<QCoreApplication> qt;
    if (omissions.has("widgets"))
        qt = std::make_unique<QCoreApplication>(argc, argv);
    else
        qt = std::make_unique<QApplication>(argc, argv);
    std::unique_ptr<SDIApplication> application;
    if (!omissions.has("application-object"))
        application = std::make_unique<SDIApplication>(QStringLiteral("survey"));
    const Browser browser;
    std::unique_ptr<ItemDelegateFactory> factory;
    if (!omissions.has("factory"))
        factory = std::make_unique<ItemDelegateFactory>();

    PluginManager plugins;
    if (!omissions.has("plugin") && !omissions.has("plugin-check"))
        plugins.load(PluginManager::locate(QStringLiteral("Orvel")));
    if (!omissions.has("application"))
        plugins.extendApplication(application.get());
    if (!factory)
        factory = std::make_unique<ItemDelegateFactory>(); // too late
    if (!omissions.has("translation") && !omissions.has("translation-in-time"))
        translateTexts();
    if (!omissions.has("type-texts"))
        registerEnumData(EnumData(enums::Adjust, "Adjust", "Adjustment", " "));

    if (!omissions.has("item-types"))
        registerPoints();
    CProject project(QStringLiteral("Line 14"));
    CCommonTervoModel model(&project);
    if (!omissions.has("model"))
        plugins.extendModel(&model);
    model.initialize();
    if (omissions.has("translation-in-time"))
        translateTexts(); // too late
    if (omissions.has("item-types"))
        registerPoints(); // too late
    if (omissions.has("model"))
        plugins.extendModel(&model); // too late
    auto point = std::make_unique<Point>();
    point->setId(kPoint);
    if (!omissions.has("items"))
        model.addItem(std::move(point));
    if (!omissions.has("query")) {
        model.setItemMentionedQuery([&model](LONGID id) {
            const auto* protocol = dynamic_cast<COrvel*>(model.getFirstItem(kOrvelItemType));
            return protocol && protocol->IsMessages(id);
        });
    }
    ProjectWindow window(&model);
    if (!omissions.has("window"))
        plugins.extendProjectGUI(&window);

    OrvelProcessMonitor monitor(&window);
    if (!omissions.has("type"))
        monitor.setProtocolType(enums::Adjust);
    tell("protocol", monitor.getOrvel() != nullptr);
    if (!monitor.getOrvel() && !omissions.has("plugin-check"))
        return 0;
    runProcessing(monitor, window, omissions);

    tellPage(readPage(*monitor.getOrvel()));
    tell("mentioned", model.isItemMentioned(kPoint));
    const std::unique_ptr<QAbstractItemDelegate> delegate(
        factory->createDelegate(kWarningReportDelegate, &model, kWarningReportProperty, nullptr));
    tell("delegate", delegate != nullptr);
    tell("link followed",
         window.navigate(QUrl(QStringLiteral("survey://generate-protocol?id=%1").arg(enums::Adjust))));
    const int opened = browser.opened;
    Q_EMIT monitor.showOrvel(enums::Adjust);
    tell("button opens a page", browser.opened > opened);
    tell("works on unseen", isWorkedOn(window, omissions));
    tell("saved", isSaved(*monitor.getOrvel(), model, omissions));
    return 0;
}

#include "guidehost.moc"
