#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QXmlStreamReader>

#include <chrono>
#include <cstdio>
#include <thread>

using namespace orvel::desk;
using namespace orvel::test;

/// The program is killed at any moment, over and over: data file and project are the old or the new one.
class TestPowerCut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void filesAreOldOrNewAtAnyMoment();

private:
    int kills = 12;
};

namespace {

const QString kWriteOption = QStringLiteral("--write");
constexpr int kLines = 400;

QString dataFileIn(const QString& folder)
{
    return folder + QStringLiteral("/data.xml");
}

QString projectIn(const QString& folder)
{
    return folder + QStringLiteral("/project.orvel");
}

/// The number that all lines of the data file bear; -1 if the file is not whole.
int readNumber(const QByteArray& dataFile)
{
    int number = -1;
    int lines = 0;
    QXmlStreamReader xml(dataFile);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("mess"))
            continue;
        const QString text = xml.readElementText();
        if (!text.startsWith(QLatin1String("run ")))
            continue; // the closing lines
        const int lineNumber = text.midRef(4, text.indexOf(QLatin1Char(':')) - 4).toInt();
        if (number >= 0 && number != lineNumber)
            return -1;
        number = lineNumber;
        ++lines;
    }
    return xml.hasError() || lines != kLines ? -1 : number;
}

/// The number of a project; -1 if it does not open, or its protocol is another run's.
int readNumber(const PluginManager& plugins, const QString& path)
{
    Document document(plugins, QStringLiteral("empty"));
    try {
        projectfile::load(document, path);
    } catch (const std::exception& error) {
        qWarning("%s", error.what());
        return -1;
    }
    const int number = document.getProject().getName().toInt();
    const QString dataFile = orvel::ProtocolState::read(document.getProtocol()).dataFilePath;
    return readNumber(readFile(dataFile)) == number && document.getPoints().size() == 12 ? number : -1;
}

/// The child: writes run after run and saves each, and tells each number once both are done.
[[noreturn]] void writeForEver(const QString& folder, int number)
{
    DeskFixture desk;
    Document document(desk.plugins, QString());
    document.setNetwork(levelling::GkfReader::readFile(samplePath(QStringLiteral("blunder.gkf"))).network);
    COrvel& protocol = document.getProtocol();
    orvel::ProtocolState state;
    state.dataFilePath = dataFileIn(folder);
    state.write(protocol);
    for (;; ++number) {
        protocol.ProtocolBegin(enums::Adjust);
        for (int i = 0; i < kLines; ++i)
            protocol.AddMessageRaw(QStringLiteral("run %1: ").arg(number) + QString(i * 3, QLatin1Char('x')),
                                   enums::Adjust, COVMessage::Error);
        protocol.ProtocolEnd(enums::Adjust);
        document.getProject().setName(QString::number(number));
        projectfile::save(document, projectIn(folder));
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}

} // namespace

void TestPowerCut::initTestCase()
{
    // More of them find more; each takes its time.
    if (qEnvironmentVariableIsSet("RELIABILITY_KILLS"))
        kills = qEnvironmentVariableIntValue("RELIABILITY_KILLS");
}

void TestPowerCut::filesAreOldOrNewAtAnyMoment()
{
    const DeskFixture desk;
    const QString folder = desk.folder.path();
    QRandomGenerator random(20240601);
    int last = 0;
    int inTheMiddle = 0;
    for (int kill = 0; kill < kills; ++kill) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
                    {kWriteOption, folder, QString::number(last + 1)});
        // The first number tells that it writes; then any moment is as good as another.
        QVERIFY(child.waitForReadyRead(60000));
        const std::chrono::microseconds moment(random.bounded(40000));
        std::this_thread::sleep_for(moment);
        child.kill();
        child.waitForFinished();
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);

        const QList<QByteArray> told = child.readAllStandardOutput().split('\n');
        QVERIFY(told.size() >= 2); // the last is what stands behind the last line break
        last = told[told.size() - 2].toInt();
        const int inData = readNumber(readFile(dataFileIn(folder)));
        const int inProject = readNumber(desk.plugins, projectIn(folder));
        const QByteArray numbers =
            QByteArray::number(last) + ' ' + QByteArray::number(inData) + ' ' + QByteArray::number(inProject);
        QVERIFY2(inData == last || inData == last + 1, numbers.constData());
        QVERIFY2(inProject == last || inProject == inData, numbers.constData());
        inTheMiddle += inData > last ? 1 : 0;
        last = inData;
    }
    qInfo("%d kills, %d of them between writing the protocol and telling of it", kills, inTheMiddle);
}

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments[1] == kWriteOption)
        writeForEver(arguments[2], arguments[3].toInt());
    TestPowerCut test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_powercut.moc"
