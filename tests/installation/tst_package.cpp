#include "tests/installation/InstalledTree.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

#include <memory>
#include <set>

using orvel::test::InstalledTree;
using orvel::test::Outcome;
using orvel::test::runProgram;

namespace {

const QString kExample = QStringLiteral(PROJECT_SOURCES "/examples/minimal-host/");

QString readText(const QString& path)
{
    return QString::fromUtf8(readFile(path));
}

/// The blocks of a document that are fenced as `language`, in their order.
QStringList getBlocks(const QString& document, const QString& language)
{
    const QRegularExpression fence(QStringLiteral("^```%1\\n(.*?)^```$").arg(language),
                                   QRegularExpression::MultilineOption |
                                       QRegularExpression::DotMatchesEverythingOption);
    QStringList blocks;
    for (auto match = fence.globalMatch(document); match.hasNext();)
        blocks.append(match.next().captured(1));
    return blocks;
}

QStringList readLines(const QString& path)
{
    return readText(path).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// Classes and free functions among the symbols that a library has for others. What the templates of others
/// leave behind is not ours to say, nor are the tables of a class, which come with its functions.
QStringList getExportedNames(const QString& library)
{
    const Outcome outcome =
        runProgram(QStringLiteral(NM_PROGRAM),
                   {QStringLiteral("--dynamic"), QStringLiteral("--defined-only"),
                    QStringLiteral("--demangle"), QStringLiteral("--format=posix"), library},
                   QDir::tempPath());
    const QRegularExpression nobodys(QStringLiteral(
        "^((void )?(std|boost|__gnu_cxx)::|vtable for |VTT for |typeinfo |(non-)?virtual thunk |guard "
        "variable |_edata|_end|__bss_start|_init|_fini)"));
    const QRegularExpression afterName(QStringLiteral("[(<[]| [A-Za-z] [0-9a-f]"));
    std::set<QString> names;
    for (const QString& line :
         QString::fromUtf8(outcome.output).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (line.contains(nobodys))
            continue;
        // Members stand under their class.
        QStringList scopes;
        for (const QString& scope : line.left(line.indexOf(afterName)).split(QStringLiteral("::"))) {
            scopes.append(scope);
            if (scope.at(0).isUpper())
                break;
        }
        names.insert(scopes.join(QStringLiteral("::")));
    }
    return QStringList(names.begin(), names.end());
}

/// Runs the example where it lies, without a display and whatever the system has installed.
Outcome runExample(const QString& program)
{
    const QTemporaryDir runtimeFolder;
    return runProgram(program, {}, QFileInfo(program).path(),
                      {QStringLiteral("QT_QPA_PLATFORM=offscreen"),
                       QStringLiteral("XDG_DATA_DIRS=") + runtimeFolder.path(),
                       QStringLiteral("XDG_DATA_HOME=") + runtimeFolder.path(),
                       QStringLiteral("XDG_RUNTIME_DIR=") + runtimeFolder.path()});
}

} // namespace

/// A host's developer finds all that a host is built with, wherever the installation lies.
class TestPackage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void installsTheseHeaders();
    void everyLibraryIsFound_data();
    void everyLibraryIsFound();
    void librariesHaveVersionedNames_data();
    void librariesHaveVersionedNames();
    void exportsTheseSymbols_data();
    void exportsTheseSymbols();
    void headersCompileOnTheirOwn();

    void readmeShowsTheExample();
    void exampleBuiltWithCMakeMakesItsPage();
    void exampleBuiltWithPkgConfigMakesItsPage();
    void withoutItsDataTheExampleMakesAPlainPage();

    void insideAnotherProjectTheLibrariesAreBuilt();
    void uninstallingLeavesNothing();

private:
    void configureAndBuild(const QString& sources, const QString& build);
    void checkPage(const QString& program);

    std::unique_ptr<InstalledTree> tree;
};

void TestPackage::initTestCase()
{
    tree = std::make_unique<InstalledTree>();
}

void TestPackage::configureAndBuild(const QString& sources, const QString& build)
{
    const Outcome configured =
        runProgram(QStringLiteral(CMAKE_PROGRAM),
                   {QStringLiteral("-S"), sources, QStringLiteral("-B"), build, QStringLiteral("-G"),
                    QStringLiteral("Ninja"), QStringLiteral("-DCMAKE_CXX_COMPILER=" CXX_COMPILER),
                    QStringLiteral("-DCMAKE_PREFIX_PATH=") + tree->path(QString())},
                   QDir::tempPath());
    QVERIFY2(configured.exitCode == 0, configured.output.constData());
    const Outcome built =
        runProgram(QStringLiteral(CMAKE_PROGRAM), {QStringLiteral("--build"), build}, build);
    QVERIFY2(built.exitCode == 0, built.output.constData());
}

