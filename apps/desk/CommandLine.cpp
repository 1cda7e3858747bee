#include "apps/desk/CommandLine.h"

#include "apps/desk/Desk.h"

namespace orvel::desk {

namespace {

/// Takes arguments from the front and fills a CommandLine.
class Parser
{
public:
    explicit Parser(const QStringList& given) : arguments(given) {}

    CommandLine parse()
    {
        while (!arguments.isEmpty() && result.error.isEmpty())
            takeArgument(arguments.takeFirst());
        if (result.error.isEmpty())
            checkTogether();
        return result;
    }

private:
    void takeArgument(const QString& argument)
    {
        if (argument == QLatin1String("--headless"))
            result.isHeadless = true;
        else if (argument == QLatin1String("--help") || argument == QLatin1String("-h"))
            result.wantsHelp = true;
        else if (argument == QLatin1String("--version"))
            result.wantsVersion = true;
        else if (QString* text = findTextOption(argument))
            takeText(argument, *text);
        else if (argument == QLatin1String("--run"))
            takeRun();
        else if (argument == QLatin1String("--class"))
            takeClass();
        else if (argument == QLatin1String("--language"))
            takeLanguage();
        else if (!argument.startsWith(QLatin1Char('-')) && result.argument.isEmpty())
            result.argument = argument;
        else
            result.error = Desk::tr("непонятный параметр %1").arg(argument);
    }

    QString* findTextOption(const QString& argument)
    {
        if (argument == QLatin1String("--import"))
            return &result.importFile;
        if (argument == QLatin1String("--open"))
            return &result.projectFile;
        if (argument == QLatin1String("--export"))
            return &result.exportFile;
        if (argument == QLatin1String("--pages"))
            return &result.pagesFolder;
        if (argument == QLatin1String("--data"))
            return &result.dataFile;
        if (argument == QLatin1String("--save"))
            return &result.saveFile;
        if (argument == QLatin1String("--record"))
            return &result.recordFile;
        return nullptr;
    }

    /// The option's value; empty, and an error, if there is none.
    QString takeValue(const QString& option)
    {
        if (!arguments.isEmpty() && !arguments.constFirst().isEmpty())
            return arguments.takeFirst();
        result.error = Desk::tr("после %1 нет значения").arg(option);
        return QString();
    }

    void takeText(const QString& option, QString& text)
    {
        if (!text.isEmpty())
            result.error = Desk::tr("%1 указан дважды").arg(option);
        else
            text = takeValue(option);
    }

    void takeRun()
    {
        const QString name = takeValue(QStringLiteral("--run"));
        if (name == QLatin1String("compile"))
            result.runs.push_back(CommandLine::Run::Compile);
        else if (name == QLatin1String("adjust"))
            result.runs.push_back(CommandLine::Run::Adjust);
        else if (name == QLatin1String("l1"))
            result.runs.push_back(CommandLine::Run::L1Analysis);
        else if (result.error.isEmpty())
            result.error = Desk::tr("неизвестная обработка «%1»: --run compile, adjust или l1").arg(name);
    }

    void takeClass()
    {
        const QString name = takeValue(QStringLiteral("--class"));
        const std::optional<LevellingClass> levellingClass = findLevellingClass(name);
        if (levellingClass)
            result.levellingClass = *levellingClass;
        else if (result.error.isEmpty())
            result.error =
                Desk::tr("неизвестный класс нивелирования «%1»: --class I, II, III или IV").arg(name);
    }

    void takeLanguage()
    {
        result.language = takeValue(QStringLiteral("--language"));
        const bool isKnown = result.language == QLatin1String("ru") || result.language == QLatin1String("en");
        if (!isKnown && result.error.isEmpty())
            result.error = Desk::tr("неизвестный язык «%1»: --language ru или en").arg(result.language);
    }

    void checkTogether()
    {
        if (result.wantsHelp || result.wantsVersion)
            return;
        const bool hasInput = !result.importFile.isEmpty() || !result.projectFile.isEmpty();
        const bool hasHeadlessTask = hasInput || !result.runs.empty() || !result.exportFile.isEmpty() ||
                                     !result.pagesFolder.isEmpty() || !result.dataFile.isEmpty() ||
                                     !result.saveFile.isEmpty();
        if (hasHeadlessTask && !result.isHeadless)
            result.error = Desk::tr("--import, --open, --run, --export, --pages, --data и --save действуют "
                                    "только вместе с --headless");
        else if (result.isHeadless && !hasInput)
            result.error = Desk::tr("с --headless нужен --import FILE или --open FILE");
        else if (result.isHeadless && !result.argument.isEmpty())
            result.error = Desk::tr("непонятный параметр %1").arg(result.argument);
    }

    QStringList arguments;
    CommandLine result;
};

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    return Parser(arguments).parse();
}

QString CommandLine::findLanguage(const QStringList& arguments)
{
    const int option = arguments.indexOf(QStringLiteral("--language"));
    return option < 0 ? QString() : arguments.value(option + 1);
}

QString CommandLine::getHelp()
{
    return Desk::tr("Использование:\n"
                    "  orvel-desk [параметры] [FILE]\n"
                    "      окно с проектом FILE или с нивелирной сетью FILE.gkf\n"
                    "  orvel-desk --headless (--import FILE.gkf | --open FILE) [параметры]\n"
                    "      обработка без окна\n"
                    "\n"
                    "Параметры:\n"
                    "  --language ru|en       язык текстов\n"
                    "  --record FILE.jsonl    записать журнал обработки для orvel-replay\n"
                    "  --help, --version      эта справка, номер версии\n"
                    "\n"
                    "Параметры обработки без окна:\n"
                    "  --import FILE.gkf      прочитать нивелирную сеть\n"
                    "  --open FILE            открыть проект\n"
                    "  --class I|II|III|IV    класс нивелирования, задаёт допуски невязок\n"
                    "  --run compile          предобработка: связность, повторные измерения, невязки\n"
                    "  --run adjust           уравнивание по методу наименьших квадратов\n"
                    "  --run l1               L1-анализ: поиск грубых ошибок\n"
                    "                         (--run повторяется, порядок сохраняется)\n"
                    "  --export FILE.csv      вывести уравненные высоты\n"
                    "  --pages DIR            записать страницы протоколов\n"
                    "  --data FILE.xml        записать копию файла данных протокола\n"
                    "  --save FILE            сохранить проект\n"
                    "\n"
                    "Код завершения: 0 — всё выполнено; 2 — неверные параметры или нечитаемый файл.\n");
}

} // namespace orvel::desk
