#include "Orvel/store/COrvel.h"
#include "Orvel/store/ProtocolTypes.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/DeskSession.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "tests/desk/DeskFixture.h"
#include "tests/reliability/OtherUser.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QDirIterator>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace orvel::desk;
using namespace orvel::test;

/// Two users work at the same time, and their files lie in the same folder for temporary files.
class TestTwoUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void filesAreOutOfReachOfTheOtherUser();
    void instancesKeepApart_data();
    void instancesKeepApart();
    void linkReachesTheInstanceOfItsUser_data();
    void linkReachesTheInstanceOfItsUser();
    void linkIsNotGivenToTheOtherUsersSocket();
    void linkIsNotGivenToSocketsInTheWorkingFolder();

private:
    DeskWindow& window() { return session->getWindow(); }
    /// A project of blunder.gkf with a data file and a page.
    void work();
    void startOther(OtherUsersProcess& process, const QStringList& arguments, const QString& runtimeFolder);
    /// The temporary folders of the other user's instances.
    QStringList findOthersFolders() const;

    std::unique_ptr<QTemporaryDir> shared;
    std::unique_ptr<QTemporaryDir> othersHome;
    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskSession> session;
};

namespace {

const QDir::Filters kAll = QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;

/// Paths below the folder with times, sizes and contents.
QMap<QString, QString> getInventory(const QString& folder)
{
    QMap<QString, QString> inventory;
    QDirIterator entries(folder, kAll, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QFileInfo info = entries.fileInfo();
        const QByteArray content = info.isFile() ? readFile(path) : QByteArray();
        inventory[path] = QStringLiteral("%1 %2 ").arg(info.ownerId()).arg(int(info.permissions()), 0, 16) +
                          info.metadataChangeTime().toString(Qt::ISODateWithMs) +
                          QString::fromLatin1(content.toHex());
    }
    return inventory;
}

bool giveTo(uid_t user, const QString& folder)
{
    return chown(QFile::encodeName(folder).constData(), user, 0) == 0;
}

bool canOpen(const QString& path)
{
    return QFile(path).open(QIODevice::ReadOnly);
}

QString linkTo(LONGID id)
{
    return QStringLiteral("orvel://locate-item?type=LevellingPoint&id=%1&project=blunder").arg(id);
}

} // namespace

void TestTwoUsers::initTestCase()
{
    // The second argument stands for the dots of the macro, of which C++17 wants at least one.
    if (!OtherUser::isPossible())
        QSKIP("only root can act as a second user", 0);
    OtherUsersProcess process;
    process.start(QStringLiteral(DESK_PROGRAM), {QStringLiteral("--version")});
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        QSKIP("the program lies where a second user cannot start it", 0);
}

void TestTwoUsers::init()
{
    shared = std::make_unique<QTemporaryDir>();
    QVERIFY(chmod(QFile::encodeName(shared->path()).constData(), 01777) == 0);
    othersHome = std::make_unique<QTemporaryDir>();
    QVERIFY(giveTo(OtherUser::getId(), othersHome->path()));
    qputenv("TMPDIR", QFile::encodeName(shared->path()));
    desk = std::make_unique<DeskFixture>();
    session = std::make_unique<DeskSession>(desk->plugins, QString());
}

void TestTwoUsers::cleanup()
{
    session.reset();
    desk.reset();
    qunsetenv("TMPDIR");
}

void TestTwoUsers::work()
{
    session->start(samplePath(QStringLiteral("blunder.gkf")));
    QVERIFY(window().getMonitor().waitForFinished());
    window().getPages().showProtocol(enums::Import);
    QCOMPARE(desk->opened.getPaths().size(), 1);
}

void TestTwoUsers::startOther(OtherUsersProcess& process, const QStringList& arguments,
                              const QString& runtimeFolder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), othersHome->path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(othersHome->path());
    process.start(QStringLiteral(DESK_PROGRAM), arguments);
    QVERIFY(process.waitForStarted());
}

QStringList TestTwoUsers::findOthersFolders() const
{
    QStringList folders;
    for (const QFileInfo& info : QDir(shared->path()).entryInfoList({QStringLiteral("orvel-desk-*")}, kAll)) {
        if (info.ownerId() == OtherUser::getId())
            folders.append(info.filePath());
    }
    return folders;
}

void TestTwoUsers::filesAreOutOfReachOfTheOtherUser()
{
    work();
    const QString folder = Application::getTempFolder();
    const QString page = desk->opened.getPaths().constFirst();
    const QString data = orvel::ProtocolState::read(window().getDocument().getProtocol()).dataFilePath;
    const QDir runtimeFolder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    const QString socketPath = runtimeFolder.filePath(runtimeFolder.entryList(QDir::System).constFirst());
    QVERIFY(canOpen(page) && canOpen(data));
    {
        const OtherUser other;
        QVERIFY(!canOpen(page));
        QVERIFY(!canOpen(data));
        QCOMPARE(QDir(folder).entryList(kAll), QStringList());
        QVERIFY(!QFile(folder + QStringLiteral("/laid in wait")).open(QIODevice::WriteOnly));
        QVERIFY(!QFile::rename(folder, folder + QStringLiteral("-moved")));
        QLocalSocket socket;
        socket.connectToServer(socketPath);
        QVERIFY(!socket.waitForConnected(1000));
    }
}

