#include "Squeezer.h"

#include <QtTest>

#include <stdexcept>

using Language = Squeezer::Language;

class TestSqueezer : public QObject
{
    Q_OBJECT

private slots:
    void squeezesScripts_data();
    void squeezesScripts();
    void shortensNames_data();
    void shortensNames();
    void shortensOwnNames_data();
    void shortensOwnNames();
    void refusesOwnNamesThatAreNot_data();
    void refusesOwnNamesThatAreNot();
    void squeezesStyles_data();
    void squeezesStyles();
    void packsCyrillic_data();
    void packsCyrillic();
    void refusesOpenEnds_data();
    void refusesOpenEnds();
};

void TestSqueezer::squeezesScripts_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const char* source, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("blanks", "let a = b + c ;\n  f ( a )\n", "let a=b+c;f(a)");
    row("words stay apart", "return  typeof x in y", "return typeof x in y");
    row("signs stay apart", "a + +b - -c + -d", "a+ +b- -c+-d");
    row("comments", "a; // b\nc; /* d\ne */ f", "a;c;f");
    row("a comment's mark in a string", "f('//', \"/*\")", "f('//',\"/*\")");
    row("blanks in strings", "f(\"a  b\", `c  ${ d }`)", "f(\"a  b\",`c  ${d}`)");
    row("escaped quotes", "f('a\\'  b' , 1)", "f('a\\'  b',1)");
    row("an expression", "x.replace( /  [/ ] \\/ /g , y)", "x.replace(/  [/ ] \\/ /g,y)");
    row("an expression behind a word", "return /a b/ .test(c)", "return/a b/.test(c)");
    row("a division", "a / b / c", "a/b/c");
    row("const", "const a = 1; for (const b of c) b.const", "let a=1;for(let b of c)b.const");
    row("truth", "return true; a === false; a.true", "return!0;a===!1;a.true");
    row("a semicolon before a brace", "{ a = 1; }", "{a=1}");
    row("the body of a loop", "{ while (f()); }", "{while(f());}");
    row("private names", "class A { #long = 1; #other() { return this.#long; } }",
        "class A{#a=1;#b(){return this.#a}}");
    row("private name behind a word", "async #long() {}", "async #a(){}");
}

void TestSqueezer::squeezesScripts()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);

    QCOMPARE(Squeezer::squeeze(source, Language::Script), expected);
}

void TestSqueezer::shortensNames_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const char* source, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("constants", "const one = 1; const two = one;", "let a=1;let b=a;");
    row("functions", "function one() {} function* two() { one(); }", "function a(){}function*b(){a();}");
    row("classes", "class One {} new One()", "class a{}new a()");
    row("parameters", "f((one, ...two) => one + two); class C { m(one, { two }) { g(one); } get(){} }",
        "f((a,...two)=>a+two);class C{m(a,{two}){g(a);}get(){}}");
    row("a lone parameter without a declaration", "if (one) { f(one); } while (one) { f(one); }",
        "if(one){f(one);}while(one){f(one);}");
    row("undeclared names", "let one = window;", "let a=window;");
    row("names that are taken", "let one = a + b;", "let c=a+b;");
    row("members", "let one = 1; two.one = one;", "let one=1;two.one=one;");
    row("spread names", "let one = []; f(...one)", "let a=[];f(...a)");
    row("keys", "let one = 1; f({ one: 2 })", "let one=1;f({one:2})");
    row("short keys", "let one = 1; f({ one, b })", "let one=1;f({one,b})");
    row("names with a default", "let one = 1; let { one = 2 } = b", "let one=1;let{one=2}=b");
    row("names in template strings", "let one = 1; f(`one ${one} ${g({ a: `${one}` })}`, one)",
        "let b=1;f(`one ${b} ${g({a:`${b}`})}`,b)");
    row("private names in template strings", "class A { #one = 1; f() { return `${this.#one}`; } }",
        "class A{#a=1;f(){return`${this.#a}`}}");
    row("words in strings", "let one = 1; f(\"one\", one)", "let a=1;f(\"one\",a)");
}

void TestSqueezer::shortensNames()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);

    QCOMPARE(Squeezer::squeeze(source, Language::Script), expected);
}

