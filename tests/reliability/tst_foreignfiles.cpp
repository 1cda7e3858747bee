#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/document/StoredProject.h"
#include "apps/desk/gui/DeskPages.h"
#include "host/files/CFileException.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/DeskProcess.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace orvel::desk;
using namespace orvel::test;

/// Files that somebody else made or laid in wait lead nowhere.
class TestForeignFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linkLaidInThePlaceOfADataFileIsNotFollowed();
    void linkLaidInThePlaceOfAPageIsNotFollowed();
    void filesOfTheApplicationAreForItsUserOnly();
    void instancesSideBySideKeepApart();
    void pagesThatAProjectNamesAreNotLinked_data();
    void pagesThatAProjectNamesAreNotLinked();
    void aProjectDoesNotSayWhereTheDataFileLies();
    void projectThatCannotBeComputedWithIsRefused();
    void projectNameIsNoPath();

private:
    DeskFixture desk;
};

namespace {

using Change = std::function<void(StoredProject&)>;

/// A project file of a small network with a protocol of one line, changed before it is written.
void writeProject(DeskFixture& desk, const QString& path, const Change& change)
{
    Document document(desk.plugins, QStringLiteral("P"));
    document.setNetwork(levelling::GkfReader::readFile(samplePath(QStringLiteral("blunder.gkf"))).network);
    const std::wstring link = document.getProtocol().GetItemLink(document.getPoints()[0]->getId(), L"point");
    document.getProtocol().ProtocolBegin(enums::Adjust);
    document.getProtocol().AddMessageRaw(QString::fromStdWString(link), enums::Adjust, COVMessage::Error);
    document.getProtocol().ProtocolEnd(enums::Adjust);

    StoredProject project;
    project.name = document.getProject().getName();
    project.content = document.copyContent();
    project.protocol = orvel::SavedProtocol::take(document.getProtocol());
    change(project);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    storedproject::write(project, buffer);
    writeFile(path, buffer.data());
}

mode_t modeOf(const QString& path)
{
    struct stat status
    {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

} // namespace

void TestForeignFiles::linkLaidInThePlaceOfADataFileIsNotFollowed()
{
    const QString prey = desk.path(QStringLiteral("prey"));
    writeFile(prey, "precious");
    Document document(desk.plugins, QStringLiteral("P"));
    document.getProtocol().ProtocolBegin(enums::Import);
    const QString first = orvel::ProtocolState::read(document.getProtocol()).dataFilePath;

    // The next names, as far as anybody could guess them.
    const QString number = QFileInfo(first).baseName().section(QLatin1Char('_'), -1);
    for (int i = 1; i <= 50; ++i) {
        QString name = first;
        name.replace(QStringLiteral("_%1.xml").arg(number),
                     QStringLiteral("_%1.xml").arg(number.toInt() + i));
        QCOMPARE(symlink(QFile::encodeName(prey).constData(), QFile::encodeName(name).constData()), 0);
    }
    Document other(desk.plugins, QStringLiteral("Q"));
    other.getProtocol().ProtocolBegin(enums::Import);
    other.getProtocol().ProtocolEnd(enums::Import);
    const QString second = orvel::ProtocolState::read(other.getProtocol()).dataFilePath;
    QVERIFY(!QFileInfo(second).isSymLink());
    QVERIFY(QFileInfo(second).isFile());
    QCOMPARE(readFile(prey), QByteArray("precious"));
    for (const QFileInfo& file : QDir(Application::getTempFolder()).entryInfoList(QDir::Files)) {
        if (file.isSymLink())
            QVERIFY(QFile::remove(file.filePath()));
    }
}

void TestForeignFiles::linkLaidInThePlaceOfAPageIsNotFollowed()
{
    const QString prey = desk.path(QStringLiteral("prey2"));
    writeFile(prey, "precious");
    // What is copied from the installed template goes there under known names.
    const QString page = Application::getTempFolder() + QStringLiteral("/protocol.html");
    QVERIFY(QFile::remove(page));
    QVERIFY(QFile::link(prey, page));
    auto window = desk.makeWindow();
    window->getPages().showProtocol(enums::Adjust);
    QCOMPARE(readFile(prey), QByteArray("precious"));
    QVERIFY(!QFileInfo(page).isSymLink());
    QVERIFY(!QFileInfo(desk.opened.getPaths().last()).isSymLink());
}

void TestForeignFiles::filesOfTheApplicationAreForItsUserOnly()
{
    QCOMPARE(modeOf(Application::getTempFolder()), mode_t(0700));
    QCOMPARE(QFileInfo(Application::getTempFolder()).ownerId(), uint(geteuid()));
    // mkdtemp: nobody can lay out a folder of that name before.
    QVERIFY(QFileInfo(Application::getTempFolder()).fileName().section(QLatin1Char('-'), -1).size() >= 6);
}

void TestForeignFiles::instancesSideBySideKeepApart()
{
    const QTemporaryDir folder;
    const QTemporaryDir temp;
    QVERIFY(qputenv("TMPDIR", QFile::encodeName(temp.path())));
    const QByteArray page = readFile(Application::getTempFolder() + QStringLiteral("/protocol.html"));
    const DeskProcess other = DeskProcess::run(
        folder.path(), {QStringLiteral("--import"), samplePath(QStringLiteral("blunder.gkf")),
                        QStringLiteral("--run"), QStringLiteral("adjust")});
    qunsetenv("TMPDIR");
    QCOMPARE(other.exitCode, 0);
    // The other one leaves nothing behind, and this one's files as they were.
    QCOMPARE(QDir(temp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    QCOMPARE(readFile(Application::getTempFolder() + QStringLiteral("/protocol.html")), page);
}

void TestForeignFiles::pagesThatAProjectNamesAreNotLinked_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("file of the system") << QStringLiteral("/etc/passwd");
    QTest::newRow("way up") << QStringLiteral("../../../../../../../../../../etc/passwd");
    QTest::newRow("file address") << QStringLiteral("file:///etc/passwd");
    QTest::newRow("web address") << QStringLiteral("https://example.org/");
    QTest::newRow("script") << QStringLiteral("javascript:alert(1)");
    QTest::newRow("mark-up") << QStringLiteral("\"><script>alert(1)</script>");
    QTest::newRow("an existing page") << QStringLiteral(DESK_EXPECTED "/Adjust.html");
}

void TestForeignFiles::pagesThatAProjectNamesAreNotLinked()
{
    QFETCH(QString, page);
    const QString path = desk.path(QStringLiteral("foreign.orvel"));
    writeProject(desk, path,
                 [&](StoredProject& project) { project.protocol.state.pages[enums::Adjust] = page; });
    Document document(desk.plugins, QStringLiteral("empty"));
    projectfile::load(document, path);
    QString html;
    document.getProtocol().CreateItemHtml(document.getPoints()[0]->getId(), html);
    QVERIFY(html.contains(
        QStringLiteral("<a href=\"orvel://generate-protocol?id=%1&project=P\">").arg(int(enums::Adjust))));
    QVERIFY(!html.contains(page));
}

void TestForeignFiles::aProjectDoesNotSayWhereTheDataFileLies()
{
    const QString path = desk.path(QStringLiteral("foreign.orvel"));
    const QString prey = desk.path(QStringLiteral("prey3"));
    writeFile(prey, "precious");
    writeProject(desk, path, [&](StoredProject& project) { project.protocol.state.dataFilePath = prey; });
    Document document(desk.plugins, QStringLiteral("empty"));
    projectfile::load(document, path);
    document.getProtocol().ProtocolBegin(enums::Import);
    document.getProtocol().ProtocolEnd(enums::Import);
    QCOMPARE(QFileInfo(orvel::ProtocolState::read(document.getProtocol()).dataFilePath).path(),
             Application::getTempFolder());
    QCOMPARE(readFile(prey), QByteArray("precious"));
}

void TestForeignFiles::projectThatCannotBeComputedWithIsRefused()
{
    const QString path = desk.path(QStringLiteral("foreign.orvel"));
    writeProject(desk, path, [](StoredProject& project) { project.content.parameters.sigmaApriori = -1.0; });
    Document document(desk.plugins, QStringLiteral("empty"));
    QString reason;
    try {
        projectfile::load(document, path);
    } catch (const qor::CFileException& error) {
        reason = QString::fromStdWString(error.getDescription());
    }
    QCOMPARE(reason, path + QStringLiteral(": файл проекта повреждён или обрезан"));
    QCOMPARE(document.getProject().getName(), QStringLiteral("empty"));
    QVERIFY(document.isEmpty());
    QCOMPARE(orvel::ProtocolState::read(document.getProtocol()).dataFilePath, QString());
}

void TestForeignFiles::projectNameIsNoPath()
{
    const QString path = desk.path(QStringLiteral("foreign.orvel"));
    writeProject(desk, path,
                 [](StoredProject& project) { project.name = QStringLiteral("../../x/%1\"<b>"); });
    Document document(desk.plugins, QStringLiteral("empty"));
    projectfile::load(document, path);
    const QStringList before = QDir(Application::getTempFolder()).entryList(QDir::Files);
    const std::wstring link = document.getProtocol().GetItemLink(5, L"t");
    QVERIFY(QString::fromStdWString(link).endsWith(
        QStringLiteral("&project=..%2F..%2Fx%2F%251%22%E2%80%B9b%E2%80%BA\">t</a>")));
    document.getProtocol().ProtocolBegin(enums::Import);
    document.getProtocol().ProtocolEnd(enums::Import);
    // Nothing but what it had anyway.
    QCOMPARE(QDir(Application::getTempFolder()).entryList(QDir::Files), before);
}

QTEST_MAIN(TestForeignFiles)
#include "tst_foreignfiles.moc"