void TestTwoUsers::instancesKeepApart_data()
{
    QTest::addColumn<QString>("runtimeFolder");
    QTest::newRow("each has a folder for sockets") << QStringLiteral("own");
    QTest::newRow("the other's session took over the environment, as with su") << QStringLiteral("taken");
}

void TestTwoUsers::instancesKeepApart()
{
    QFETCH(QString, runtimeFolder);
    work();
    const QString folder = Application::getTempFolder();
    const QString sockets = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QMap<QString, QString> filesBefore = getInventory(folder);
    const QMap<QString, QString> socketsBefore = getInventory(sockets);
    {
        OtherUsersProcess process;
        startOther(process, {samplePath(QStringLiteral("blunder.gkf"))},
                   runtimeFolder == QLatin1String("own") ? othersHome->path() : sockets);
        // The import has written its data file.
        const auto findDataFile = [this] {
            QDirIterator files(shared->path(), {QStringLiteral("protocoldata_*.xml")}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext()) {
                if (files.next(); files.fileInfo().ownerId() == OtherUser::getId())
                    return true;
            }
            return false;
        };
        QVERIFY(QTest::qWaitFor(findDataFile, 30000));
        QCOMPARE(findOthersFolders().size(), 1);
        const QFileInfo othersFolder(findOthersFolders().constFirst());
        QCOMPARE(int(othersFolder.permissions()), 0x7700); // for its user only
        for (const QFileInfo& socket :
             QDir(othersHome->path()).entryInfoList({QStringLiteral("*.socket")}, QDir::System))
            QCOMPARE(int(socket.permissions()), 0x7700);
        // And none where a name can be taken by anybody.
        QCOMPARE(QDir(shared->path()).entryList({QStringLiteral("*.socket")}, QDir::System), QStringList());
    }
    QCOMPARE(getInventory(folder), filesBefore);
    QCOMPARE(getInventory(sockets), socketsBefore);
}

void TestTwoUsers::linkReachesTheInstanceOfItsUser_data()
{
    instancesKeepApart_data();
}

void TestTwoUsers::linkReachesTheInstanceOfItsUser()
{
    QFETCH(QString, runtimeFolder);
    work();
    const QString sockets = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const LONGID selected = window().getDocument().getPoints()[0]->getId();
    const LONGID linked = window().getDocument().getPoints()[1]->getId();
    QVERIFY(window().getTable().selectItem(selected));

    // The other user has no instance yet: the link opens one.
    OtherUsersProcess process;
    startOther(process, {linkTo(linked)},
               runtimeFolder == QLatin1String("own") ? othersHome->path() : sockets);
    QVERIFY(QTest::qWaitFor([this] { return findOthersFolders().size() == 1; }, 30000));
    QCOMPARE(process.state(), QProcess::Running);
    QCOMPARE(window().getTable().getCurrentItem(), selected);
    QCOMPARE(window().getMessageBar().getMessage(), QString());
}

void TestTwoUsers::linkIsNotGivenToTheOtherUsersSocket()
{
    QLocalServer server;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    QVERIFY(giveTo(OtherUser::getId(), folder));
    {
        const OtherUser other;
        server.setSocketOptions(QLocalServer::WorldAccessOption);
        QVERIFY(server.listen(folder + QStringLiteral("/orvel-desk-1.socket")));
    }
    QVERIFY(giveTo(geteuid(), folder));
    QVERIFY(uriclient::handOver(QUrl(linkTo(1))) == uriclient::Answer::Nobody);
    QVERIFY(server.waitForNewConnection(1000));
    const QLocalSocket* connection = server.nextPendingConnection();
    QTRY_COMPARE(connection->state(), QLocalSocket::UnconnectedState);
    QCOMPARE(connection->bytesAvailable(), 0);
}

void TestTwoUsers::linkIsNotGivenToSocketsInTheWorkingFolder()
{
    // Somebody else has made the folders for the sockets, so that there is none to be trusted.
    const QString fallback = shared->filePath(QStringLiteral("runtime-root"));
    QVERIFY(QDir().mkdir(fallback));
    QVERIFY(giveTo(OtherUser::getId(), fallback));
    QVERIFY(giveTo(OtherUser::getId(), qEnvironmentVariable("XDG_RUNTIME_DIR")));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(shared->path()));
    QLocalServer server;
    QVERIFY(server.listen(shared->filePath(QStringLiteral("orvel-desk-1.socket"))));
    const uriclient::Answer answer = uriclient::handOver(QUrl(linkTo(1)));
    QDir::setCurrent(before);
    QVERIFY(answer == uriclient::Answer::Nobody);
    QVERIFY(!server.waitForNewConnection(1000));
    session->start(QString());
    QCOMPARE(window().getMessageBar().getMessage(),
             QStringLiteral("Ссылки со страниц не откроются в этом окне. Перезапустите программу."));
}

QTEST_MAIN(TestTwoUsers)
#include "tst_twousers.moc"
