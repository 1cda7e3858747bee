#include "apps/desk/gui/FileDrops.h"

#include <QDialog>
#include <QDockWidget>
#include <QDropEvent>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>
#include <QUrl>

using namespace orvel::desk;

/// Where files may be dropped.
class TestFileDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void windowTakesFiles();
    void dialogTakesFiles();
    void floatingDockTakesFiles();
    void questionTakesNothing();
    void nothingIsTakenAtOtherTimes();
    void textIsRefused();

private:
    /// Drops the data on the middle of the widget, as the system does. Whether it was taken.
    static bool drop(QWidget& widget, const QMimeData& data);

    std::unique_ptr<QMainWindow> window;
    FileDrops* drops = nullptr;
    std::unique_ptr<QSignalSpy> dropped;
    bool isIdle = true;
    QMimeData files;
};

namespace {

const QStringList kPaths{QStringLiteral("/some/line.gkf"), QStringLiteral("/some/day.gsi")};

} // namespace

bool TestFileDrops::drop(QWidget& widget, const QMimeData& data)
{
    QDragEnterEvent enter(widget.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setAccepted(false);
    QCoreApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(widget.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

void TestFileDrops::init()
{
    dropped.reset();
    isIdle = true;
    files.setUrls({QUrl::fromLocalFile(kPaths[0]), QUrl(QStringLiteral("https://example.org/a")),
                   QUrl::fromLocalFile(kPaths[1])});
    window = std::make_unique<QMainWindow>();
    drops = new FileDrops(*window, [this] { return isIdle; });
    dropped = std::make_unique<QSignalSpy>(drops, &FileDrops::dropped);
    window->show();
}

void TestFileDrops::windowTakesFiles()
{
    QVERIFY(drop(*window, files));
    // Not before the drag is over.
    QCOMPARE(dropped->count(), 0);
    QTRY_COMPARE(dropped->count(), 1);
    QCOMPARE(dropped->at(0).at(0).toStringList(), kPaths);
}

void TestFileDrops::dialogTakesFiles()
{
    QDialog dialog(window.get());
    auto* journal = new QTextBrowser(&dialog);
    dialog.show();
    QVERIFY(drop(*journal->viewport(), files));
    QTRY_COMPARE(dropped->count(), 1);
}

void TestFileDrops::floatingDockTakesFiles()
{
    auto* dock = new QDockWidget(window.get());
    auto* content = new QWidget(dock);
    dock->setWidget(content);
    window->addDockWidget(Qt::BottomDockWidgetArea, dock);
    QCoreApplication::processEvents();
    dock->setFloating(true);
    QVERIFY(drop(*content, files));
    QTRY_COMPARE(dropped->count(), 1);
}

void TestFileDrops::questionTakesNothing()
{
    QMessageBox question(window.get());
    question.open();
    QVERIFY(!drop(question, files));
    QVERIFY(!drop(*window, files));
    question.reject();
    QVERIFY(drop(*window, files));
}

void TestFileDrops::nothingIsTakenAtOtherTimes()
{
    isIdle = false;
    QVERIFY(!drop(*window, files));
}

void TestFileDrops::textIsRefused()
{
    QMimeData text;
    text.setText(QStringLiteral("not a file"));
    QVERIFY(!drop(*window, text));
}

QTEST_MAIN(TestFileDrops)
#include "tst_filedrops.moc"
