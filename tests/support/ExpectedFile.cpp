#include "tests/support/ExpectedFile.h"

#include "tests/support/TestFiles.h"

#include <QFile>
#include <QStringList>

namespace orvel::test {

namespace {

QString getLine(const QStringList& lines, int number)
{
    return number < lines.size() ? lines.at(number) : QStringLiteral("(the end)");
}

void update(const QString& text, const QString& path)
{
    if (text.isEmpty())
        QFile::remove(path);
    else
        writeFile(path, text.toUtf8());
}

} // namespace

QString compareWithFile(const QString& text, const QString& path)
{
    if (qEnvironmentVariableIsSet("ORVEL_UPDATE_EXPECTED")) {
        update(text, path);
        return {};
    }
    const QString expected = QFile::exists(path) ? QString::fromUtf8(readFile(path)) : QString();
    if (text == expected)
        return {};
    const QStringList lines = text.split(QLatin1Char('\n'));
    const QStringList expectedLines = expected.split(QLatin1Char('\n'));
    int number = 0;
    while (getLine(lines, number) == getLine(expectedLines, number))
        ++number;
    return QStringLiteral("%1, line %2\nexpected: %3\nactual:   %4")
        .arg(path, QString::number(number + 1), getLine(expectedLines, number), getLine(lines, number));
}

} // namespace orvel::test
