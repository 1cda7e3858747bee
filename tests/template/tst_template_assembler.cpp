#include "TemplateAssembler.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <stdexcept>

class TestTemplateAssembler : public QObject
{
    Q_OBJECT

private slots:
    void assemblesOneFile();
    void escapesWhatIsNotAscii();
    void keepsTagsInScriptsFromEndingThem();
    void shortensOwnNames();
    void refusesWhatWouldBreakThePage_data();
    void refusesWhatWouldBreakThePage();
    void refusesATemplateThatIsTooLarge();
    void bundlesModulesInTheOrderOfTheirImports();
    void refusesModulesThatShareAName();
    void refusesOtherImports();
    void installedTemplateIsAsciiAndSmall();
    void installedTemplateIsSplitAtItsOnlyClosingDiv();
    void installedTemplateNamesTheHashesOfItsStyleAndScript();

private:
    static QString message(const std::function<void()>& action);
    static QByteArray installedTemplate();
    void writeModule(const QString& name, const QByteArray& text) const;
    QString modulePath(const QString& name) const { return folder.filePath(name); }

    QTemporaryDir folder;
};

namespace {

const QString s_markup = QStringLiteral("<meta content=\"@policy@\">\n<!-- @style@ -->\n<!-- @script@ -->\n"
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

void TestTemplateAssembler::writeModule(const QString& name, const QByteArray& text) const
{
    QFile file(modulePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void TestTemplateAssembler::assemblesOneFile()
{
    const QByteArray page = TemplateAssembler::assemble(s_markup, QStringLiteral("a { b: c; }"),
                                                        QStringLiteral("const a = 1;\n"));

    QCOMPARE(QString::fromLatin1(page),
             QStringLiteral("<meta content=\"default-src 'none'; script-src %1; style-src %2; img-src data:; "
                            "base-uri 'none'; form-action 'none'\">\n<style>a{b:c}</style>\n"
                            "<script>let a=1;</script>\n<body><div></div></body>\n")
                 .arg(hashOf("let a=1;"), hashOf("a{b:c}")));
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
        TemplateAssembler::assemble(s_markup, {}, QStringLiteral("f('</Script>', `</div>`, /<\\/li>/);"));

    QCOMPARE(textBetween(page, "<script>", "</script>"),
             QByteArray("f('<\\/Script>',`<\\/div>`,/<\\/li>/);"));
}

void TestTemplateAssembler::shortensOwnNames()
{
    const QByteArray page =
        TemplateAssembler::assemble(s_markup, {}, QStringLiteral("b.own = 1;"), {QStringLiteral("own")});

    QCOMPARE(textBetween(page, "<script>", "</script>"), QByteArray("b.a=1;"));
}

void TestTemplateAssembler::refusesWhatWouldBreakThePage_data()
{
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");

    QTest::newRow("second div") << s_markup + QStringLiteral("<DIV></DIV >") << QString() << QString()
                                << QStringLiteral("the markup must hold exactly one closing div tag");
    QTest::newRow("no div") << QStringLiteral("@policy@") << QString() << QString()
                            << QStringLiteral("the markup must hold exactly one closing div tag");
    QTest::newRow("comment in script") << s_markup << QString() << QStringLiteral("f('<!--')")
                                       << QStringLiteral("the script must not contain \"<!--\"");
    QTest::newRow("end tag in style") << s_markup << QStringLiteral("a{content:'</div>'}") << QString()
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
        QStringLiteral("f('%1')").arg(QString(TemplateAssembler::s_maxSize, QLatin1Char('x')));

    QVERIFY(message([&] {
                TemplateAssembler::assemble(s_markup, {}, script);
            }).startsWith(QStringLiteral("the template has ")));
}

void TestTemplateAssembler::bundlesModulesInTheOrderOfTheirImports()
{
    writeModule(QStringLiteral("main.js"),
                "import { a } from \"./a.js\";\nimport {\n  b,\n} from \"./b.js\";\n\na(b);\n");
    writeModule(QStringLiteral("a.js"), "import { c } from \"./c.js\";\nexport function a() {}\n");
    writeModule(QStringLiteral("b.js"), "import { c } from \"./c.js\";\nexport const b = c;\n");
    writeModule(QStringLiteral("c.js"), "export let c = 1;\n");

    QCOMPARE(TemplateAssembler::bundleModules(modulePath(QStringLiteral("main.js"))),
             QStringLiteral("let c = 1;\nfunction a() {}\nconst b = c;\n\na(b);\n"));
}

void TestTemplateAssembler::refusesModulesThatShareAName()
{
    writeModule(QStringLiteral("main.js"), "import { a } from \"./a.js\";\nconst step = 1;\n");
    writeModule(QStringLiteral("a.js"), "export const a = 1;\nfunction step() {}\n");

    const QString path = modulePath(QStringLiteral("main.js"));
    QCOMPARE(message([&] { TemplateAssembler::bundleModules(path); }),
             QStringLiteral("%1: the name step is taken by another module").arg(path));
}

void TestTemplateAssembler::refusesOtherImports()
{
    writeModule(QStringLiteral("main.js"), "import * as a from \"./a.js\";\n");

    const QString path = modulePath(QStringLiteral("main.js"));
    QCOMPARE(message([&] { TemplateAssembler::bundleModules(path); }),
             QStringLiteral("%1: cannot bundle \"import * as a from \"./a.js\";\"").arg(path));
}

void TestTemplateAssembler::installedTemplateIsAsciiAndSmall()
{
    const QByteArray page = installedTemplate();

    QVERIFY(!page.isEmpty());
    QVERIFY(page.size() <= 60000);
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
