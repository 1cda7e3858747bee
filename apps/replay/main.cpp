#include "apps/common/OffscreenPlatform.h"
#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"

#include <QApplication>
#include <QFile>

#include <cstdio>

using namespace orvel::replay;

namespace {

constexpr int kBadUsage = 2;

/// Says why in one line and gives the exit code.
int fail(QString message)
{
    message.replace(QLatin1Char('\n'), QLatin1Char(' '));
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    return kBadUsage;
}

int playJournal(const QString& path)
{
    QFile journal(path);
    if (!journal.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1: %2").arg(path, journal.errorString()));

    JournalPlayer player;
    int lineNumber = 0;
    try {
        while (!journal.atEnd()) {
            ++lineNumber;
            const QByteArray text = journal.readLine().trimmed();
            if (!text.isEmpty())
                player.play(JournalLine(text));
        }
    } catch (const JournalError& error) {
        return fail(QStringLiteral("%1:%2: %3").arg(path).arg(lineNumber).arg(error.getReason()));
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    const orvel::apps::OffscreenPlatform platform;
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        return fail(QStringLiteral("usage: orvel-replay JOURNAL.jsonl"));
    return playJournal(arguments.at(1));
}
