#include "tests/support/TestFiles.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

/// Every text that a user sees has its translation.
class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextIsTranslated();
    void translationsKeepTheirPlaceholders();
    void russianTextsPassThroughTranslation();
    void textsHoldToTheTermsOfTheField_data();
    void textsHoldToTheTermsOfTheField();
    void unitsStayWithTheirNumbers();
};

namespace {

const QString kSources = QStringLiteral(PROJECT_SOURCES);
const QString kTranslation = kSources + QStringLiteral("/translations/orvel_en.ts");

struct Message
{
    QString source;
    QString translation;
    bool isFinished = true;
};

QVector<Message> readMessages(const QString& path)
{
    QXmlStreamReader xml(readFile(path));
    QVector<Message> messages;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("message")) {
            messages.append(Message());
        } else if (xml.name() == QLatin1String("source")) {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            messages.last().isFinished = xml.attributes().value(QLatin1String("type")).isEmpty();
            messages.last().translation = xml.readElementText();
        }
    }
    return messages;
}

/// The translations as they are after all texts of the sources have been collected anew.
QVector<Message> collectMessages(const QTemporaryDir& folder)
{
    const QString copy = folder.filePath(QStringLiteral("collected.ts"));
    writeFile(copy, readFile(kTranslation));
    QProcess process;
    process.setWorkingDirectory(kSources);
    process.start(QStringLiteral(LUPDATE),
                  {QStringLiteral("-silent"), QStringLiteral("-no-obsolete"), QStringLiteral("host"),
                   QStringLiteral("Orvel"), QStringLiteral("apps"), QStringLiteral("-ts"), copy});
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("lupdate failed: %s", process.readAllStandardError().constData());
    return readMessages(copy);
}

QStringList placeholders(const QString& text)
{
    QStringList found;
    auto match = QRegularExpression(QStringLiteral("%[0-9]")).globalMatch(text);
    while (match.hasNext())
        found.append(match.next().captured());
    found.sort();
    return found;
}

/// The string literals of a C++ source that hold Cyrillic letters, escape sequences left as they are.
QStringList findRussianLiterals(const QString& path)
{
    const QString code = QString::fromUtf8(readFile(path));
    QStringList literals;
    auto match =
        QRegularExpression(QStringLiteral("//[^\\n]*|\"((?:[^\"\\\\\\n]|\\\\.)*)\"")).globalMatch(code);
    while (match.hasNext()) {
        const QString literal = match.next().captured(1);
        if (literal.contains(QRegularExpression(QStringLiteral("[а-яА-ЯёЁ]"))))
            literals.append(literal);
    }
    return literals;
}

} // namespace

void TestTranslations::everyTextIsTranslated()
{
    const QTemporaryDir folder;
    const QVector<Message> messages = collectMessages(folder);
    QVERIFY(messages.size() > 250);
    QStringList untranslated;
    for (const Message& message : messages) {
        if (!message.isFinished || message.translation.isEmpty())
            untranslated.append(message.source);
    }
    QCOMPARE(untranslated.join(QLatin1Char('\n')), QString());
}

void TestTranslations::translationsKeepTheirPlaceholders()
{
    for (const Message& message : readMessages(kTranslation)) {
        QCOMPARE(placeholders(message.translation).join(QLatin1Char(' ')),
                 placeholders(message.source).join(QLatin1Char(' ')));
        QVERIFY2(!message.translation.contains(QRegularExpression(QStringLiteral("[а-яА-ЯёЁ]"))),
                 qUtf8Printable(message.source));
    }
}

void TestTranslations::russianTextsPassThroughTranslation()
{
    QString known;
    for (const Message& message : readMessages(kTranslation))
        known += message.source + QLatin1Char('\0');
    QStringList unknown;
    for (const QString& folder :
         {QStringLiteral("/host"), QStringLiteral("/Orvel"), QStringLiteral("/apps")}) {
        QDirIterator files(kSources + folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            // The names of the protocol types are registered as they are; the desk translates them.
            if (path.endsWith(QStringLiteral("store/ProtocolTypes.cpp")))
                continue;
            for (QString literal : findRussianLiterals(path)) {
                literal.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
                literal.replace(QStringLiteral("\\\""), QStringLiteral("\""));
                literal.replace(QStringLiteral("\\u00A0"), QStringLiteral("\u00A0"));
                if (!known.contains(literal))
                    unknown.append(path + QStringLiteral(": ") + literal);
            }
        }
    }
    QCOMPARE(unknown.join(QLatin1Char('\n')), QString());
}

void TestTranslations::textsHoldToTheTermsOfTheField_data()
{
    QTest::addColumn<QString>("ruledOut");
    for (const char* term : {"прогон",
                             "прервать",
                             "Нивелирный стол",
                             "поправки измеренных превышений",
                             "степеней свободы",
                             "σ₀ (1",
                             "Допустимая невязка",
                             "принят определяемым",
                             "выводить нечего",
                             "не выведен",
                             "позднее объявление",
                             "surplus measurement",
                             "determined point",
                             "point to be determined",
                             "degrees of freedom",
                             "over the tolerance",
                             "lonely",
                             "take along",
                             "forward and back runs",
                             "прерван",
                             "не может быть верным",
                             "не могут быть верными",
                             "не целиком",
                             "не дойдут",
                             "остаются для ссылок",
                             "ни один протокол",
                             "список поправок",
                             "поправка измеренного превышения",
                             "cannot be right",
                             "present network",
                             "import of a",
                             "single run"})
        QTest::newRow(term) << QString::fromUtf8(term);
}

void TestTranslations::textsHoldToTheTermsOfTheField()
{
    QFETCH(QString, ruledOut);
    for (const Message& message : readMessages(kTranslation)) {
        QVERIFY2(!message.source.contains(ruledOut, Qt::CaseInsensitive), qUtf8Printable(message.source));
        QVERIFY2(!message.translation.contains(ruledOut, Qt::CaseInsensitive),
                 qUtf8Printable(message.translation));
    }
    // The texts of the page, and what is told about the programs.
    QStringList paths{kSources + QStringLiteral("/template/script/texts.js"),
                      kSources + QStringLiteral("/README.md")};
    QDirIterator documents(kSources + QStringLiteral("/docs"), {QStringLiteral("*.md")});
    while (documents.hasNext())
        paths.append(documents.next());
    for (const QString& path : paths) {
        const QString text = QString::fromUtf8(readFile(path)).simplified();
        QVERIFY(!text.isEmpty());
        QVERIFY2(!text.contains(ruledOut, Qt::CaseInsensitive), qUtf8Printable(path));
    }
}

void TestTranslations::unitsStayWithTheirNumbers()
{
    const QRegularExpression breaking(QStringLiteral("[0-9] (мм|км|м|МиБ|КиБ|%)(?!\\w)"),
                                      QRegularExpression::UseUnicodePropertiesOption);
    for (const Message& message : readMessages(kTranslation))
        QVERIFY2(!message.source.contains(breaking), qUtf8Printable(message.source));
}

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
