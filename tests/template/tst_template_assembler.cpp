#include "TemplateAssembler.h"

#include <QCryptographicHash>
#include <QFile>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <stdexcept>

using orvel::TemplateAssembler;

class TestTemplateAssembler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assemblesOneFile();
    void escapesWhatIsNotAscii();
    void keepsTagsInScriptsFromEndingThem();
    void refusesWhatWouldBreakThePage_data();
    void refusesWhatWouldBreakThePage();
    void refusesATemplateThatIsTooLarge();
    void installedTemplateIsAsciiAndSmall();
    void installedTemplateIsSplitAtItsOnlyClosingDiv();
    void installedTemplateNamesTheHashesOfItsStyleAndScript();

private:
    static QString message(const std::function<void()>& action);
    static QByteArray installedTemplate();
};

namespace {

const QString kMarkup = QStringLiteral("<meta content=\"@policy@\">\n<!-- @style@ -->\n<!-- @script@ -->\n"
                                       "<body><div></div></body>\n");

QString hashOf(const QByteArray& text)
{
    const QByteArray hash = QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64();
    return QStringLiteral("'sha256-%1'").arg(QString::fromLatin1(hash));
}

QByteArray textBetween(const QByteArray& page, const QByteArray& start, const QByteArray& end)
{
    const int from = page.indexOf(start) + start.size();
    return page.mid(from, page.indexOf(end, from) - from);
}

} // namespace

QString TestTemplateAssembler::message(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::runtime_error& error) {
        return QString::fromStdString(error.what());
    }
    return {};
}

QByteArray TestTemplateAssembler::installedTemplate()
{
    QFile file(QStringLiteral(PROTOCOL_TEMPLATE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestTemplateAssembler::assemblesOneFile()
{
    const QByteArray page =
        TemplateAssembler::assemble(kMarkup, QStringLiteral("a{b:c}\n"), QStringLiteral("f(1);\n"));

    QCOMPARE(
        QString::fromLatin1(page),
        QStringLiteral("<meta content=\"default-src 'none'; script-src %1; worker-src blob:; style-src %2; "
                       "img-src data:; base-uri 'none'; form-action 'none'\">\n<style>a{b:c}</style>\n"
                       "<script>f(1);</script>\n<body><div></div></body>\n")
            .arg(hashOf("f(1);"), hashOf("a{b:c}")));
}

void TestTemplateAssembler::escapesWhatIsNotAscii()
{
    const QString text = QStringLiteral("a\u00d7\u0416\U0001F600");

    QCOMPARE(TemplateAssembler::asciiScript(text), QStringLiteral("a\\u00d7\\u0416\\ud83d\\ude00"));
    QCOMPARE(TemplateAssembler::asciiStyle(text), QStringLiteral("a\\0000d7 \\000416 \\01f600 "));
    QCOMPARE(TemplateAssembler::asciiMarkup(text), QStringLiteral("a&#215;&#1046;&#128512;"));
}

void TestTemplateAssembler::keepsTagsInScriptsFromEndingThem()
{
    const QByteArray page =
        TemplateAssembler::assemble(kMarkup, {}, QStringLiteral("f('</Script>', `</div>`, /<\\/li>/);"));

    QCOMPARE(textBetween(page, "<script>", "</script>"),
             QByteArray("f('<\\/Script>', `<\\/div>`, /<\\/li>/);"));
}

void TestTemplateAssembler::refusesWhatWouldBreakThePage_data()
{
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");

    QTest::newRow("second div") << kMarkup + QStringLiteral("<DIV></DIV >") << QString() << QString()
                                << QStringLiteral("the markup must hold exactly one closing div tag");
    QTest::newRow("no div") << QStringLiteral("@policy@") << QString() << QString()
                            << QStringLiteral("the markup must hold exactly one closing div tag");
    QTest::newRow("comment in script") << kMarkup << QString() << QStringLiteral("f('<!--')")
                                       << QStringLiteral("the script must not contain \"<!--\"");
    QTest::newRow("end tag in style") << kMarkup << QStringLiteral("a{content:'</div>'}") << QString()
                                      << QStringLiteral("the style must not contain \"</\"");
    QTest::newRow("no place for the script")
        << QStringLiteral("@policy@<!-- @style@ --><div></div>") << QString() << QString()
        << QStringLiteral("the markup must contain <!-- @script@ --> exactly once");
}

void TestTemplateAssembler::refusesWhatWouldBreakThePage()
{
    QFETCH(QString, markup);
    QFETCH(QString, style);
    QFETCH(QString, script);
    QFETCH(QString, expected);

    QCOMPARE(message([&] { TemplateAssembler::assemble(markup, style, script); }), expected);
}

void TestTemplateAssembler::refusesATemplateThatIsTooLarge()
{
    const QString script =
        QStringLiteral("f('%1')").arg(QString(TemplateAssembler::kMaxSize, QLatin1Char('x')));

    QVERIFY(message([&] {
                TemplateAssembler::assemble(kMarkup, {}, script);
            }).startsWith(QStringLiteral("the template has ")));
}

void TestTemplateAssembler::installedTemplateIsAsciiAndSmall()
{
    const QByteArray page = installedTemplate();

    QVERIFY(!page.isEmpty());
    QVERIFY(page.size() <= 100000);
    QVERIFY(
        std::all_of(page.cbegin(), page.cend(), [](char c) { return (c >= ' ' && c < 0x7f) || c == '\n'; }));
}

void TestTemplateAssembler::installedTemplateIsSplitAtItsOnlyClosingDiv()
{
    const QString page = QString::fromLatin1(installedTemplate());

    QCOMPARE(page.count(QStringLiteral("</div"), Qt::CaseInsensitive), 1);
    const int split = page.lastIndexOf(QStringLiteral("</div>"), -1, Qt::CaseInsensitive);
    QVERIFY(page.left(split).endsWith(QStringLiteral("<div id=\"lines\">")));
    QVERIFY(!page.mid(split).contains(QStringLiteral("<script"), Qt::CaseInsensitive));
}

void TestTemplateAssembler::installedTemplateNamesTheHashesOfItsStyleAndScript()
{
    const QByteArray page = installedTemplate();

    const QString policy =
        QString::fromLatin1(textBetween(page, "Content-Security-Policy\" content=\"", "\""));
    QVERIFY(policy.contains(
        QStringLiteral("script-src %1;").arg(hashOf(textBetween(page, "<script>", "</script>")))));
    QVERIFY(policy.contains(
        QStringLiteral("style-src %1;").arg(hashOf(textBetween(page, "<style>", "</style>")))));
    QCOMPARE(page.count("<script"), 1);
    QCOMPARE(page.count("<style"), 1);
}

QTEST_GUILESS_MAIN(TestTemplateAssembler)
#include "tst_template_assembler.moc"
