// Replay journals: any line is played, or refused with a reason. Files are written to a folder of the
// target's own only, whatever names the journal gives.

#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"
#include "host/app/Application.h"
#include "host/process/CProcessMonitor.h"
#include "tests/fuzz/Finding.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <sanitizer/lsan_interface.h>

using namespace orvel::replay;

namespace {

const QString kFrom = QStringLiteral("from");
const QString kTo = QStringLiteral("to");

QTemporaryDir* folder = nullptr;
std::unique_ptr<JournalPlayer> player;
QString dataFile;
constexpr uint kFileCount = 4;

QString getFile(uint number)
{
    return folder->filePath(QStringLiteral("file%1").arg(number));
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
    const QString file = folder->filePath(QStringLiteral("start"));
    return QJsonDocument(
               QJsonObject{{QStringLiteral("do"), QLatin1String(command)}, {kTo, file}, {kFrom, file}})
        .toJson(QJsonDocument::Compact);
}

QStringList findDataFiles()
{
    QStringList files;
    for (const QFileInfo& file : QDir(Application::getTempFolder()).entryInfoList(QDir::Files)) {
        if (file.fileName().startsWith(QLatin1String("protocoldata_")))
            files.append(file.filePath());
    }
    return files;
}

/// The journal of all inputs has one project, and the inputs' own would be refused.
void startPlayer()
{
    player = std::make_unique<JournalPlayer>();
    play(R"({"do":"project","name":"P","reportGenerator":true})");
    addItem(QStringLiteral("5"));
    addItem(QStringLiteral("12"));
    play(R"({"do":"begin","type":305510148})"); // gives the data file its name
    play(R"({"do":"end"})");
    play(onStart("save"));
    dataFile = findDataFiles().constFirst();
    QFile::remove(dataFile);
}

void removeFiles()
{
    for (uint number = 0; number < kFileCount; ++number)
        QFile::remove(getFile(number));
    for (const QString& file : findDataFiles())
        QFile::remove(file);
}

/// Takes back what the line did beyond the protocol's state.
void undo(const JournalLine& line)
{
    if (line.getCommand() == QLatin1String("remove"))
        addItem(QString::number(line.getId(QStringLiteral("id"))));
    else if (line.getCommand() == QLatin1String("reportTypes"))
        play(R"({"do":"reportTypes","reports":[],"type":)" +
             QByteArray::number(line.getNumber(QStringLiteral("type"))) + '}');
    else if (line.has(kTo) || line.has(kFrom))
        removeFiles();
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
    QFile::remove(dataFile);
}

bool isPlayed(const JournalLine& line)
{
    const QString command = line.getCommand();
    // An "item" for each of a million inputs would fill the memory, and a state may name any data file.
    return command != QLatin1String("item") && command != QLatin1String("enum") &&
           command != QLatin1String("load");
}

/// The line with its files in the target's folder.
JournalLine enclose(const QByteArray& json)
{
    QJsonObject object;
    {
        const __lsan::ScopedDisabler leaksAllowed; // as in parse()
        object = QJsonDocument::fromJson(json).object();
    }
    for (const QString& key : {kTo, kFrom}) {
        if (object.value(key).isString())
            object.insert(key, getFile(qHash(object.value(key).toString()) % kFileCount));
    }
    return parse(QJsonDocument(object).toJson(QJsonDocument::Compact));
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
    folder = new QTemporaryDir;
    startPlayer();
    // What "link" and "has" print would fill the disk.
    static_cast<void>(std::freopen("/dev/null", "w", stdout));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray journal(reinterpret_cast<const char*>(data), static_cast<int>(size));
    std::vector<JournalLine> played;
    int count = 0;
    for (const QByteArray& text : journal.split('\n')) {
        if (++count > 20)
            break;
        try {
            const JournalLine line = parse(text);
            if (isPlayed(line)) {
                player->play(line.has(kTo) || line.has(kFrom) ? enclose(text) : line);
                played.push_back(line);
            }
        } catch (const JournalError& error) {
            mustHold(!error.getReason().isEmpty(), "a refusal has a reason");
        }
    }
    reset(played);
    // A window takes as long as a hundred inputs.
    if (size % 61 == 0)
        show(played);
    return 0;
}
