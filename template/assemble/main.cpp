#include "TemplateAssembler.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
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

QString read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(QStringLiteral("%1: %2").arg(path, file.errorString()).toStdString());
    return QString::fromUtf8(file.readAll());
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
    option(QStringLiteral("style"), QStringLiteral("the whole style sheet"));
    option(QStringLiteral("script"), QStringLiteral("the whole script"));
    option(QStringLiteral("output"), QStringLiteral("where to write the template"));
    parser.process(application);

    try {
        const auto source = [&parser](const QString& name) { return read(parser.value(name)); };
        write(parser.value(QStringLiteral("output")),
              orvel::TemplateAssembler::assemble(source(QStringLiteral("markup")),
                                                 source(QStringLiteral("style")),
                                                 source(QStringLiteral("script"))));
    } catch (const std::exception& error) {
        std::cerr << "assemble_template: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
