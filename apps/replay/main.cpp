#include "apps/common/OffscreenPlatform.h"
#include "apps/common/Version.h"
#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>

#include <cstdio>

using namespace orvel::replay;

namespace {

constexpr int kBadUsage = 2;

const char kName[] = "orvel-replay";

void print(const QString& text)
{
    std::fputs(qUtf8Printable(text), stdout);
}

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

int run(const QStringList& arguments)
{
    const QString name = QString::fromLatin1(kName);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays a recorded journal through the plug-in."));
    parser.addOption(help);
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("JOURNAL.jsonl"), QStringLiteral("The journal to play."));
    if (!parser.parse(arguments))
        return fail(QStringLiteral("%1: %2").arg(name, parser.errorText()));
    if (parser.isSet(help)) {
        print(parser.helpText());
        return 0;
    }
    if (parser.isSet(version)) {
        print(QStringLiteral("%1 %2\n").arg(name, orvel::apps::getVersion()));
        return 0;
    }
    const QStringList journals = parser.positionalArguments();
    if (journals.size() != 1)
        return fail(QStringLiteral("usage: %1 [options] JOURNAL.jsonl").arg(name));
    return playJournal(journals.constFirst());
}

} // namespace

int main(int argc, char* argv[])
{
    const orvel::apps::OffscreenPlatform platform;
    const QApplication application(argc, argv);
    return run(QCoreApplication::arguments());
}
