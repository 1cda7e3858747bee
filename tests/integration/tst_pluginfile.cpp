#include "host/enums/EnumData.h"

#include <QCborStreamReader>
#include <QFile>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QPointer>
#include <QtTest>

#include <vector>

namespace {

const char kHeader[] = "QTMETADATA !\x00\x05\x0F"; // and the terminating zero as the last byte

QString getPluginPath()
{
    return QStringLiteral(ORVEL_PLUGIN_PATH);
}

QByteArray readPluginFile()
{
    QFile file(getPluginPath());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", ORVEL_PLUGIN_PATH);
    return file.readAll();
}

/// The texts of a CBOR map with numbers for keys, in the order of the file.
QStringList readTexts(QCborStreamReader& reader)
{
    QStringList texts;
    if (!reader.isMap() || !reader.enterContainer())
        return texts;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        const qint64 key = reader.toInteger();
        reader.next();
        QString text;
        for (auto chunk = reader.readString(); chunk.status == QCborStreamReader::Ok;
             chunk = reader.readString())
            text += chunk.data;
        texts.append(QStringLiteral("%1: %2").arg(QString::number(key), text));
    }
    reader.leaveContainer();
    return texts;
}

using InstanceFunction = QObject* (*)();

/// The entry point that gives the root.
InstanceFunction resolveInstance()
{
    QLibrary plugin(getPluginPath());
    const auto getInstance = reinterpret_cast<InstanceFunction>(plugin.resolve("qt_plugin_instance"));
    if (!getInstance)
        qFatal("The plug-in has no root");
    return getInstance;
}

/// The texts of the enumeration records: "internal|singular|plural".
QStringList describe(const std::vector<int>& values)
{
    QStringList texts;
    for (const int value : values) {
        const EnumData record = getEnumData(value);
        texts.append(QStringLiteral("%1|%2|%3")
                         .arg(QString::fromStdString(record.getTextInternal()),
                              QString::fromStdWString(record.getTextSingular()),
                              QString::fromStdWString(record.getTextPlural())));
    }
    return texts;
}

} // namespace

/// The plug-in's file as a host meets it, which knows no more than the path.
class TestPluginFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadingRegistersTheProtocolTypes();
    void metadataHoldsTheInterfaceAndTheClassOnly();
    void metadataIsWhatTheEntryPointAnswers();
    void metadataAsksForNoDebugBuild();
    void rootIsMadeOnce();
    void rootIsMadeAgainAfterItsEnd();
};

void TestPluginFile::loadingRegistersTheProtocolTypes()
{
    QCOMPARE(describe({0x12355F00, 0x1235B702}), QStringList({QStringLiteral("||"), QStringLiteral("||")}));
    QLibrary plugin(getPluginPath());
    QVERIFY2(plugin.load(), qPrintable(plugin.errorString()));

    QCOMPARE(
        describe({0x12355F00, 0x1235B700, 0x1235B701, 0x1235B702, 0x1235B703, 0x1235B704, 0x1235B705,
                  0x1235B706, 0x1235B707, 0x1235B708, 0x1235B709, 0x1235B70A}),
        QStringList({QStringLiteral("Orvel||"), QStringLiteral("UndefProtocol||"),
                     QStringLiteral("Compile|Предобработка| "), QStringLiteral("Adjust|Уравнивание| "),
                     QStringLiteral("L1Analysis|L1-анализ| "), QStringLiteral("Import|Импорт| "),
                     QStringLiteral("Export|Экспорт| "), QStringLiteral("ImportTemplate|Импорт по шаблону| "),
                     QStringLiteral("FixedPointsAnalysis|Общий анализ исходных данных| "),
                     QStringLiteral("AutoChainTracingAnalysis|Авто трассирование| "),
                     QStringLiteral("CalcTacheometry|Расчет тахеометрии| "), QStringLiteral("||")}));
}

void TestPluginFile::metadataHoldsTheInterfaceAndTheClassOnly()
{
    const QByteArray content = readPluginFile();
    const int begin = content.indexOf("QTMETADATA !");
    QVERIFY(begin >= 0);
    QCOMPARE(content.lastIndexOf("QTMETADATA !"), begin);
    QCOMPARE(content.mid(begin, sizeof(kHeader)), QByteArray(kHeader, sizeof(kHeader)));

    QCborStreamReader reader(content.mid(begin + int(sizeof(kHeader))));
    QCOMPARE(readTexts(reader),
             QStringList({QStringLiteral("2: org.orvel.OrvelSupport"), QStringLiteral("3: OrvelSupport")}));
    QCOMPARE(reader.lastError(), QCborError{QCborError::NoError});
}

void TestPluginFile::metadataIsWhatTheEntryPointAnswers()
{
    const QByteArray content = readPluginFile();
    const int begin = content.indexOf("QTMETADATA !");
    QVERIFY(begin >= 0);
    QCborStreamReader reader(content.mid(begin + int(sizeof(kHeader))));
    readTexts(reader);
    const int size = int(sizeof(kHeader)) + int(reader.currentOffset());

    QLibrary plugin(getPluginPath());
    using QueryFunction = const char* (*)();
    const auto query = reinterpret_cast<QueryFunction>(plugin.resolve("qt_plugin_query_metadata"));
    QVERIFY(query);
    QCOMPARE(QByteArray(query(), size), content.mid(begin, size));
}

void TestPluginFile::metadataAsksForNoDebugBuild()
{
    const QJsonObject expected{{QStringLiteral("IID"), QStringLiteral("org.orvel.OrvelSupport")},
                               {QStringLiteral("className"), QStringLiteral("OrvelSupport")},
                               {QStringLiteral("archreq"), 0},
                               {QStringLiteral("debug"), false},
                               {QStringLiteral("version"), 0x050F00}};
    QCOMPARE(QPluginLoader(getPluginPath()).metaData(), expected);
}

void TestPluginFile::rootIsMadeOnce()
{
    const InstanceFunction getInstance = resolveInstance();
    QObject* root = getInstance();
    QVERIFY(root);
    QCOMPARE(root->metaObject()->className(), "OrvelSupport");
    QCOMPARE(root->parent(), nullptr);
    QCOMPARE(getInstance(), root);
    QCOMPARE(QPluginLoader(getPluginPath()).instance(), root);
}

void TestPluginFile::rootIsMadeAgainAfterItsEnd()
{
    const InstanceFunction getInstance = resolveInstance();
    QPointer<QObject> root = getInstance();
    root->setProperty("isFirst", true);
    delete root;
    QVERIFY(root.isNull());

    root = getInstance();
    QVERIFY(root);
    QCOMPARE(root->metaObject()->className(), "OrvelSupport");
    QVERIFY(!root->property("isFirst").isValid());
    QCOMPARE(getInstance(), root.data());
}

QTEST_GUILESS_MAIN(TestPluginFile)
#include "tst_pluginfile.moc"
