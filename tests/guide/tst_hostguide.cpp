#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

/// What a host sees that leaves nothing out.
const QStringList kAll = {QStringLiteral("protocol: yes"),
                          QStringLiteral("second run: no"),
                          QStringLiteral("template: yes"),
                          QStringLiteral("title: Adjustment"),
                          QStringLiteral("line: yes"),
                          QStringLiteral("grouped: yes"),
                          QStringLiteral("English captions: yes"),
                          QStringLiteral("English groups: yes"),
                          QStringLiteral("mark-up of its own: no"),
                          QStringLiteral("mentioned: yes"),
                          QStringLiteral("delegate: yes"),
                          QStringLiteral("link followed: yes"),
                          QStringLiteral("button opens a page: yes"),
                          QStringLiteral("works on unseen: no"),
                          QStringLiteral("saved: yes")};

} // namespace

/// Every point of the guide for hosts, and what happens if a host leaves it out.
class TestHostGuide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostThatDoesAllSeesAll();
    void eachPointIsNeeded_data();
    void eachPointIsNeeded();
    void pageWithoutDataIsPlain();
    void programIsEnded_data();
    void programIsEnded();
    void programWithoutDisplayIsEnded();

private:
    /// The lines that the host tells, or how it failed.
    static QStringList
    runHost(const QStringList& omissions,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    /// The lines of a host that does not see all.
    static QStringList getDifferences(const QStringList& seen);
};

QStringList TestHostGuide::runHost(const QStringList& omissions, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(GUIDE_HOST), omissions);
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {QStringLiteral("failed: ") + QString::fromUtf8(process.readAllStandardError())};
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList TestHostGuide::getDifferences(const QStringList& seen)
{
    QStringList differences;
    std::copy_if(seen.begin(), seen.end(), std::back_inserter(differences),
                 [](const QString& line) { return !kAll.contains(line); });
    return differences;
}

void TestHostGuide::hostThatDoesAllSeesAll()
{
    QCOMPARE(runHost({}), kAll);
}

void TestHostGuide::eachPointIsNeeded_data()
{
    QTest::addColumn<QStringList>("differences");
    const auto row = [](const char* omission, std::initializer_list<const char*> differences) {
        QStringList lines;
        for (const char* difference : differences)
            lines.append(QString::fromUtf8(difference));
        QTest::newRow(omission) << lines;
    };

    row("factory", {"delegate: no"});
    row("plugin", {"protocol: no"});
    row("application", {"template: no", "delegate: no"});
    row("translation", {"English captions: no", "English groups: no"});
    row("translation-in-time", {"English groups: no"});
    row("type-texts", {"title: Уравнивание"});
    row("item-types", {"line: no", "grouped: no"});
    row("model", {"protocol: no"});
    row("items", {"grouped: no"});
    row("query", {"mentioned: no"});
    row("window", {"link followed: no", "button opens a page: no"});
    row("type",
        {"title: ", "line: no", "grouped: no", "English captions: no", "English groups: no", "saved: no"});
    row("stage", {"line: no", "grouped: no", "English captions: no", "English groups: no", "saved: no"});
    row("escaping", {"mark-up of its own: yes"});
    row("one-run", {"line: no", "grouped: no", "English captions: no", "English groups: no", "mentioned: no",
                    "saved: no"});
    row("no-page", {"line: no", "grouped: no", "English captions: no", "English groups: no", "mentioned: no",
                    "saved: no"});
    row("question", {"works on unseen: yes"});
    row("saving", {"saved: no"});
}

void TestHostGuide::eachPointIsNeeded()
{
    QFETCH(QStringList, differences);
    QCOMPARE(getDifferences(runHost({QString::fromLatin1(QTest::currentDataTag())})), differences);
}

void TestHostGuide::pageWithoutDataIsPlain()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("Protocol")));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ORVEL_DATA_DIR"), folder.path());
    QCOMPARE(getDifferences(runHost({}, environment)), QStringList{QStringLiteral("template: no")});
}

void TestHostGuide::programIsEnded_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("widgets") << QStringLiteral("QWidget: Cannot create a QWidget without QApplication\n");
    QTest::newRow("application-object") << QString();
    QTest::newRow("plugin-check") << QString();
}

void TestHostGuide::programIsEnded()
{
    QFETCH(QString, message);
    const QStringList seen = runHost({QString::fromLatin1(QTest::currentDataTag())});
    QCOMPARE(seen.size(), 1);
    QVERIFY2(seen.first().startsWith(QStringLiteral("failed: ") + message), qPrintable(seen.first()));
}

void TestHostGuide::programWithoutDisplayIsEnded()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    const QStringList seen = runHost({}, environment);
    QCOMPARE(seen.size(), 1);
    QVERIFY2(seen.first().contains(QStringLiteral("no Qt platform plugin could be initialized")),
             qPrintable(seen.first()));
}

QTEST_GUILESS_MAIN(TestHostGuide)
#include "tst_hostguide.moc"
