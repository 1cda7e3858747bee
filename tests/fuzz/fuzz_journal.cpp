// Replay journals: any line is played, or refused with a reason, and no file appears or changes outside the
// folder that the journal is given, whatever names and links lead there.

#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"
#include "host/app/Application.h"
#include "host/process/CProcessMonitor.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/TestFiles.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <sanitizer/lsan_interface.h>

using namespace orvel::replay;

namespace {

const QString kFrom = QStringLiteral("from");
const QString kTo = QStringLiteral("to");

/// What the journal must leave as it is; its own folder is "out" therein.
QTemporaryDir* top = nullptr;
/// Not destroyed: at the process's end what it needs of Qt is gone.
JournalPlayer* player = nullptr;
/// The state of the protocol before the first input.
QByteArray startState;
const QByteArray kSecret = "secret";

QString getFolder()
{
    return top->filePath(QStringLiteral("out"));
}

/// The journal's folder, with links that lead out of it.
void makeFolder()
{
    QDir(getFolder()).removeRecursively();
    QDir().mkpath(getFolder() + QStringLiteral("/sub"));
    QFile::link(top->filePath(QStringLiteral("other")), getFolder() + QStringLiteral("/away"));
    QFile::link(top->filePath(QStringLiteral("other/secret")), getFolder() + QStringLiteral("/file"));
    QFile::link(top->filePath(QStringLiteral("other/missing")), getFolder() + QStringLiteral("/dangling"));
    writeFile(getFolder() + QStringLiteral("/start"), startState);
}

void makePlace()
{
    top = new QTemporaryDir;
    QDir().mkpath(top->filePath(QStringLiteral("other")));
    writeFile(top->filePath(QStringLiteral("other/secret")), kSecret);
    makeFolder();
}

void checkNothingIsOutside()
{
    const auto list = [](const QString& path) {
        return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    };
    mustHold(list(top->path()) == QStringList({QStringLiteral("other"), QStringLiteral("out")}),
             "no file appears above the journal's folder");
    mustHold(list(top->filePath(QStringLiteral("other"))) == QStringList(QStringLiteral("secret")),
             "no file appears in a folder that a link leads to");
    mustHold(readFile(top->filePath(QStringLiteral("other/secret"))) == kSecret,
             "a file that a link leads to stays as it is");
}

/// Qt loses a list or an object when a later value of the same object has its name; that leak is none of
/// ours.
JournalLine parse(const QByteArray& json)
{
    const __lsan::ScopedDisabler leaksAllowed;
    return JournalLine(json);
}

void play(const QByteArray& line)
{
    player->play(parse(line));
}

void addItem(const QString& id)
{
    play(R"({"do":"item","name":"R","type":1842165504,"id":")" + id.toLatin1() + R"("})");
}

QByteArray onStart(const char* command)
{
    const QString file = QStringLiteral("start");
    return QJsonDocument(
               QJsonObject{{QStringLiteral("do"), QLatin1String(command)}, {kTo, file}, {kFrom, file}})
        .toJson(QJsonDocument::Compact);
}

void removeDataFiles()
{
    for (const QFileInfo& file : QDir(Application::getTempFolder()).entryInfoList(QDir::Files)) {
        if (file.fileName().startsWith(QLatin1String("protocoldata_")))
            QFile::remove(file.filePath());
    }
}

/// The journal of all inputs has one project, and the inputs' own would be refused.
void startPlayer()
{
    player = new JournalPlayer(JournalFolder(getFolder()));
    play(R"({"do":"project","name":"P","reportGenerator":true})");
    addItem(QStringLiteral("5"));
    addItem(QStringLiteral("12"));
    play(R"({"do":"begin","type":305510148})"); // gives the data file its name
    play(R"({"do":"end"})");
    play(onStart("save"));
    startState = readFile(getFolder() + QStringLiteral("/start"));
    removeDataFiles();
}

/// Takes back what the line did beyond the protocol's state.
void undo(const JournalLine& line)
{
    if (line.getCommand() == QLatin1String("remove"))
        addItem(QString::number(line.getId(QStringLiteral("id"))));
    else if (line.getCommand() == QLatin1String("reportTypes"))
        play(R"({"do":"reportTypes","reports":[],"type":)" +
             QByteArray::number(line.getNumber(QStringLiteral("type"))) + '}');
}

bool isRunOpen(const std::vector<JournalLine>& played)
{
    bool isOpen = false;
    for (const JournalLine& line : played) {
        const QString command = line.getCommand();
        isOpen = command == QLatin1String("begin") ||
                 (isOpen && command != QLatin1String("end") && command != QLatin1String("interrupt"));
    }
    return isOpen;
}

/// As before the first input.
void reset(const std::vector<JournalLine>& played)
{
    if (played.empty())
        return;
    if (isRunOpen(played)) {
        play(R"({"do":"finishStage"})");
        play(R"({"do":"interrupt"})");
    }
    for (const JournalLine& line : played)
        undo(line);
    play(R"({"do":"clear"})");
    play(onStart("load"));
    removeDataFiles();
}

bool isPlayed(const JournalLine& line)
{
    const QString command = line.getCommand();
    // An "item" for each of a million inputs would fill the memory.
    return command != QLatin1String("item") && command != QLatin1String("enum");
}

/// The lines in the journal of a progress window, as far as they hold a text.
void show(const std::vector<JournalLine>& lines)
{
    CProcessMonitor window;
    for (const JournalLine& line : lines) {
        try {
            const std::wstring text = line.getText(QStringLiteral("text"), QString()).toStdWString();
            window.writeError(text, text);
        } catch (const JournalError&) {
            // A command without a text of its own may be given something else by that name.
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("ORVEL_DATA_DIR", REPLAY_DATA_DIR);
    new QApplication(*argc, *argv);
    makePlace();
    startPlayer();
    // What "link" and "has" print would fill the disk.
    static_cast<void>(std::freopen("/dev/null", "w", stdout));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray journal(reinterpret_cast<const char*>(data), static_cast<int>(size));
    std::vector<JournalLine> played;
    bool hasFiles = false;
    int count = 0;
    for (const QByteArray& text : journal.split('\n')) {
        if (++count > 20)
            break;
        try {
            const JournalLine line = parse(text);
            if (isPlayed(line)) {
                hasFiles = hasFiles || line.has(kTo) || line.has(kFrom);
                player->play(line);
                played.push_back(line);
            }
        } catch (const JournalError& error) {
            mustHold(!error.getReason().isEmpty(), "a refusal has a reason");
        }
    }
    if (hasFiles) {
        checkNothingIsOutside();
        makeFolder();
    }
    reset(played);
    // A window takes as long as a hundred inputs.
    if (size % 61 == 0)
        show(played);
    return 0;
}
