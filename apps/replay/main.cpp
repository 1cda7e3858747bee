#include "apps/common/InputFile.h"
#include "apps/common/LocalPath.h"
#include "apps/common/OffscreenPlatform.h"
#include "apps/common/StandardStreams.h"
#include "apps/common/TerminationSignals.h"
#include "apps/common/Version.h"
#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"
#include "host/files/StringUtils.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

#include <cstdio>

using namespace orvel::replay;

namespace {

/// Wrong use, a journal that cannot be played on, output that cannot be written.
constexpr int kFailed = 2;

const char kName[] = "orvel-replay";

void print(const QString& text)
{
    std::fputs(qUtf8Printable(text), stdout);
}

/// Says why in one line and gives the exit code.
int fail(const QString& message)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(utils::escapeControls(message)));
    return kFailed;
}

/// What was printed has gone out, or the exit code that says it has not.
int finishOutput()
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return 0;
    return fail(QStringLiteral("%1: the standard output can't be written").arg(QString::fromLatin1(kName)));
}

int playJournal(const QString& path, const JournalFolder& folder)
{
    orvel::apps::InputFile journal(path);
    if (!journal.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1: %2").arg(path, journal.errorString()));

    JournalPlayer player(folder);
    int lineNumber = 0;
    try {
        for (;;) {
            const QByteArray text = journal.readLine();
            // A failed read looks like the end of the file, and the next one may work.
            if (journal.error() != QFileDevice::NoError)
                return fail(QStringLiteral("%1: %2").arg(path, journal.errorString()));
            // A signal may have cut the line off.
            if (text.isEmpty() || orvel::apps::TerminationSignals::hasCome())
                break;
            ++lineNumber;
            if (!text.trimmed().isEmpty())
                player.play(JournalLine(text.trimmed()));
        }
    } catch (const JournalError& error) {
        return fail(QStringLiteral("%1:%2: %3").arg(path).arg(lineNumber).arg(error.getReason()));
    }
    return finishOutput();
}

int run(const QStringList& arguments)
{
    const QString name = QString::fromLatin1(kName);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays a recorded journal through the plug-in."));
    parser.addOption(help);
    const QCommandLineOption out(
        QStringLiteral("out"),
        QStringLiteral("Reads and writes the files of the journal in DIR, which is made where it is missing, "
                       "instead of in the present folder."),
        QStringLiteral("DIR"));
    parser.addOption(out);
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("JOURNAL.jsonl"), QStringLiteral("The journal to play."));
    if (!parser.parse(arguments))
        return fail(QStringLiteral("%1: %2").arg(name, parser.errorText()));
    if (parser.isSet(help)) {
        print(parser.helpText());
        return finishOutput();
    }
    if (parser.isSet(version)) {
        print(QStringLiteral("%1 %2\n").arg(name, orvel::apps::getVersion()));
        return finishOutput();
    }
    const QStringList journals = parser.positionalArguments();
    if (journals.size() != 1)
        return fail(QStringLiteral("usage: %1 [options] JOURNAL.jsonl").arg(name));
    const QString folder = orvel::apps::toLocalPath(parser.value(out));
    if (parser.isSet(out) && (folder.isEmpty() || !QDir().mkpath(folder)))
        return fail(QStringLiteral("%1: \"%2\" is no folder and can't be made one").arg(name, folder));
    return playJournal(orvel::apps::toLocalPath(journals.constFirst()), JournalFolder(folder));
}

} // namespace

int main(int argc, char* argv[])
{
    orvel::apps::occupyStandardStreams();
    orvel::apps::TerminationSignals termination;
    const orvel::apps::OffscreenPlatform platform;
    const QApplication application(argc, argv);
    termination.watch();
    return orvel::apps::TerminationSignals::getExitCode(run(QCoreApplication::arguments()));
}
