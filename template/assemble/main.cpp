#include "TemplateAssembler.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSaveFile>

#include <exception>
#include <iostream>
#include <stdexcept>

namespace {

void write(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        throw std::runtime_error(QStringLiteral("%1: %2").arg(path, file.errorString()).toStdString());
}

QString joined(const QStringList& paths)
{
    QString result;
    for (const QString& path : paths)
        result += TemplateAssembler::readText(path);
    return result;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Makes the page template out of its sources."));
    parser.addHelpOption();
    const auto option = [&parser](const QString& name, const QString& description) {
        parser.addOption({name, description, QStringLiteral("file")});
    };
    option(QStringLiteral("markup"), QStringLiteral("the markup with its placeholders"));
    option(QStringLiteral("style"), QStringLiteral("a style module; may be given several times, in order"));
    option(QStringLiteral("script"), QStringLiteral("the script module that imports the others"));
    option(QStringLiteral("own-names"), QStringLiteral("the names of the script's own properties"));
    option(QStringLiteral("output"), QStringLiteral("where to write the template"));
    parser.process(application);

    try {
        const QString markup = TemplateAssembler::readText(parser.value(QStringLiteral("markup")));
        const QString style = joined(parser.values(QStringLiteral("style")));
        const QString script = TemplateAssembler::bundleModules(parser.value(QStringLiteral("script")));
        const QString ownNames = TemplateAssembler::readText(parser.value(QStringLiteral("own-names")));
        write(parser.value(QStringLiteral("output")),
              TemplateAssembler::assemble(markup, style, script,
                                          ownNames.simplified().split(QLatin1Char(' '))));
    } catch (const std::exception& error) {
        std::cerr << "assemble_template: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
