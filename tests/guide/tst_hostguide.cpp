#include <QProcess>
#include <QtTest>

namespace {

/// What a host sees that leaves nothing out.
const QStringList kAll = {QStringLiteral("protocol: yes"),
                          QStringLiteral("second run: no"),
                          QStringLiteral("template: yes"),
                          QStringLiteral("title: Adjustment"),
                          QStringLiteral("line: yes"),
                          QStringLiteral("grouped: yes"),
                          QStringLiteral("mark-up of its own: no"),
                          QStringLiteral("mentioned: yes"),
                          QStringLiteral("delegate: yes"),
                          QStringLiteral("link followed: yes"),
                          QStringLiteral("button opens a page: yes"),
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
    void programWithoutWidgetsIsEnded();

private:
    /// The lines that the host tells, or how it failed.
    static QStringList runHost(const QStringList& omissions);
};

QStringList TestHostGuide::runHost(const QStringList& omissions)
{
    QProcess process;
    process.start(QStringLiteral(GUIDE_HOST), omissions);
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {QStringLiteral("failed: ") + QString::fromUtf8(process.readAllStandardError())};
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
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
    row("type-texts", {"title: Уравнивание"});
    row("item-types", {"line: no", "grouped: no"});
    row("model", {"protocol: no"});
    row("items", {"grouped: no"});
    row("query", {"mentioned: no"});
    row("window", {"link followed: no", "button opens a page: no"});
    row("type", {"title: ", "line: no", "grouped: no", "saved: no"});
    row("stage", {"line: no", "grouped: no", "saved: no"});
    row("escaping", {"mark-up of its own: yes"});
    row("one-run", {"line: no", "grouped: no", "mentioned: no", "saved: no"});
    row("no-page", {"line: no", "grouped: no", "mentioned: no", "saved: no"});
    row("saving", {"saved: no"});
}

void TestHostGuide::eachPointIsNeeded()
{
    QFETCH(QStringList, differences);
    QStringList seen;
    for (const QString& line : runHost({QString::fromLatin1(QTest::currentDataTag())})) {
        if (!kAll.contains(line))
            seen.append(line);
    }
    QCOMPARE(seen, differences);
}

void TestHostGuide::programWithoutWidgetsIsEnded()
{
    QCOMPARE(runHost({QStringLiteral("widgets")}),
             QStringList{QStringLiteral("failed: QWidget: Cannot create a QWidget without QApplication\n")});
}

QTEST_GUILESS_MAIN(TestHostGuide)
#include "tst_hostguide.moc"
