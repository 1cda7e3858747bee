// Replay journals: any line is played, or refused with a reason. Files are written to a folder of the
// target's own only, whatever names the journal gives.

#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"
#include "tests/fuzz/Finding.h"

#include <QApplication>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace {

QTemporaryDir* s_folder = nullptr;
std::unique_ptr<JournalPlayer> s_player;

void play(const QByteArray& line)
{
    s_player->play(JournalLine(line));
}

void playIfPossible(const QByteArray& line)
{
    try {
        play(line);
    } catch (const JournalError&) {
    }
}

/// The journal of all inputs has one project, and the inputs' own would be refused.
void startPlayer()
{
    s_player = std::make_unique<JournalPlayer>();
    play(R"({"do":"project","name":"P","reportGenerator":true})");
    for (const char* id : {"5", "12"})
        play(QByteArray(R"({"do":"item","name":"R","type":1842165504,"id":")") + id + R"("})");
}

/// As before the first input.
void reset()
{
    playIfPossible(R"({"do":"interrupt"})");
    play(R"({"do":"clear"})");
}

/// The line with its files in the target's folder; nothing for what is not to be played.
QByteArray enclose(const QByteArray& json)
{
    QJsonObject object = QJsonDocument::fromJson(json).object();
    const QString command = object.value(QStringLiteral("do")).toString();
    // An "item" for each of a million inputs would fill the memory, and a state may name any data file.
    if (command == QLatin1String("item") || command == QLatin1String("enum") ||
        command == QLatin1String("load"))
        return QByteArray();
    for (const QString& key : {QStringLiteral("to"), QStringLiteral("from")}) {
        if (object.value(key).isString()) {
            const uint number = qHash(object.value(key).toString()) % 4;
            object.insert(key, s_folder->filePath(QStringLiteral("file%1").arg(number)));
        }
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QApplication(*argc, *argv);
    s_folder = new QTemporaryDir;
    startPlayer();
    // What "link" and "has" print would fill the disk.
    static_cast<void>(std::freopen("/dev/null", "w", stdout));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray journal(reinterpret_cast<const char*>(data), static_cast<int>(size));
    int count = 0;
    for (const QByteArray& text : journal.split('\n')) {
        if (++count > 20)
            break;
        try {
            const JournalLine line(text); // as it came
            const QByteArray enclosed = enclose(text);
            if (!enclosed.isEmpty())
                play(enclosed);
        } catch (const JournalError& error) {
            mustHold(!error.getReason().isEmpty(), "a refusal has a reason");
        }
    }
    reset();
    return 0;
}
