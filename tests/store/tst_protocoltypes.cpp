#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QtTest>

using Access = OrvelTestAccess;

class TestProtocolTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordIsRegisteredAtLoad_data();
    void recordIsRegisteredAtLoad();
    void membersHaveTheirValues();
    void aSecondRegistrationRegistersNothing();

    void titleOfAType_data();
    void titleOfAType();
    void titleIsThatOfTheRegistry();

    void groupNameIsTheStoredOne();
    void groupNameOfAnUnknownTypeIsEmpty();
};

void TestProtocolTypes::recordIsRegisteredAtLoad_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("internal");
    QTest::addColumn<QString>("singular");
    QTest::addColumn<QString>("plural");
    QTest::newRow("enumeration") << 305487616 << "Orvel"
                                 << ""
                                 << "";
    QTest::newRow("UndefProtocol") << 305510144 << "UndefProtocol"
                                   << ""
                                   << "";
    QTest::newRow("Compile") << 305510145 << "Compile"
                             << "Предобработка"
                             << " ";
    QTest::newRow("Adjust") << 305510146 << "Adjust"
                            << "Уравнивание"
                            << " ";
    QTest::newRow("L1Analysis") << 305510147 << "L1Analysis"
                                << "L1-анализ"
                                << " ";
    QTest::newRow("Import") << 305510148 << "Import"
                            << "Импорт"
                            << " ";
    QTest::newRow("Export") << 305510149 << "Export"
                            << "Экспорт"
                            << " ";
    QTest::newRow("ImportTemplate") << 305510150 << "ImportTemplate"
                                    << "Импорт по шаблону"
                                    << " ";
    QTest::newRow("FixedPointsAnalysis") << 305510151 << "FixedPointsAnalysis"
                                         << "Общий анализ исходных данных"
                                         << " ";
    QTest::newRow("AutoChainTracingAnalysis") << 305510152 << "AutoChainTracingAnalysis"
                                              << "Авто трассирование"
                                              << " ";
    QTest::newRow("CalcTacheometry") << 305510153 << "CalcTacheometry"
                                     << "Расчет тахеометрии"
                                     << " ";
    QTest::newRow("none behind the last") << 305510154 << ""
                                          << ""
                                          << "";
}

void TestProtocolTypes::recordIsRegisteredAtLoad()
{
    QFETCH(int, value);
    QFETCH(QString, internal);
    QFETCH(QString, singular);
    QFETCH(QString, plural);
    const EnumData record = getEnumData(value);
    QCOMPARE(QString::fromStdString(record.getTextInternal()), internal);
    QCOMPARE(QString::fromStdWString(record.getTextSingular()), singular);
    QCOMPARE(QString::fromStdWString(record.getTextPlural()), plural);
}

void TestProtocolTypes::membersHaveTheirValues()
{
    const std::vector<int> members = {enums::UndefProtocol,
                                      enums::Compile,
                                      enums::Adjust,
                                      enums::L1Analysis,
                                      enums::Import,
                                      enums::Export,
                                      enums::ImportTemplate,
                                      enums::FixedPointsAnalysis,
                                      enums::AutoChainTracingAnalysis,
                                      enums::CalcTacheometry};
    QCOMPARE(members, (std::vector<int>{0x1235B700, 0x1235B701, 0x1235B702, 0x1235B703, 0x1235B704,
                                        0x1235B705, 0x1235B706, 0x1235B707, 0x1235B708, 0x1235B709}));
}

void TestProtocolTypes::aSecondRegistrationRegistersNothing()
{
    const std::vector<int> values = {0x12355F00, enums::UndefProtocol, enums::CalcTacheometry};
    std::vector<EnumData> originals;
    for (const int value : values) {
        originals.push_back(getEnumData(value));
        registerEnumData(EnumData(value, "changed", "изменено", "изменены"));
    }
    enums::initEnumData_Orvel();
    for (const int value : values)
        QCOMPARE(getEnumData(value).getTextInternal(), std::string("changed"));
    for (const EnumData& original : originals)
        registerEnumData(original);
}

void TestProtocolTypes::titleOfAType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("title");
    QTest::newRow("undefined") << 0x1235B700 << "";
    QTest::newRow("adjustment") << 0x1235B702 << "Уравнивание";
    QTest::newRow("tacheometry") << 0x1235B709 << "Расчет тахеометрии";
    QTest::newRow("unknown") << 4711 << "";
}

void TestProtocolTypes::titleOfAType()
{
    QFETCH(int, type);
    QFETCH(QString, title);
    ProtocolFixture f;
    QCOMPARE(Access::GetProtocolTitle(f.protocol, type), title);
}

void TestProtocolTypes::titleIsThatOfTheRegistry()
{
    ProtocolFixture f;
    registerEnumData(EnumData(4712, "Own", "Свой 𝄞", "Свои"));
    QCOMPARE(Access::GetProtocolTitle(f.protocol, 4712), QStringLiteral("Свой 𝄞"));
}

void TestProtocolTypes::groupNameIsTheStoredOne()
{
    ProtocolFixture f;
    QCOMPARE(f.protocol.GetItemGroupName(kPointItemType), QStringLiteral("Пункты"));
    QCOMPARE(f.protocol.GetItemGroupName(kGeneralItemType), QStringLiteral("Общие"));
    Access::itemGroupNames(f.protocol)[5] = QStringLiteral("пять");
    QCOMPARE(f.protocol.GetItemGroupName(5), QStringLiteral("пять"));
}

void TestProtocolTypes::groupNameOfAnUnknownTypeIsEmpty()
{
    ProtocolFixture f;
    const std::size_t count = Access::itemGroupNames(f.protocol).size();
    // The registry knows this type; the protocol does not group by it.
    QCOMPARE(f.protocol.GetItemGroupName(kForeignItemType), QString());
    QCOMPARE(f.protocol.GetItemGroupName(kInstrumentItemType), QString());
    QCOMPARE(f.protocol.GetItemGroupName(0), QString());
    QCOMPARE(Access::itemGroupNames(f.protocol).size(), count);
}

QTEST_GUILESS_MAIN(TestProtocolTypes)
#include "tst_protocoltypes.moc"
