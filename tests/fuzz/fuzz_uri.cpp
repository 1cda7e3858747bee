// Links from outside: whatever a web page hands over, the window selects an item of the user's project, opens
// one of its pages, or says why not. Nothing asks, nothing else is opened, nothing changes.

#include "apps/desk/document/Document.h"
#include "host/app/Application.h"
#include "tests/desk/DeskFixture.h"
#include "tests/fuzz/Finding.h"

#include <QApplication>
#include <QDir>
#include <QUrlQuery>

using namespace orvel::desk;
using namespace orvel::test;

namespace {

DeskFixture* desk = nullptr;
DeskWindow* window = nullptr;

void checkPages(const OpenedUrls& pages)
{
    const QString folder = Application::getTempFolder() + QLatin1Char('/');
    for (const QUrl& url : pages.getUrls()) {
        mustHold(url.isLocalFile() && url.toLocalFile().startsWith(folder), "only own pages are opened");
        QFile::remove(url.toLocalFile());
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QApplication(*argc, *argv);
    desk = new DeskFixture;
    window = desk->makeWindow(testNetworkPath(QStringLiteral("small.gkf"))).release();
    triggerAction(*window, QStringLiteral("Уравнивание"));
    window->getMonitor().waitForFinished();
    window->getDocument().setModified(false);
    window->hide(); // drawing takes most of the time
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QUrl url(QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    Document& document = window->getDocument();
    const OpenedUrls pages({QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https"),
                            QStringLiteral("orvel"), QStringLiteral("mailto")});
    const UriFollower::Answer answer = window->getUriFollower().follow(url);
    if (answer != UriFollower::Answer::Taken) {
        mustHold(pages.getUrls().isEmpty(), "what is declined opens nothing");
        window->getUriFollower().explain(url);
    } else {
        mustHold(url.scheme() == QLatin1String("orvel"), "only links of the program are followed");
        mustHold(QUrlQuery(url).queryItemValue(QStringLiteral("project"), QUrl::FullyDecoded) ==
                     document.getProject().getName(),
                 "only links into the project are followed");
    }
    QCoreApplication::sendPostedEvents();
    checkPages(pages);
    mustHold(!QApplication::activeModalWidget(), "nothing is asked");
    mustHold(!document.isModified(), "nothing changes");
    mustHold(document.getPoints().size() + document.getSections().size() > 0, "the network stays");
    return 0;
}
