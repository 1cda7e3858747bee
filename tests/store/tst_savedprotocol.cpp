#include "Orvel/store/SavedProtocol.h"
#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QFile>
#include <QtTest>

using orvel::ProtocolState;
using orvel::SavedProtocol;

namespace {

void writeRun(COrvel& protocol)
{
    protocol.ProtocolBegin(enums::Import);
    protocol.AddMessageRaw(QStringLiteral("<a href=\"id=5\">5</a>: read twice"), enums::Import,
                           COVMessage::Warning);
    protocol.ProtocolEnd(enums::Import);
}

SavedProtocol throughArchive(const SavedProtocol& saved)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    saved.save(saving);
    buffer.seek(0);
    CQtArchive loading(&buffer, CQtArchive::Load);
    return SavedProtocol::load(loading);
}

QString getPage(COrvel& protocol)
{
    QString html;
    protocol.CreateProtocolHtml(enums::Import, html);
    return html;
}

} // namespace

/// A protocol goes into a project and comes out of it.
class TestSavedProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateIsReadAndWritten();
    void projectKeepsTheProtocol();
    void linesComeOutInAFileOfTheirOwn();
    void pagesAreLeftBehind();
    void protocolBeforeItsFirstRunHasNoFile();
    void countOverItsLimitIsRefused();
    void dataThatEndsEarlyIsRefused();
};

void TestSavedProtocol::stateIsReadAndWritten()
{
    ProtocolFixture f;
    ProtocolState state;
    state.ids = {-7, 5};
    state.pages = {{enums::Adjust, QStringLiteral("/tmp/a.html")}};
    state.dataFilePath = QStringLiteral("/tmp/d.xml");
    state.write(f.protocol);

    QVERIFY(f.protocol.IsMessages(-7));
    const ProtocolState read = ProtocolState::read(f.protocol);
    QCOMPARE(read.ids, state.ids);
    QCOMPARE(read.pages, state.pages);
    QCOMPARE(read.dataFilePath, state.dataFilePath);
}

void TestSavedProtocol::projectKeepsTheProtocol()
{
    ProtocolFixture f;
    writeRun(f.protocol);
    const QString page = getPage(f.protocol);
    const SavedProtocol loaded = throughArchive(SavedProtocol::take(f.protocol));

    COrvel other(&f.model, QStringLiteral("survey"));
    loaded.unpack().write(other);
    QVERIFY(other.IsMessages(5));
    QVERIFY(page.contains(QStringLiteral("read twice")));
    QCOMPARE(getPage(other), page);
}

void TestSavedProtocol::linesComeOutInAFileOfTheirOwn()
{
    ProtocolFixture f;
    writeRun(f.protocol);
    const SavedProtocol saved = SavedProtocol::take(f.protocol);
    QCOMPARE(saved.data, readFile(saved.state.dataFilePath));

    const ProtocolState first = saved.unpack();
    const ProtocolState second = saved.unpack();
    QVERIFY(first.dataFilePath != saved.state.dataFilePath);
    QVERIFY(first.dataFilePath != second.dataFilePath);
    QVERIFY(first.dataFilePath.startsWith(Application::getTempFolder()));
    QCOMPARE(readFile(first.dataFilePath), saved.data);
}

void TestSavedProtocol::pagesAreLeftBehind()
{
    ProtocolFixture f;
    SavedProtocol saved;
    saved.state.ids = {5};
    saved.state.pages = {{enums::Adjust, QStringLiteral("/etc/passwd")}};

    const ProtocolState unpacked = throughArchive(saved).unpack();
    QCOMPARE(unpacked.ids, saved.state.ids);
    QVERIFY(unpacked.pages.empty());
}

void TestSavedProtocol::protocolBeforeItsFirstRunHasNoFile()
{
    ProtocolFixture f;
    const SavedProtocol saved = throughArchive(SavedProtocol::take(f.protocol));
    QVERIFY(saved.data.isEmpty());
    QCOMPARE(saved.unpack().dataFilePath, QString());
}

void TestSavedProtocol::countOverItsLimitIsRefused()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    saving << quint32(0) << quint32(101);
    buffer.seek(0);
    CQtArchive loading(&buffer, CQtArchive::Load);
    try {
        SavedProtocol::load(loading);
        QFAIL("101 pages were taken");
    } catch (const qor::CFileException& error) {
        QCOMPARE(error.getCode(), 1);
    }
}

void TestSavedProtocol::dataThatEndsEarlyIsRefused()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    saving << quint32(0) << quint32(0);
    buffer.seek(0);
    CQtArchive loading(&buffer, CQtArchive::Load);
    QVERIFY_EXCEPTION_THROWN(SavedProtocol::load(loading), qor::CFileException);
}

QTEST_GUILESS_MAIN(TestSavedProtocol)
#include "tst_savedprotocol.moc"
