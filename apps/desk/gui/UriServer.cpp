#include "apps/desk/gui/UriServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace orvel::desk {

namespace {

// A request is one line: a word and the URI. The answer is one line: "taken" or "declined".
const QByteArray kFollow = QByteArrayLiteral("follow ");
const QByteArray kExplain = QByteArrayLiteral("explain ");
const QByteArray kTaken = QByteArrayLiteral("taken\n");
const QByteArray kDeclined = QByteArrayLiteral("declined\n");
constexpr int kTimeout = 5000;            // ms
constexpr qint64 kLongestRequest = 65536; // bytes
constexpr qint64 kLongestAnswer = 64;     // bytes
constexpr int kMaxConnections = 32;

/// Each instance listens on a socket of its own in the user's folder. Empty when somebody else owns what goes
/// by that name.
QString getFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

QString getNamePattern()
{
    return QStringLiteral("orvel-desk-%1.socket");
}

QStringList findSockets(const QString& folder)
{
    QStringList paths;
    for (const QFileInfo& file :
         QDir(folder).entryInfoList({getNamePattern().arg(QLatin1Char('*'))}, QDir::System | QDir::Files))
        paths.append(file.filePath());
    return paths;
}

/// What the system calls the program of that process; empty if there is no such process.
QByteArray getProgramName(const QString& process)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(process));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isConnectionRefused(const QString& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = QFile::encodeName(path);
    if (encoded.size() >= static_cast<int>(sizeof(address.sun_path)))
        return false;
    std::copy(encoded.begin(), encoded.end(), std::begin(address.sun_path));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool isRefused =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 &&
        errno == ECONNREFUSED;
    close(descriptor);
    return isRefused;
}

/// Whether the instance that made the socket is gone. One that starts just now refuses for a moment, too.
bool isLeftBehind(const QString& path)
{
    static const QRegularExpression name(
        QRegularExpression::anchoredPattern(getNamePattern().arg(QStringLiteral("([0-9]+)"))));
    const QString process = name.match(QFileInfo(path).fileName()).captured(1);
    return !process.isEmpty() && getProgramName(process) != getProgramName(QStringLiteral("self")) &&
           isConnectionRefused(path);
}

/// Whether the program at the other end is run by this user. Anybody may have left a socket in a folder.
bool isOfThisUser(const QLocalSocket& socket)
{
    ucred peer{};
    socklen_t size = sizeof(peer);
    const int descriptor = static_cast<int>(socket.socketDescriptor());
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

enum class Reply { Taken, Declined, Silent, Nobody };

/// What the instance that listens there says.
Reply ask(const QString& path, const QByteArray& request)
{
    QElapsedTimer clock;
    clock.start();
    const auto remaining = [&clock] { return qMax(0, kTimeout - static_cast<int>(clock.elapsed())); };
    QLocalSocket socket;
    socket.setReadBufferSize(kLongestAnswer);
    socket.connectToServer(path);
    if (!socket.waitForConnected(remaining()) || !isOfThisUser(socket))
        return Reply::Nobody;
    socket.write(request + '\n');
    while (!socket.canReadLine() && remaining() > 0 && socket.waitForReadyRead(remaining())) {
    }
    const QByteArray line = socket.readLine(kLongestAnswer);
    if (line == kTaken)
        return Reply::Taken;
    return line == kDeclined ? Reply::Declined : Reply::Silent;
}

} // namespace

UriServer::UriServer(Follow followFunction, Explain explainFunction, QObject* parent)
    : QObject(parent)
    , follow(std::move(followFunction))
    , explain(std::move(explainFunction))
{
    connect(&server, &QLocalServer::newConnection, this, &UriServer::acceptConnection);
}

bool UriServer::listen()
{
    const QString folder = getFolder();
    if (folder.isEmpty())
        return false; // a mere name would stand for a socket in the folder of everybody's temporary files
    const QString name = getNamePattern().arg(QCoreApplication::applicationPid());
    const QString path = QDir(folder).filePath(name);
    QLocalServer::removeServer(path);
    // For this user only from the start. Qt's option for that makes a folder first, which a kill would leave.
    const mode_t mask = umask(S_IRWXG | S_IRWXO);
    const bool isListening = server.listen(path);
    umask(mask);
    return isListening;
}

void UriServer::removeLeftOvers()
{
    const QString folder = getFolder();
    const QStringList paths = folder.isEmpty() ? QStringList() : findSockets(folder);
    for (const QString& path : paths) {
        if (isLeftBehind(path))
            QLocalServer::removeServer(path);
    }
}

void UriServer::acceptConnection()
{
    while (QLocalSocket* socket = server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (server.findChildren<QLocalSocket*>().size() > kMaxConnections) {
            socket->abort();
            continue;
        }
        socket->setReadBufferSize(kLongestRequest);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->canReadLine())
                answer(*socket);
            else if (socket->bytesAvailable() >= kLongestRequest)
                socket->abort();
        });
        QTimer::singleShot(kTimeout, socket, &QLocalSocket::abort);
    }
}

void UriServer::answer(QLocalSocket& socket) const
{
    const QByteArray request = socket.readLine(kLongestRequest).trimmed();
    const auto urlBehind = [&request](const QByteArray& word) {
        return QUrl(QString::fromUtf8(request.mid(word.size())));
    };
    bool isTaken = false;
    if (request.startsWith(kFollow)) {
        isTaken = follow(urlBehind(kFollow));
    } else if (request.startsWith(kExplain)) {
        explain(urlBehind(kExplain));
        isTaken = true;
    }
    socket.write(isTaken ? kTaken : kDeclined);
    socket.flush();
}

uriclient::Answer uriclient::handOver(const QUrl& url)
{
    const QString folderPath = getFolder();
    if (folderPath.isEmpty())
        return Answer::Nobody;
    const QByteArray text = url.toEncoded();
    QString firstInstance;
    bool isAnySilent = false;
    for (const QString& path : findSockets(folderPath)) {
        const Reply reply = ask(path, kFollow + text);
        if (reply == Reply::Taken)
            return Answer::Taken;
        isAnySilent = isAnySilent || reply == Reply::Silent;
        if (reply == Reply::Declined && firstInstance.isEmpty())
            firstInstance = path;
    }
    if (!firstInstance.isEmpty() && ask(firstInstance, kExplain + text) == Reply::Taken)
        return Answer::Taken;
    return isAnySilent ? Answer::Silent : Answer::Nobody;
}

} // namespace orvel::desk