void TestSqueezer::shortensOwnNames_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const char* source, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("members", "two.one = three.one;", "two.a=three.a;");
    row("fields and methods", "class C { one = 1; two() {} } c.one", "class C{a=1;two(){}}c.a");
    row("keys", "f({ one: 2, two: 3 })", "f({a:2,two:3})");
    row("short keys", "const { one, two } = f({ one })", "let{a,two}=f({a})");
    row("variables of that name", "let one = x.one;", "let a=x.a;");
    row("words in strings", "f(\"one two\", `one ${x.one}`)", "f(\"one two\",`one ${x.a}`)");
}

void TestSqueezer::shortensOwnNames()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);

    QCOMPARE(Squeezer::squeeze(source, Language::Script, {QStringLiteral("one")}), expected);
}

void TestSqueezer::refusesOwnNamesThatAreNot_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no such name") << QStringLiteral("two.three")
                                  << QStringLiteral("own name one: not in the script");
    QTest::newRow("only a text") << QStringLiteral("two['one']")
                                 << QStringLiteral("own name one: not in the script");
    QTest::newRow("a text, too") << QStringLiteral("two[\"one\"] = two.one")
                                 << QStringLiteral("own name one: a text in the script, too");
    QTest::newRow("a template string, too") << QStringLiteral("two[`one`] = two.one")
                                            << QStringLiteral("own name one: a text in the script, too");
}

void TestSqueezer::refusesOwnNamesThatAreNot()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);

    try {
        Squeezer::squeeze(source, Language::Script, {QStringLiteral("one")});
        QFAIL("taken");
    } catch (const std::runtime_error& error) {
        QCOMPARE(QString::fromStdString(error.what()), expected);
    }
}

void TestSqueezer::squeezesStyles_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const char* source, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("rules", "a > b ,\nc {\n  top: 1px;\n  left: 2px;\n}\n", "a>b,c{top:1px;left:2px}");
    row("descendants stay descendants", "a :is(b) .c [d] #e", "a :is(b) .c [d] #e");
    row("sums keep their blanks", "a { top: calc(1px + 2px); }", "a{top:calc(1px + 2px)}");
    row("strings", "a { content: \"x ;  y\"; }", "a{content:\"x ;  y\"}");
    row("addresses are no comments", "a { b: url(x//y); }", "a{b:url(x//y)}");
    row("zeros before a point", "a { b: 0.5rem 10.5px 0 1.05em; }", "a{b:.5rem 10.5px 0 1.05em}");
    row("colours are no private names", "a { color: #123456; }", "a{color:#123456}");
}

void TestSqueezer::squeezesStyles()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);

    QCOMPARE(Squeezer::squeeze(source, Language::Style), expected);
}

void TestSqueezer::packsCyrillic_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QStringLiteral("plain text") << QStringLiteral("plain text");
    QTest::newRow("first and last") << QStringLiteral("Аяё") << QStringLiteral("~;z|~");
    QTest::newRow("blanks inside") << QStringLiteral("да нет ") << QStringLiteral("~_[ h`m~ ");
    QTest::newRow("a letter that becomes a backslash") << QStringLiteral("б") << QStringLiteral("~\\\\~");
    QTest::newRow("broken by a mark") << QStringLiteral("Ошибок: {0}") << QStringLiteral("~Isc\\\\ie~: {0}");
}

void TestSqueezer::packsCyrillic()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);

    QCOMPARE(Squeezer::packCyrillic(text), expected);
    QCOMPARE(Squeezer::squeeze(QStringLiteral("\"%1\"").arg(text), Language::Script),
             QStringLiteral("\"%1\"").arg(expected));
    QCOMPARE(Squeezer::squeeze(QStringLiteral("\"%1\"").arg(text), Language::Style),
             QStringLiteral("\"%1\"").arg(text));
}

void TestSqueezer::refusesOpenEnds_data()
{
    QTest::addColumn<QString>("source");

    QTest::newRow("comment") << QStringLiteral("a /* b");
    QTest::newRow("string") << QStringLiteral("a = \"b");
    QTest::newRow("expression") << QStringLiteral("a = /b[/]");
}

void TestSqueezer::refusesOpenEnds()
{
    QFETCH(QString, source);

    QVERIFY_EXCEPTION_THROWN(Squeezer::squeeze(source, Language::Script), std::runtime_error);
}

QTEST_GUILESS_MAIN(TestSqueezer)
#include "tst_squeezer.moc"