void TestPackage::checkPage(const QString& program)
{
    const QString folder = QFileInfo(program).path();
    const Outcome outcome = runExample(program);
    QVERIFY2(outcome.exitCode == 0, outcome.output.constData());
    QCOMPARE(QString::fromUtf8(outcome.output), QString());

    const QString page = readText(folder + QStringLiteral("/adjust.html"));
    QVERIFY(page.contains(QStringLiteral("Misclosure at <a href=\"survey://locate-item?")));
    QVERIFY(page.contains(QStringLiteral(">R12</a>: 41 mm, limit 20 mm")));
    // The installed template is around it.
    const QString sheet = readText(tree->path(QStringLiteral("share/orvel/Protocol/protocol.html")));
    QCOMPARE(page.left(2000), sheet.left(2000));
}

void TestPackage::installsTheseHeaders()
{
    const QDir root(tree->path(QStringLiteral("include/orvel")));
    QStringList headers;
    for (QDirIterator it(root.path(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        headers.append(root.relativeFilePath(it.next()));
    headers.sort();
    QCOMPARE(headers, readLines(QStringLiteral(EXPECTED "/headers")));
}

void TestPackage::everyLibraryIsFound_data()
{
    QTest::addColumn<QString>("file");
    for (const char* file : {"bin/orvel-desk", "bin/orvel-replay", LIBRARY_FOLDER "/libOrvel.so.1",
                             LIBRARY_FOLDER "/libOrvelHost.so.1"})
        QTest::newRow(file) << QString::fromLatin1(file);
}

void TestPackage::everyLibraryIsFound()
{
    QFETCH(QString, file);
    const Outcome outcome =
        runProgram(QStringLiteral("ldd"), {QStringLiteral("-r"), tree->path(file)}, QDir::tempPath());
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(!outcome.output.contains("not found"), outcome.output.constData());
    QVERIFY2(!outcome.output.contains("undefined symbol"), outcome.output.constData());
    QVERIFY2(!outcome.output.contains(BUILD_FOLDER), outcome.output.constData());
}

void TestPackage::librariesHaveVersionedNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Orvel") << QStringLiteral("libOrvel.so");
    QTest::newRow("Host") << QStringLiteral("libOrvelHost.so");
}

void TestPackage::librariesHaveVersionedNames()
{
    QFETCH(QString, name);
    const QString library = tree->path(QStringLiteral(LIBRARY_FOLDER "/") + name);
    QCOMPARE(QFileInfo(library).symLinkTarget(), library + QStringLiteral(".1"));
    QVERIFY(QFileInfo(library + QStringLiteral(".1")).isSymLink());
}

void TestPackage::exportsTheseSymbols_data()
{
    librariesHaveVersionedNames_data();
}

void TestPackage::exportsTheseSymbols()
{
    QFETCH(QString, name);
    QCOMPARE(getExportedNames(tree->path(QStringLiteral(LIBRARY_FOLDER "/") + name)),
             readLines(QStringLiteral(EXPECTED "/%1.symbols").arg(QFileInfo(name).baseName())));
}

void TestPackage::headersCompileOnTheirOwn()
{
    configureAndBuild(QStringLiteral(TEST_SOURCES "/headers"), tree->work(QStringLiteral("headers")));
}

void TestPackage::readmeShowsTheExample()
{
    const QString readme = readText(QStringLiteral(PROJECT_SOURCES "/README.md"));
    QCOMPARE(getBlocks(readme, QStringLiteral("cmake")),
             QStringList{readText(kExample + QStringLiteral("CMakeLists.txt"))});
    QCOMPARE(getBlocks(readme, QStringLiteral("cpp")),
             QStringList{readText(kExample + QStringLiteral("main.cpp"))});
}

void TestPackage::exampleBuiltWithCMakeMakesItsPage()
{
    // As it stands in the README.
    const QString readme = readText(QStringLiteral(PROJECT_SOURCES "/README.md"));
    QDir().mkpath(tree->work(QStringLiteral("readme")));
    writeFile(tree->work(QStringLiteral("readme/CMakeLists.txt")),
              getBlocks(readme, QStringLiteral("cmake")).value(0).toUtf8());
    writeFile(tree->work(QStringLiteral("readme/main.cpp")),
              getBlocks(readme, QStringLiteral("cpp")).value(0).toUtf8());

    configureAndBuild(tree->work(QStringLiteral("readme")), tree->work(QStringLiteral("cmake")));
    if (!QTest::currentTestFailed())
        checkPage(tree->work(QStringLiteral("cmake/minimal-host")));
}

void TestPackage::exampleBuiltWithPkgConfigMakesItsPage()
{
    QDir().mkpath(tree->work(QStringLiteral("pkg-config")));
    const QString command =
        QStringLiteral(CXX_COMPILER " -std=c++17 -fPIC %1main.cpp -o minimal-host "
                                    "$(" PKG_CONFIG_PROGRAM " --cflags --libs orvel) "
                                    "-Wl,-rpath,$(" PKG_CONFIG_PROGRAM " --variable=libdir orvel)")
            .arg(kExample);
    const Outcome built = runProgram(
        QStringLiteral("sh"), {QStringLiteral("-c"), command}, tree->work(QStringLiteral("pkg-config")),
        {QStringLiteral("PKG_CONFIG_PATH=") + tree->path(QStringLiteral(LIBRARY_FOLDER "/pkgconfig"))});
    QVERIFY2(built.exitCode == 0, built.output.constData());
    checkPage(tree->work(QStringLiteral("pkg-config/minimal-host")));
}

void TestPackage::withoutItsDataTheExampleMakesAPlainPage()
{
    const QString program = tree->work(QStringLiteral("pkg-config/minimal-host"));
    QVERIFY2(QFile::exists(program), "the example is not built");
    const QString data = tree->path(QStringLiteral("share/orvel"));
    QVERIFY(QDir().rename(data, data + QStringLiteral(".away")));
    const Outcome outcome = runExample(program);
    QVERIFY(QDir().rename(data + QStringLiteral(".away"), data));
    QCOMPARE(outcome.exitCode, 0);
    const QString page = readText(tree->work(QStringLiteral("pkg-config/adjust.html")));
    QVERIFY2(page.startsWith(QStringLiteral("<h1>Уравнивание</h1>")), qPrintable(page.left(200)));
    QVERIFY(page.contains(QStringLiteral(">R12</a>: 41 mm, limit 20 mm")));
}

void TestPackage::insideAnotherProjectTheLibrariesAreBuilt()
{
    const QString build = tree->work(QStringLiteral("subproject"));
    const Outcome configured = runProgram(
        QStringLiteral(CMAKE_PROGRAM),
        {QStringLiteral("-S"), QStringLiteral(TEST_SOURCES "/subproject"), QStringLiteral("-B"), build,
         QStringLiteral("-G"), QStringLiteral("Ninja"), QStringLiteral("-DCMAKE_CXX_COMPILER=" CXX_COMPILER),
         QStringLiteral("-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"),
         QStringLiteral("-DORVEL_SOURCES=" PROJECT_SOURCES)},
        QDir::tempPath());
    QVERIFY2(configured.exitCode == 0, configured.output.constData());

    std::set<QString> folders;
    const QDir sources(QStringLiteral(PROJECT_SOURCES));
    const QJsonDocument commands =
        QJsonDocument::fromJson(readFile(build + QStringLiteral("/compile_commands.json")));
    for (const QJsonValue command : commands.array()) {
        const QString file = sources.relativeFilePath(command[QStringLiteral("file")].toString());
        if (!file.startsWith(QStringLiteral("..")))
            folders.insert(file.section(QLatin1Char('/'), 0, 0));
        QVERIFY2(!command[QStringLiteral("command")].toString().contains(QStringLiteral("-Werror")),
                 qPrintable(file));
    }
    QCOMPARE(folders, std::set<QString>({QStringLiteral("Orvel"), QStringLiteral("examples"),
                                         QStringLiteral("host"), QStringLiteral("template")}));
}

void TestPackage::uninstallingLeavesNothing()
{
    const QString prefix = tree->work(QStringLiteral("prefix"));
    const Outcome installed = runProgram(
        QStringLiteral(CMAKE_PROGRAM),
        {QStringLiteral("--install"), QStringLiteral(BUILD_FOLDER), QStringLiteral("--prefix"), prefix},
        QDir::tempPath());
    QVERIFY2(installed.exitCode == 0, installed.output.constData());
    writeFile(prefix + QStringLiteral("/share/orvel/mine"), "x");

    const Outcome removed =
        runProgram(QStringLiteral(CMAKE_PROGRAM),
                   {QStringLiteral("-DMANIFEST=" BUILD_FOLDER "/install_manifest.txt"), QStringLiteral("-P"),
                    QStringLiteral(PROJECT_SOURCES "/cmake/uninstall.cmake")},
                   QDir::tempPath());
    QVERIFY2(removed.exitCode == 0, removed.output.constData());
    QStringList left;
    for (QDirIterator it(prefix, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        left.append(QDir(prefix).relativeFilePath(it.next()));
    QCOMPARE(left, QStringList{QStringLiteral("share/orvel/mine")});
    QVERIFY(!QFileInfo::exists(prefix + QStringLiteral("/include/orvel")));
}

QTEST_GUILESS_MAIN(TestPackage)
#include "tst_package.moc"
