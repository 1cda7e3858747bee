#include "apps/desk/document/Document.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

using namespace orvel::desk;
using namespace orvel::test;

/// Runs that end before their time, at whatever moment: stopped, by closing the window, by destroying it.
class TestRunInterruption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void stoppedAtAnyMoment();
    void windowClosedAtAnyMoment();
    void windowDestroyedAtAnyMoment();
    void monitorClosedAtAnyMoment();

private:
    /// A window with the network, saved, in which the n-th kind of run works.
    std::unique_ptr<DeskWindow> startRun(int number);
    void waitAWhile();

    std::unique_ptr<DeskFixture> desk;
    QString network;
    QRandomGenerator random = QRandomGenerator(20240601);
    int repetitions = 25;
};

namespace {

constexpr int kSide = 14;

QString pointName(int row, int column)
{
    return QStringLiteral("P%1.%2").arg(QString::number(row), QString::number(column));
}

/// Answers whatever is asked about closing by giving up runs and changes.
class CarelessUser : public QObject
{
public:
    CarelessUser()
    {
        connect(&timer, &QTimer::timeout, this, &CarelessUser::answer);
        timer.start(5);
    }

private:
    static void answer()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        for (QAbstractButton* button : box->buttons()) {
            const QString text = button->text().remove(QLatin1Char('&'));
            if (text == QStringLiteral("Прервать") || text == QStringLiteral("Не сохранять")) {
                button->click();
                return;
            }
        }
    }

    QTimer timer;
};

/// A square grid of sections with heights that nearly fit.
QByteArray makeGrid()
{
    QString points = QStringLiteral("<point id=\"P0.0\" z=\"100\" fix=\"z\"/>\n");
    QString sections;
    for (int row = 0; row < kSide; ++row) {
        for (int column = 0; column < kSide; ++column) {
            if (row + column > 0)
                points += QStringLiteral("<point id=\"%1\" adj=\"z\"/>\n").arg(pointName(row, column));
            const QString section = QStringLiteral("<dh from=\"%1\" to=\"%2\" val=\"%3\" dist=\"1\"/>\n");
            const QString value = QString::number((row * 7 + column * 3) % 5 * 0.001, 'f', 3);
            if (row + 1 < kSide)
                sections += section.arg(pointName(row, column), pointName(row + 1, column), value);
            if (column + 1 < kSide)
                sections += section.arg(pointName(row, column), pointName(row, column + 1), value);
        }
    }
    return QStringLiteral("<gama-local><network><points-observations>\n%1<height-differences>\n%2"
                          "</height-differences></points-observations></network></gama-local>\n")
        .arg(points, sections)
        .toUtf8();
}

} // namespace

void TestRunInterruption::initTestCase()
{
    desk = std::make_unique<DeskFixture>();
    network = desk->path(QStringLiteral("grid.gkf"));
    writeFile(network, makeGrid());
    // More of them find more; each takes its time.
    if (qEnvironmentVariableIsSet("DESK_REPETITIONS"))
        repetitions = qEnvironmentVariableIntValue("DESK_REPETITIONS");
}

void TestRunInterruption::cleanupTestCase()
{
    desk.reset();
}

std::unique_ptr<DeskWindow> TestRunInterruption::startRun(int number)
{
    const QStringList actions{QStringLiteral("Предобработка"), QStringLiteral("Уравнивание"),
                              QStringLiteral("L1-анализ")};
    const int kind = number % (actions.size() + 1);
    if (kind == actions.size()) {
        auto window = desk->makeWindow();
        window->importFile(network);
        return window;
    }
    auto window = desk->makeWindow(network);
    window->getDocument().setModified(false);
    triggerAction(*window, actions[kind]);
    return window;
}

void TestRunInterruption::waitAWhile()
{
    // Processes events, so that lines, links and hand-overs are under way.
    QTest::qWait(static_cast<int>(random.bounded(40)));
}

void TestRunInterruption::stoppedAtAnyMoment()
{
    for (int i = 0; i < repetitions; ++i) {
        const auto window = startRun(i);
        waitAWhile();
        window->getMonitor().stop();
        QVERIFY(window->getMonitor().waitForFinished());
        QVERIFY(!window->isRunWorking());
        const auto count = window->getDocument().getPoints().size();
        QVERIFY(count == static_cast<std::size_t>(kSide) * kSide ||
                (count == 0 && window->getMonitor().wasInterrupted()));
        // The project is as usable as before.
        QVERIFY(isActionEnabled(*window, QStringLiteral("Импорт сети…")));
    }
}

void TestRunInterruption::windowClosedAtAnyMoment()
{
    const CarelessUser user;
    for (int i = 0; i < repetitions; ++i) {
        const auto window = startRun(i);
        waitAWhile();
        window->close();
        QTRY_VERIFY(!window->isVisible());
        QVERIFY(!window->isRunWorking());
    }
}

void TestRunInterruption::windowDestroyedAtAnyMoment()
{
    for (int i = 0; i < repetitions; ++i) {
        auto window = startRun(i);
        waitAWhile();
        window.reset();
    }
    QCOMPARE(desk->application.takeWarnings(), QStringList());
}

void TestRunInterruption::monitorClosedAtAnyMoment()
{
    for (int i = 0; i < repetitions; ++i) {
        const auto window = startRun(i);
        QVERIFY(triggerAction(*window, QStringLiteral("Окно выполнения")));
        waitAWhile();
        window->getMonitor().close();
        QTRY_VERIFY(!window->isRunWorking());
        QVERIFY(!window->getMonitor().isVisible());
    }
}

QTEST_MAIN(TestRunInterruption)
#include "tst_runinterruption.moc"
