<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ru">
<context>
    <name>Desk</name>
    <message>
        <source>непонятный параметр %1</source>
        <translation>option %1 is not understood</translation>
    </message>
    <message>
        <source>%1 указан дважды</source>
        <translation>%1 is given twice</translation>
    </message>
    <message>
        <source>неизвестный язык «%1»: --language ru или en</source>
        <translation>unknown language “%1”: --language ru or en</translation>
    </message>
    <message>
        <source>с --headless нужен --import FILE или --open FILE</source>
        <translation>--headless needs --import FILE or --open FILE</translation>
    </message>
    <message>
        <source>пункт</source>
        <translation>point</translation>
    </message>
    <message>
        <source>пункты</source>
        <translation>points</translation>
    </message>
    <message>
        <source>секция</source>
        <translation>section</translation>
    </message>
    <message>
        <source>секции</source>
        <translation>sections</translation>
    </message>
    <message>
        <source>общее</source>
        <translation>general</translation>
    </message>
    <message>
        <source>общие</source>
        <translation>general</translation>
    </message>
    <message>
        <source>Каталог высот</source>
        <translation>Catalogue of heights</translation>
    </message>
    <message>
        <source>Каталоги высот</source>
        <translation>Catalogues of heights</translation>
    </message>
    <message>
        <source>Ведомость превышений и поправок</source>
        <translation>List of height differences and residuals</translation>
    </message>
    <message>
        <source>Ведомости превышений и поправок</source>
        <translation>Lists of height differences and residuals</translation>
    </message>
    <message>
        <source>Предобработка</source>
        <translation>Pre-processing</translation>
    </message>
    <message>
        <source>Уравнивание</source>
        <translation>Adjustment</translation>
    </message>
    <message>
        <source>L1-анализ</source>
        <translation>L1 analysis</translation>
    </message>
    <message>
        <source>Импорт</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Экспорт</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>это не файл проекта</source>
        <translation>this is not a project file</translation>
    </message>
    <message>
        <source>файл записан более новой версией программы (формат %1, эта версия понимает формат %2)</source>
        <translation>the file was written by a newer version of the program (format %1; this version understands format %2)</translation>
    </message>
    <message>
        <source>файл проекта повреждён или обрезан</source>
        <translation>the project file is damaged or cut off</translation>
    </message>
    <message>
        <source>Ссылки со страниц не откроются в этом окне. Перезапустите программу.</source>
        <translation>Links of the pages will not open in this window. Start the program again.</translation>
    </message>
    <message>
        <source>Проект не открыт. %1</source>
        <translation>The project was not opened. %1</translation>
    </message>
    <message>
        <source>Новый проект</source>
        <translation>New project</translation>
    </message>
    <message>
        <source>Проект не сохранён. %1 Выберите другое место командой «Сохранить как».</source>
        <translation>The project was not saved. %1 Choose another place with “Save as”.</translation>
    </message>
    <message>
        <source>Проект сохранён: %1</source>
        <translation>Project saved: %1</translation>
    </message>
    <message>
        <source>Сохранить изменения в проекте «%1»?</source>
        <translation>Save the changes to the project “%1”?</translation>
    </message>
    <message>
        <source>&amp;Сохранить</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>&amp;Не сохранять</source>
        <translation>&amp;Don’t save</translation>
    </message>
    <message>
        <source>&amp;Отмена</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>Ведомости составляются по результатам. Сначала выполните уравнивание.</source>
        <translation>Reports are made from results. Run the adjustment first.</translation>
    </message>
    <message>
        <source>Ведомость не открылась: в системе не назначена программа для страниц HTML, или такой ведомости нет.</source>
        <translation>The report did not open: the system has no program for HTML pages, or there is no such report.</translation>
    </message>
    <message>
        <source>Этого пункта или этой секции в проекте больше нет.</source>
        <translation>This point or section is not in the project any more.</translation>
    </message>
    <message>
        <source>Идёт обработка. Откройте ссылку ещё раз, когда она закончится.</source>
        <translation>A run is in progress. Open the link again when it is over.</translation>
    </message>
    <message>
        <source>Ссылка не понята: %1</source>
        <translation>The link is not understood: %1</translation>
    </message>
    <message>
        <source>Ссылка ведёт в проект «%1». Откройте этот проект и щёлкните ссылку ещё раз.</source>
        <translation>The link leads to the project “%1”. Open that project and click the link again.</translation>
    </message>
    <message>
        <source>&amp;Файл</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;Новый проект</source>
        <translation>&amp;New project</translation>
    </message>
    <message>
        <source>&amp;Открыть…</source>
        <translation>&amp;Open…</translation>
    </message>
    <message>
        <source>Н&amp;едавние файлы</source>
        <translation>&amp;Recent files</translation>
    </message>
    <message>
        <source>Сохранить &amp;как…</source>
        <translation>Save &amp;as…</translation>
    </message>
    <message>
        <source>&amp;Импорт сети…</source>
        <translation>&amp;Import network…</translation>
    </message>
    <message>
        <source>&amp;Выход</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>&amp;Обработка</source>
        <translation>&amp;Run</translation>
    </message>
    <message>
        <source>&amp;Предобработка</source>
        <translation>&amp;Pre-processing</translation>
    </message>
    <message>
        <source>Проверить связность сети, повторные измерения и невязки</source>
        <translation>Check connectivity, repeated measurements and misclosures</translation>
    </message>
    <message>
        <source>&amp;Уравнивание</source>
        <translation>&amp;Adjustment</translation>
    </message>
    <message>
        <source>Вычислить высоты по методу наименьших квадратов</source>
        <translation>Compute the heights by least squares</translation>
    </message>
    <message>
        <source>&amp;L1-анализ</source>
        <translation>&amp;L1 analysis</translation>
    </message>
    <message>
        <source>Найти грубые ошибки измерений</source>
        <translation>Find gross errors of measurement</translation>
    </message>
    <message>
        <source>Окно &amp;выполнения</source>
        <translation>Progress &amp;window</translation>
    </message>
    <message>
        <source>&amp;Класс нивелирования</source>
        <translation>&amp;Class of levelling</translation>
    </message>
    <message>
        <source>Задаёт допустимые невязки k·√L</source>
        <translation>Sets the permitted misclosures k·√L</translation>
    </message>
    <message>
        <source>&amp;Протоколы</source>
        <translation>&amp;Protocols</translation>
    </message>
    <message>
        <source>О &amp;выделенном пункте или секции</source>
        <translation>About the &amp;selected point or section</translation>
    </message>
    <message>
        <source>&amp;Ведомости</source>
        <translation>R&amp;eports</translation>
    </message>
    <message>
        <source>&amp;Справка</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>&amp;Что делает каждая обработка</source>
        <translation>&amp;What each run does</translation>
    </message>
    <message>
        <source>&amp;О программе</source>
        <translation>&amp;About</translation>
    </message>
    <message>
        <source>Панель инструментов</source>
        <translation>Toolbar</translation>
    </message>
    <message>
        <source>Поиск по имени (Ctrl+F)</source>
        <translation>Search by name (Ctrl+F)</translation>
    </message>
    <message>
        <source>Поиск пунктов и секций</source>
        <translation>Search for points and sections</translation>
    </message>
    <message>
        <source>Последние протоколы</source>
        <translation>Latest protocols</translation>
    </message>
    <message>
        <source>Сохранить проект</source>
        <translation>Save project</translation>
    </message>
    <message>
        <source>О выделенном в протоколах нет строк.</source>
        <translation>The protocols have no lines about what is selected.</translation>
    </message>
    <message>
        <source>О программе</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Обработка нивелирных сетей с протоколами, каждая строка которых ведёт к своим пунктам и секциям.</source>
        <translation>Processing of levelling networks, with protocols whose every line leads to its points and sections.</translation>
    </message>
    <message>
        <source>&amp;Закрыть</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>Пока нет</source>
        <translation>None yet</translation>
    </message>
    <message>
        <source>&amp;Заменить</source>
        <translation>&amp;Replace</translation>
    </message>
    <message>
        <source>Идёт обработка</source>
        <translation>Run in progress</translation>
    </message>
    <message>
        <source>П&amp;родолжить</source>
        <translation>&amp;Continue</translation>
    </message>
    <message>
        <source>Пунктов: %1, секций: %2, показано: %3</source>
        <translation>Points: %1, sections: %2, shown: %3</translation>
    </message>
    <message>
        <source>С чего начать</source>
        <translation>Where to begin</translation>
    </message>
    <message>
        <source>Что делает каждая обработка</source>
        <translation>What each run does</translation>
    </message>
    <message>
        <source>Показать все строки протоколов об этом пункте или секции</source>
        <translation>Show all protocol lines about this point or section</translation>
    </message>
    <message>
        <source>В протоколах нет строк об этом</source>
        <translation>The protocols have no lines about it</translation>
    </message>
    <message>
        <source>есть протокол</source>
        <translation>has a protocol</translation>
    </message>
    <message>
        <source>протокола нет</source>
        <translation>no protocol</translation>
    </message>
    <message>
        <source>Имя</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Вид</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>Высота, м</source>
        <translation>Height, m</translation>
    </message>
    <message>
        <source>СКО, мм</source>
        <translation>σ, mm</translation>
    </message>
    <message>
        <source>Превышение, м</source>
        <translation>Difference, m</translation>
    </message>
    <message>
        <source>Поправка, мм</source>
        <translation>Residual, mm</translation>
    </message>
    <message>
        <source>Строк протокола</source>
        <translation>Protocol lines</translation>
    </message>
    <message>
        <source>Протокол</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>Имя пункта, или имена концов секции</source>
        <translation>Name of the point, or of the section’s ends</translation>
    </message>
    <message>
        <source>Исходный репер, определяемый пункт или секция</source>
        <translation>Benchmark, new point, or section</translation>
    </message>
    <message>
        <source>СКО уравненной высоты, у секции — априорная СКО измерения</source>
        <translation>Standard deviation of the adjusted height; of a section, that of the measurement a priori</translation>
    </message>
    <message>
        <source>Измеренное превышение секции</source>
        <translation>Measured height difference of the section</translation>
    </message>
    <message>
        <source>Сколько строк протоколов говорит об этом пункте или секции</source>
        <translation>How many protocol lines mention this point or section</translation>
    </message>
    <message>
        <source>Щелчок или Enter показывает строки протоколов об этом пункте или секции</source>
        <translation>A click or Enter shows the protocol lines about this point or section</translation>
    </message>
    <message>
        <source>Пункты и секции</source>
        <translation>Points and sections</translation>
    </message>
    <message>
        <source>Убрать сообщение</source>
        <translation>Dismiss the message</translation>
    </message>
    <message>
        <source>исходный репер</source>
        <translation>benchmark</translation>
    </message>
    <message>
        <source>Обработка</source>
        <translation>Run</translation>
    </message>
    <message>
        <source>Ошибок</source>
        <translation>Errors</translation>
    </message>
    <message>
        <source>Предупреждений</source>
        <translation>Warnings</translation>
    </message>
    <message>
        <source>Сообщений</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>Двойной щелчок или Enter показывает страницу протокола</source>
        <translation>A double click or Enter shows the protocol’s page</translation>
    </message>
    <message>
        <source>%1: ошибок %2, предупреждений %3, сообщений %4</source>
        <translation>%1: errors %2, warnings %3, messages %4</translation>
    </message>
    <message>
        <source>Журнал «%1» не записывается: %2</source>
        <translation>The journal “%1” cannot be written: %2</translation>
    </message>
    <message>
        <source>Проект: %1</source>
        <translation>Project: %1</translation>
    </message>
    <message>
        <source>Пункт</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>определяемый пункт</source>
        <translation>new point</translation>
    </message>
    <message>
        <source>не определена</source>
        <translation>not determined</translation>
    </message>
    <message>
        <source>Секция</source>
        <translation>Section</translation>
    </message>
    <message>
        <source>Длина, км</source>
        <translation>Length, km</translation>
    </message>
    <message>
        <source>Измеренное превышение, м</source>
        <translation>Measured difference, m</translation>
    </message>
    <message>
        <source>Поправка v, мм</source>
        <translation>Residual v, mm</translation>
    </message>
    <message>
        <source>Уравненное превышение, м</source>
        <translation>Adjusted difference, m</translation>
    </message>
    <message>
        <source>Нормированная поправка</source>
        <translation>Normalised residual</translation>
    </message>
    <message>
        <source>ru</source>
        <comment>the language of the reports</comment>
        <translation>en</translation>
    </message>
    <message>
        <source>Метод наименьших квадратов, веса обратны квадратам СКО измерений</source>
        <translation>Least squares, weights 1/σ² of the measurements</translation>
    </message>
    <message>
        <source>Состав сети и приближённые высоты</source>
        <translation>Composition of the network and approximate heights</translation>
    </message>
    <message>
        <source>Уравнивать нечего: ни одна секция не ведёт от исходного репера к определяемому пункту</source>
        <translation>Nothing to adjust: no section leads from a benchmark to a new point</translation>
    </message>
    <message>
        <source>Система нормальных уравнений не решается: веса измерений различаются слишком сильно, проверьте СКО и длины секций</source>
        <translation>The normal equations cannot be solved: the weights of the measurements differ too much, check standard deviations and lengths of the sections</translation>
    </message>
    <message>
        <source>Пунктов: %1, секций: %2, неизвестных: %3, не определяется пунктов: %4</source>
        <translation>Points: %1, sections: %2, unknowns: %3, points that cannot be determined: %4</translation>
    </message>
    <message>
        <source>Высота пункта %1 не определяется: %2</source>
        <translation>The height of point %1 cannot be determined: %2</translation>
    </message>
    <message>
        <source>с ним не связана ни одна секция</source>
        <translation>no section leads to it</translation>
    </message>
    <message>
        <source>Исходный репер %1: отметка %2&#xa0;м</source>
        <translation>Benchmark %1: given height %2 m</translation>
    </message>
    <message>
        <source>Пункт %1: приближённая высота %2&#xa0;м</source>
        <translation>Point %1: approximate height %2 m</translation>
    </message>
    <message>
        <source>Результаты уравнивания</source>
        <translation>Results of the adjustment</translation>
    </message>
    <message>
        <source>Связность сети</source>
        <translation>Connectivity</translation>
    </message>
    <message>
        <source>Повторные измерения</source>
        <translation>Repeated measurements</translation>
    </message>
    <message>
        <source>Невязки ходов и полигонов</source>
        <translation>Misclosures of lines and loops</translation>
    </message>
    <message>
        <source>Пунктов: %1, исходных реперов: %2, секций: %3, частей сети: %4, избыточных измерений: %5</source>
        <translation>Points: %1, benchmarks: %2, sections: %3, parts of the network: %4, redundant measurements: %5</translation>
    </message>
    <message>
        <source>Часть %1 не связана ни с одним исходным репером, высоты её пунктов определить нельзя: %2</source>
        <translation>Part %1 is not connected with any benchmark, the heights of its points cannot be determined: %2</translation>
    </message>
    <message>
        <source>В части %1 нет избыточных измерений, ошибки в ней не обнаруживаются: %2</source>
        <translation>Part %1 has no redundant measurements, errors in it cannot be detected: %2</translation>
    </message>
    <message>
        <source>Часть %1: пунктов %2, исходных реперов %3, секций %4, избыточных измерений %5</source>
        <translation>Part %1: points %2, benchmarks %3, sections %4, redundant measurements %5</translation>
    </message>
    <message>
        <source>Исходный репер %1 не связан ни с одной секцией</source>
        <translation>Benchmark %1 has no sections</translation>
    </message>
    <message>
        <source>Пункт %1 не связан ни с одной секцией, его высоту определить нельзя</source>
        <translation>Point %1 has no sections, its height cannot be determined</translation>
    </message>
    <message>
        <source>%1 %2: расхождение %3&#xa0;мм, %4</source>
        <translation>%1 %2: discrepancy %3 mm, %4</translation>
    </message>
    <message>
        <source>больше допуска %1&#xa0;мм</source>
        <translation>exceeds the tolerance of %1 mm</translation>
    </message>
    <message>
        <source>допуск %1&#xa0;мм</source>
        <translation>tolerance %1 mm</translation>
    </message>
    <message>
        <source>длина %1&#xa0;км</source>
        <translation>length %1 km</translation>
    </message>
    <message>
        <source>длина не задана</source>
        <translation>no length given</translation>
    </message>
    <message>
        <source>%1 %2: невязка %3&#xa0;мм, %4, %5; секции: %6</source>
        <translation>%1 %2: misclosure %3 mm, %4, %5; sections: %6</translation>
    </message>
    <message>
        <source>Полигон</source>
        <translation>Loop</translation>
    </message>
    <message>
        <source>Ход</source>
        <translation>Line</translation>
    </message>
    <message>
        <source>Описание: %1</source>
        <translation>Description: %1</translation>
    </message>
    <message>
        <source>Прочитано пунктов: %1, из них исходных реперов: %2; секций: %3</source>
        <translation>Points read: %1, benchmarks among them: %2; sections: %3</translation>
    </message>
    <message>
        <source>априорной</source>
        <translation>a priori</translation>
    </message>
    <message>
        <source>апостериорной</source>
        <translation>a posteriori</translation>
    </message>
    <message>
        <source>Чтение файла</source>
        <translation>Reading the file</translation>
    </message>
    <message>
        <source>Файл: %1</source>
        <translation>File: %1</translation>
    </message>
    <message>
        <source>Поиск минимума</source>
        <translation>Search for the minimum</translation>
    </message>
    <message>
        <source>Анализировать нечего: ни одна секция не ведёт от исходного репера к определяемому пункту</source>
        <translation>Nothing to analyse: no section leads from a benchmark to a new point</translation>
    </message>
    <message>
        <source>Невязки слишком велики для анализа, проверьте отметки и превышения</source>
        <translation>The misclosures are too large for the analysis, check given heights and differences</translation>
    </message>
    <message>
        <source>Пункт %1 не участвует: его высота не определяется</source>
        <translation>Point %1 takes no part: its height cannot be determined</translation>
    </message>
    <message>
        <source>Пункт %1: H = %2&#xa0;м</source>
        <translation>Point %1: H = %2 m</translation>
    </message>
    <message>
        <source>Решение единственное</source>
        <translation>The solution is unique</translation>
    </message>
    <message>
        <source>файл не читается: %1</source>
        <translation>the file cannot be read: %1</translation>
    </message>
    <message>
        <source>это не файл нивелирной сети: корневой элемент &lt;%1&gt;, а нужен &lt;gama-local&gt;</source>
        <translation>this is not a file of a levelling network: the root element is &lt;%1&gt;, but should be &lt;gama-local&gt;</translation>
    </message>
    <message>
        <source>файл больше %1&#xa0;МиБ и не прочитан; разделите сеть на части</source>
        <translation>the file is larger than %1 MiB and was not read; divide the network into parts</translation>
    </message>
    <message>
        <source>пунктов и секций больше %1, файл не прочитан; разделите сеть на части</source>
        <translation>there are more than %1 points and sections, the file was not read; divide the network into parts</translation>
    </message>
    <message>
        <source>замечаний больше %1, файл не прочитан; проверьте, что это нивелирная сеть</source>
        <translation>there are more than %1 remarks, the file was not read; check that it is a levelling network</translation>
    </message>
    <message>
        <source>ошибка XML: %1</source>
        <translation>XML error: %1</translation>
    </message>
    <message>
        <source>неизвестный элемент &amp;lt;%1&amp;gt; внутри &amp;lt;%2&amp;gt; пропущен со всем содержимым</source>
        <translation>unknown element &amp;lt;%1&amp;gt; inside &amp;lt;%2&amp;gt; skipped with all its content</translation>
    </message>
    <message>
        <source>параметр %1 имеет непригодное значение «%2», принято значение по умолчанию</source>
        <translation>parameter %1 has the unusable value “%2”, the default is taken</translation>
    </message>
    <message>
        <source>пункт без имени (id) пропущен</source>
        <translation>point without a name (id) skipped</translation>
    </message>
    <message>
        <source>секция «%1» – «%2» без начального или конечного пункта пропущена</source>
        <translation>section “%1” – “%2” without a first or last point skipped</translation>
    </message>
    <message>
        <source>секция %1 – %2 начинается и кончается на одном пункте, пропущена</source>
        <translation>section %1 – %2 begins and ends at the same point, skipped</translation>
    </message>
    <message>
        <source>секция %1 – %2: непригодное превышение «%3», секция пропущена</source>
        <translation>section %1 – %2: unusable height difference “%3”, section skipped</translation>
    </message>
    <message>
        <source>секция %1 – %2: нет ни длины (dist), ни СКО (stdev), секция пропущена</source>
        <translation>section %1 – %2: neither length (dist) nor standard deviation (stdev), section skipped</translation>
    </message>
    <message>
        <source>секция %1 – %2: непригодная длина «%3», считается не заданной</source>
        <translation>section %1 – %2: unusable length “%3”, taken as not given</translation>
    </message>
    <message>
        <source>секция %1 – %2: непригодная СКО «%3», считается не заданной</source>
        <translation>section %1 – %2: unusable standard deviation “%3”, taken as not given</translation>
    </message>
    <message>
        <source>секция %1 – %2: непригодная дисперсия «%3», считается не заданной</source>
        <translation>section %1 – %2: unusable variance “%3”, taken as not given</translation>
    </message>
    <message>
        <source>корреляции измерений не учитываются: ненулевых ковариаций %1, взяты только дисперсии</source>
        <translation>correlations of measurements are not used: %1 covariances other than zero, variances taken alone</translation>
    </message>
    <message>
        <source>измерение &amp;lt;%1&amp;gt; («%2» – «%3») не является превышением, пропущено</source>
        <translation>measurement &amp;lt;%1&amp;gt; (“%2” – “%3”) is no height difference, skipped</translation>
    </message>
    <message>
        <source>в файле нет ни одной пригодной секции, вычислять нечего</source>
        <translation>the file has no usable section, there is nothing to compute</translation>
    </message>
    <message>
        <source>%1, строка %2: %3</source>
        <translation>%1, line %2: %3</translation>
    </message>
    <message>
        <source>%1 … и ещё %2</source>
        <translation>%1 … and %2 more</translation>
    </message>
    <message>
        <source>язык текстов</source>
        <translation>language of the texts</translation>
    </message>
    <message>
        <source>записать журнал обработки для orvel-replay</source>
        <translation>record the runs for orvel-replay</translation>
    </message>
    <message>
        <source>эта справка</source>
        <translation>this help</translation>
    </message>
    <message>
        <source>номер версии</source>
        <translation>version</translation>
    </message>
    <message>
        <source>обработка без окна</source>
        <translation>work without a window</translation>
    </message>
    <message>
        <source>открыть проект</source>
        <translation>open a project</translation>
    </message>
    <message>
        <source>класс нивелирования, задаёт допуски невязок</source>
        <translation>levelling class, which sets the tolerances</translation>
    </message>
    <message>
        <source>записать страницы протоколов</source>
        <translation>write the pages of the protocols</translation>
    </message>
    <message>
        <source>записать копию файла данных протокола</source>
        <translation>write a copy of the protocol&apos;s data file</translation>
    </message>
    <message>
        <source>сохранить проект</source>
        <translation>save the project</translation>
    </message>
    <message>
        <source>параметр %1 не принимает значения</source>
        <translation>the option %1 takes no value</translation>
    </message>
    <message>
        <source>для %1 не указано значение</source>
        <translation>no value given for %1</translation>
    </message>
    <message>
        <source>лишний аргумент %1</source>
        <translation>unexpected argument %1</translation>
    </message>
    <message>
        <source>--import и --open вместе не действуют</source>
        <translation>--import and --open cannot be used together</translation>
    </message>
    <message>
        <source>Параметры:</source>
        <translation>Options:</translation>
    </message>
    <message>
        <source>Параметры обработки без окна:</source>
        <translation>Options without a window:</translation>
    </message>
    <message>
        <source>в проекте больше %1 пунктов или секций, он не открыт</source>
        <translation>the project has more than %1 points or sections and was not opened</translation>
    </message>
    <message>
        <source>элементы вложены глубже %1 уровней, файл не прочитан; проверьте, что это нивелирная сеть</source>
        <translation>elements are nested deeper than %1 levels, the file was not read; check that it is a levelling network</translation>
    </message>
    <message>
        <source>тег, текст или комментарий больше %1&#xa0;КиБ (числа ковариаций — %2&#xa0;МиБ), файл не прочитан; проверьте, закрыты ли кавычки и комментарии</source>
        <translation>a tag, text or comment is over %1 KiB (numbers of covariances: %2 MiB), the file was not read; check that quotes and comments are closed</translation>
    </message>
    <message>
        <source>значение атрибута %1 длиннее %2 знаков, файл не прочитан; исправьте его</source>
        <translation>the value of attribute %1 is longer than %2 characters, the file was not read; correct it</translation>
    </message>
    <message>
        <source>текст элемента &lt;%1&gt; длиннее %2 знаков, файл не прочитан; сократите его</source>
        <translation>the text of element &lt;%1&gt; is longer than %2 characters, the file was not read; shorten it</translation>
    </message>
    <message>
        <source>Несохранённые изменения</source>
        <translation>Unsaved changes</translation>
    </message>
    <message>
        <source>Без сохранения результаты и протоколы будут потеряны.</source>
        <translation>Unless you save them, the results and protocols will be lost.</translation>
    </message>
    <message>
        <source>Результаты и протоколы обработки прежней сети будут потеряны.</source>
        <translation>The results and protocols of the current network will be lost.</translation>
    </message>
    <message>
        <source>Остановить обработку и закрыть окно?</source>
        <translation>Stop the run and close the window?</translation>
    </message>
    <message>
        <source>О&amp;становить</source>
        <translation>S&amp;top</translation>
    </message>
    <message>
        <source>в &lt;cov-mat&gt; больше %1 чисел, файл не прочитан; разделите измерения на группы &lt;height-differences&gt;</source>
        <translation>&lt;cov-mat&gt; has more than %1 numbers, the file was not read; split the measurements into several groups &lt;height-differences&gt;</translation>
    </message>
    <message>
        <source>error, warning: код завершения 1, если в протоколах есть
ошибки (или предупреждения)</source>
        <translation>error, warning: exit code 1 if the protocols have
errors (or warnings)</translation>
    </message>
    <message>
        <source>неизвестный уровень «%1»: --fail-on error или warning</source>
        <translation>unknown level &quot;%1&quot;: --fail-on error or warning</translation>
    </message>
    <message>
        <source>стандартный вывод принимает что-то одно: --export или --data</source>
        <translation>the standard output takes only one: --export or --data</translation>
    </message>
    <message>
        <source>FILE может быть и адресом file://, а у --import, --export и --data — знаком «-»:
стандартный ввод или вывод.
Код завершения: 0 — всё выполнено; 1 — обработка не дала результата или достигнут
уровень --fail-on; 2 — неверные параметры, нечитаемый файл или неудавшаяся запись.</source>
        <translation>FILE may be a file:// URL, and with --import, --export and --data the sign &quot;-&quot;:
the standard input or output.
Exit code: 0: all done; 1: a run gave no result, or the level of --fail-on was
reached; 2: wrong options, an unreadable file or failed output.</translation>
    </message>
    <message>
        <source>стандартный ввод</source>
        <translation>standard input</translation>
    </message>
    <message>
        <source>стандартный вывод</source>
        <translation>standard output</translation>
    </message>
    <message>
        <source>не удалось создать папку «%1»: %2</source>
        <translation>the folder &quot;%1&quot; could not be made: %2</translation>
    </message>
    <message>
        <source>не удалось записать страницу «%1»</source>
        <translation>the page &quot;%1&quot; could not be written</translation>
    </message>
    <message>
        <source>в проекте нет протоколов, копировать в «%1» нечего</source>
        <translation>the project has no protocols, there is nothing to copy to &quot;%1&quot;</translation>
    </message>
    <message>
        <source>достигнут уровень --fail-on: ошибок %1, предупреждений %2</source>
        <translation>the level of --fail-on was reached: errors %1, warnings %2</translation>
    </message>
    <message>
        <source>Экспортировать нечего: уравнивание не дало высот, причина в его протоколе.</source>
        <translation>Nothing to export: the adjustment gave no heights, its protocol tells why.</translation>
    </message>
    <message>
        <source>Экспортировать нечего: сеть не уравнена. Сначала выполните уравнивание.</source>
        <translation>Nothing to export: the network is not adjusted. Run the adjustment first.</translation>
    </message>
    <message>
        <source>Файл изменён</source>
        <translation>Changed file</translation>
    </message>
    <message>
        <source>Другая программа изменила файл «%1» после того, как он был открыт. Записать поверх?</source>
        <translation>Another program has changed the file &quot;%1&quot; since it was opened. Overwrite it?</translation>
    </message>
    <message>
        <source>То, что она записала, будет потеряно.</source>
        <translation>What it has written will be lost.</translation>
    </message>
    <message>
        <source>&amp;Записать поверх</source>
        <translation>&amp;Overwrite</translation>
    </message>
    <message>
        <source>Проект «%1» не сохранён: другая программа изменила его тем временем.</source>
        <translation>The project &quot;%1&quot; was not saved: another program has changed it meanwhile.</translation>
    </message>
    <message>
        <source>Открытое окно программы не отвечает. Закройте его или подождите и щёлкните ссылку ещё раз.</source>
        <translation>The window of the program that is open does not answer. Close it, or wait and click the link again.</translation>
    </message>
    <message>
        <source>неизвестный класс нивелирования «%1»: --class I, II, III, IV или technical</source>
        <translation>unknown levelling class “%1”: --class I, II, III, IV or technical</translation>
    </message>
    <message>
        <source>техническое нивелирование</source>
        <translation>technical levelling</translation>
    </message>
    <message>
        <source>%1 класс</source>
        <translation>class %1</translation>
    </message>
    <message>
        <source>Обработка нивелирования %1</source>
        <translation>Levelling desk %1</translation>
    </message>
    <message>
        <source>%1&#xa0;мм·√L</source>
        <translation>%1 mm·√L</translation>
    </message>
    <message>
        <source>Проверяет сеть до уравнивания: связаны ли все пункты с исходными реперами, укладываются ли в допуск k·√L расхождения прямых и обратных ходов и невязки ходов и полигонов, составленных из средних. Коэффициент k определяется классом нивелирования.</source>
        <translation>Checks the network before the adjustment: whether all points are connected with benchmarks, whether discrepancies of forward and backward levelling and misclosures of the lines and loops of their means are within the tolerance k·√L. The levelling class determines k.</translation>
    </message>
    <message>
        <source>Вычисляет высоты по методу наименьших квадратов, их СКО и поправки в измеренные превышения, проверяет каждую часть сети критерием χ², поправки — по нормированным или стьюдентизированным значениям. Секции, которые измерения не различают, названы вместе.</source>
        <translation>Computes the heights by least squares, their standard deviations and the residuals of the measured height differences, tests each part of the network by χ², residuals normalised or studentised. Sections that the measurements do not tell apart are named together.</translation>
    </message>
    <message>
        <source>Ищет грубые ошибки (промахи) последовательной проверкой поправок и высоты с наименьшей суммой Σ|v|/σ. Метод наименьших квадратов распределяет промах по соседним секциям, а здесь он остаётся на месте. Если решений несколько, это указано в протоколе.</source>
        <translation>Looks for gross errors (blunders) by sequential tests of residuals, and for the heights with the least sum Σ|v|/σ. Least squares spread a blunder over the neighbouring sections, here it stays in its place. If there are several solutions, the protocol says so.</translation>
    </message>
    <message>
        <source>Обработка нивелирования</source>
        <translation>Levelling desk</translation>
    </message>
    <message>
        <source>СКО вычислены по априорной СКО единицы веса μ = %1&#xa0;мм</source>
        <translation>Standard deviations from the a priori σ₀ = %1 mm</translation>
    </message>
    <message>
        <source>СКО вычислены по априорной СКО единицы веса μ = %1&#xa0;мм, так как избыточных измерений нет</source>
        <translation>Standard deviations from the a priori σ₀ = %1 mm, since there are no redundant measurements</translation>
    </message>
    <message>
        <source>СКО вычислены по апостериорной СКО единицы веса μ = %1&#xa0;мм; априорная %2&#xa0;мм</source>
        <translation>Standard deviations from the a posteriori σ₀ = %1 mm; a priori %2 mm</translation>
    </message>
    <message>
        <source>СКО вычислены по апостериорной СКО единицы веса каждой части сети, в частях без избыточных измерений по априорной μ = %1&#xa0;мм</source>
        <translation>Standard deviations from the a posteriori σ₀ of each part of the network; in parts without redundant measurements from the a priori σ₀ = %1 mm</translation>
    </message>
    <message>
        <source>r</source>
        <translation>r</translation>
    </message>
    <message>
        <source>∇, мм</source>
        <translation>∇, mm</translation>
    </message>
    <message>
        <source>Обнаруживается от, мм</source>
        <translation>Detectable from, mm</translation>
    </message>
    <message>
        <source>в его части сети нет ни исходного репера, ни пункта с высотой</source>
        <translation>its part of the network has neither a benchmark nor a point with a height</translation>
    </message>
    <message>
        <source>Исходный репер %1: отметка %2&#xa0;м, известна с ковариациями и уравнивается</source>
        <translation>Benchmark %1: given height %2 m, known with covariances and adjusted</translation>
    </message>
    <message>
        <source>Секция %1: измеренное превышение отличается от вычисленного по приближённым высотам на %2&#xa0;мм, допуск ±%3&#xa0;мм (tol-abs)</source>
        <translation>Section %1: the measured height difference differs from that of the approximate heights by %2 mm, tolerance ±%3 mm (tol-abs)</translation>
    </message>
    <message>
        <source>В одной из секций %1 измеренное превышение отличается от вычисленного по приближённым высотам на %2&#xa0;мм, допуск ±%3&#xa0;мм (tol-abs); измерения не различают, в которой</source>
        <translation>In one of the sections %1 the measured height difference differs from that of the approximate heights by %2 mm, tolerance ±%3 mm (tol-abs); the measurements do not tell in which</translation>
    </message>
    <message>
        <source>Часть %1</source>
        <translation>Part %1</translation>
    </message>
    <message>
        <source>%1: неизвестных %2, избыточных измерений %3, [pvv] = %4 (веса 1/σ²)</source>
        <translation>%1: unknowns %2, redundant measurements %3, [pvv] = %4 (weights 1/σ²)</translation>
    </message>
    <message>
        <source>СКО единицы веса μ на 1&#xa0;км хода</source>
        <translation>σ₀ per km of line</translation>
    </message>
    <message>
        <source>СКО единицы веса μ</source>
        <translation>σ₀</translation>
    </message>
    <message>
        <source>%1, %2: априорная %3&#xa0;мм; апостериорная не определяется, так как избыточных измерений нет</source>
        <translation>%1, %2: a priori %3 mm; there is no a posteriori value, since there are no redundant measurements</translation>
    </message>
    <message>
        <source>%1, %2: априорная %3&#xa0;мм, апостериорная %4&#xa0;мм, отношение %5</source>
        <translation>%1, %2: a priori %3 mm, a posteriori %4 mm, ratio %5</translation>
    </message>
    <message>
        <source>пределы %1 и %2 (критерий χ², доверительная вероятность %3)</source>
        <translation>limits %1 and %2 (χ² test, confidence level %3)</translation>
    </message>
    <message>
        <source>%1, больше верхнего предела, %2; проверьте L1-анализом и априорную СКО</source>
        <translation>%1, above the upper limit, %2; run the L1 analysis and check the a priori standard deviation</translation>
    </message>
    <message>
        <source>%1, меньше нижнего предела, %2; априорная СКО, по-видимому, завышена</source>
        <translation>%1, below the lower limit, %2; the a priori standard deviation seems too large</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1: поправки делятся на апостериорные СКО (τ-критерий Поупа, sigma-act); предел наибольшей из %2 — %3, предел предупреждения %4</source>
        <translation>%1: residuals are divided by their a posteriori standard deviations (Pope&apos;s τ test, sigma-act); limit of the largest of %2: %3, warning limit %4</translation>
    </message>
    <message>
        <source>%1: поправки делятся на априорные СКО, так как при одном избыточном измерении τ-критерий ничего не проверяет; предел наибольшей из %2 — %3, предел предупреждения %4</source>
        <translation>%1: residuals are divided by their a priori standard deviations, since with one redundant measurement the τ test checks nothing; limit of the largest of %2: %3, warning limit %4</translation>
    </message>
    <message>
        <source>%1: поправки делятся на априорные СКО (sigma-act); предел наибольшей из %2 — %3, предел предупреждения %4</source>
        <translation>%1: residuals are divided by their a priori standard deviations (sigma-act); limit of the largest of %2: %3, warning limit %4</translation>
    </message>
    <message>
        <source>%1: СКО высот вычислены по апостериорной μ (sigma-act)</source>
        <translation>%1: standard deviations of heights from the a posteriori σ₀ (sigma-act)</translation>
    </message>
    <message>
        <source>%1: СКО высот вычислены по априорной μ (sigma-act)</source>
        <translation>%1: standard deviations of heights from the a priori σ₀ (sigma-act)</translation>
    </message>
    <message>
        <source>Наибольшая %1: секция %2</source>
        <translation>Largest %1: section %2</translation>
    </message>
    <message>
        <source>Наибольшая %1: одинакова у секций %2</source>
        <translation>Largest %1: equal for the sections %2</translation>
    </message>
    <message>
        <source>стьюдентизированная поправка</source>
        <translation>studentised residual</translation>
    </message>
    <message>
        <source>нормированная поправка</source>
        <translation>normalised residual</translation>
    </message>
    <message>
        <source>%1 %2, больше предела %3</source>
        <translation>%1 %2, above the limit %3</translation>
    </message>
    <message>
        <source>%1 %2, больше предела предупреждения %3</source>
        <translation>%1 %2, above the warning limit %3</translation>
    </message>
    <message>
        <source>%1 %2, предел %3</source>
        <translation>%1 %2, limit %3</translation>
    </message>
    <message>
        <source>Пункт %1: H = %2&#xa0;м, СКО априорная %3&#xa0;мм</source>
        <translation>Point %1: H = %2 m, standard deviation a priori %3 mm</translation>
    </message>
    <message>
        <source>%1, апостериорная %2&#xa0;мм</source>
        <translation>%1, a posteriori %2 mm</translation>
    </message>
    <message>
        <source>%1, апостериорная не определяется</source>
        <translation>%1, a posteriori not determined</translation>
    </message>
    <message>
        <source>Поправки в измеренные превышения</source>
        <translation>Residuals of the measured height differences</translation>
    </message>
    <message>
        <source>Ошибка в одной из секций %1: измерения их не различают</source>
        <translation>The error lies in one of the sections %1: the measurements do not tell them apart</translation>
    </message>
    <message>
        <source>Возможна ошибка в одной из секций %1: измерения их не различают</source>
        <translation>Possibly one of the sections %1 has an error: the measurements do not tell them apart</translation>
    </message>
    <message>
        <source>%1; %2; оценка ошибки %3&#xa0;мм, обнаруживается от %4&#xa0;мм</source>
        <translation>%1; %2; estimated error %3 mm, detectable from %4 mm</translation>
    </message>
    <message>
        <source>Секция %1: h = %2&#xa0;м, v = %3&#xa0;мм</source>
        <translation>Section %1: h = %2 m, v = %3 mm</translation>
    </message>
    <message>
        <source>%1, не контролируется другими измерениями</source>
        <translation>%1, not checked by other measurements</translation>
    </message>
    <message>
        <source>%1, СКО поправки %2&#xa0;мм, %3; r = %4, оценка ошибки %5&#xa0;мм, обнаруживается от %6&#xa0;мм</source>
        <translation>%1, standard deviation of the residual %2 mm, %3; r = %4, estimated error %5 mm, detectable from %6 mm</translation>
    </message>
    <message>
        <source>%1, СКО поправки %2&#xa0;мм, %3 %4</source>
        <translation>%1, standard deviation of the residual %2 mm, %3 %4</translation>
    </message>
    <message>
        <source>%1, СКО поправки %2&#xa0;мм, %3</source>
        <translation>%1, standard deviation of the residual %2 mm, %3</translation>
    </message>
    <message>
        <source>Исходный репер %1: поправка в отметку %2&#xa0;мм</source>
        <translation>Benchmark %1: residual of the given height %2 mm</translation>
    </message>
    <message>
        <source>%1, проверка %2, предел %3</source>
        <translation>%1, test %2, limit %3</translation>
    </message>
    <message>
        <source>Расхождения измерений секций</source>
        <translation>Discrepancies of repeated sections</translation>
    </message>
    <message>
        <source>Часть %1 не связана ни с одним исходным репером и будет уравнена как свободная сеть: %2</source>
        <translation>Part %1 is not connected with any benchmark and will be adjusted as a free network: %2</translation>
    </message>
    <message>
        <source>Прямой и обратный ход</source>
        <translation>Forward and backward levelling</translation>
    </message>
    <message>
        <source>Пункт %1 не экспортирован: его высота не определена</source>
        <translation>Point %1 was not exported: its height is not determined</translation>
    </message>
    <message>
        <source>Записано высот: %1, файл: %2</source>
        <translation>Heights written: %1; file: %2</translation>
    </message>
    <message>
        <source>%1: %2&#xa0;мм; точность результатов оценивается по %3 СКО</source>
        <translation>%1: %2 mm; precision from the %3 value</translation>
    </message>
    <message>
        <source>Априорная СКО на 1&#xa0;км хода</source>
        <translation>A priori standard deviation per km of line</translation>
    </message>
    <message>
        <source>Априорная СКО единицы веса</source>
        <translation>A priori σ₀</translation>
    </message>
    <message>
        <source>Минимум суммы Σ|v|/σ, вес измерения 1/σ, v — поправка, σ — априорная СКО измерения; исходные реперы удерживаются</source>
        <translation>Minimum of the sum Σ|v|/σ, weight of a measurement 1/σ, v is the residual, σ the a priori standard deviation of the measurement; benchmarks are held</translation>
    </message>
    <message>
        <source>Грубые ошибки: последовательная проверка наибольших поправок уравнивания, доверительная вероятность %1</source>
        <translation>Gross errors: sequential test of the largest residuals of the adjustment, confidence level %1</translation>
    </message>
    <message>
        <source>Поиск грубых ошибок</source>
        <translation>Search for gross errors</translation>
    </message>
    <message>
        <source>Грубые ошибки не искались: веса измерений различаются слишком сильно, проверьте СКО и длины секций</source>
        <translation>Gross errors were not looked for: the weights of the measurements differ too much, check standard deviations and lengths of the sections</translation>
    </message>
    <message>
        <source>Грубых ошибок не обнаружено, доверительная вероятность %1</source>
        <translation>No gross errors found, confidence level %1</translation>
    </message>
    <message>
        <source>Поиск прекращён после %1 грубых ошибок; проверьте априорную СКО</source>
        <translation>The search ended after %1 gross errors; check the a priori standard deviation</translation>
    </message>
    <message>
        <source>Секция %1: грубая ошибка, оценка %2&#xa0;мм, %3</source>
        <translation>Section %1: gross error, estimated %2 mm, %3</translation>
    </message>
    <message>
        <source>Грубая ошибка в одной из секций %1: измерения их не различают, оценка %2&#xa0;мм, %3</source>
        <translation>A gross error lies in one of the sections %1: the measurements do not tell them apart, estimated %2 mm, %3</translation>
    </message>
    <message>
        <source>Σ|v|/σ = %1; секций с ненулевой поправкой: %2, с нулевой: %3</source>
        <translation>Σ|v|/σ = %1; sections with non-zero residual: %2, with zero residual: %3</translation>
    </message>
    <message>
        <source>Решение не единственное: ту же сумму дают и другие высоты, например этих пунктов: %1</source>
        <translation>The solution is not unique: other heights give the same sum, for instance of these points: %1</translation>
    </message>
    <message>
        <source>Секция %1: v = %2&#xa0;мм, |v|/σ = %3</source>
        <translation>Section %1: v = %2 mm, |v|/σ = %3</translation>
    </message>
    <message>
        <source>пункт %1 объявлен повторно (впервые в строке файла %2), действует последнее объявление</source>
        <translation>point %1 is declared again (first in file line %2), the last one counts</translation>
    </message>
    <message>
        <source>пункт %1 не объявлен, считается определяемым</source>
        <translation>point %1 is not declared, treated as a new point</translation>
    </message>
    <message>
        <source>пункт %1 не назван ни исходным (fix), ни определяемым (adj), считается определяемым</source>
        <translation>point %1 is neither fixed (fix) nor adjusted (adj), treated as a new point</translation>
    </message>
    <message>
        <source>пункт %1 назван и исходным (fix), и определяемым (adj), считается исходным</source>
        <translation>point %1 is both fixed (fix) and adjusted (adj), treated as fixed</translation>
    </message>
    <message>
        <source>у исходного репера %1 нет отметки, считается определяемым пунктом</source>
        <translation>benchmark %1 has no height, treated as a new point</translation>
    </message>
    <message>
        <source>пункт %1: непригодная высота «%2», считается не заданной</source>
        <translation>point %1: unusable height “%2”, treated as not given</translation>
    </message>
    <message>
        <source>секция %1 – %2: превышение не задано, секция пропущена</source>
        <translation>section %1 – %2: height difference missing, section skipped</translation>
    </message>
    <message>
        <source>ковариационная матрица (dim «%1», band «%2») не соответствует числу измерений (%3), пропущена</source>
        <translation>covariance matrix (dim “%1”, band “%2”) does not fit the number of measurements (%3), skipped</translation>
    </message>
    <message>
        <source>пункт %1 назван исходным (fix) и известен с ковариациями, отметка удерживается</source>
        <translation>point %1 is fixed (fix) and known with covariances; its height is held</translation>
    </message>
    <message>
        <source>отметка пункта %1 с ковариациями задана повторно, действует первая</source>
        <translation>the height of point %1 is given with covariances again, the first one counts</translation>
    </message>
    <message>
        <source>у пункта %1 в группе отметок с ковариациями нет пригодной отметки, группа пропущена</source>
        <translation>point %1 in a group of heights with covariances has no usable height, the group is skipped</translation>
    </message>
    <message>
        <source>у группы отметок нет пригодной ковариационной матрицы (dim «%1», band «%2», отметок %3), группа пропущена</source>
        <translation>a group of heights has no usable covariance matrix (dim “%1”, band “%2”, heights %3), the group is skipped</translation>
    </message>
    <message>
        <source>Строка файла %1: %2</source>
        <translation>File line %1: %2</translation>
    </message>
    <message>
        <source>Строки этого запуска в протокол не попали: его файл не записан. Страница покажет прежний запуск, если он был.</source>
        <translation>The lines of this run are not in the protocol: its file could not be written. The page will show the run before, if there was one.</translation>
    </message>
    <message>
        <source>Файл протоколов «%1» пропал или не прочитался. Строки прежних запусков записаны в него заново.</source>
        <translation>The protocol file “%1” had vanished or could not be read. The lines of the earlier runs have been written into it again.</translation>
    </message>
    <message>
        <source>%1 и %2 называют один и тот же файл</source>
        <translation>%1 and %2 name the same file</translation>
    </message>
    <message>
        <source>не удалось записать страницу «%1», там осталась прежняя</source>
        <translation>the page &quot;%1&quot; could not be written, an earlier one is still there</translation>
    </message>
    <message>
        <source>Файл «%1» открыт в другом окне: %2.</source>
        <translation>The file &quot;%1&quot; is open in another window: %2.</translation>
    </message>
    <message>
        <source>Проект «%1» не заблокирован: рядом с ним нельзя создать файл. Пока он открыт, его может изменить и другое окно.</source>
        <translation>The project &quot;%1&quot; is not locked: no file can be made beside it. While it is open, another window may change it, too.</translation>
    </message>
    <message>
        <source>Файл «%1» не записан: в этой папке лежат временные файлы работающей программы.</source>
        <translation>The file &quot;%1&quot; was not written: the temporary files of a program that runs lie in this folder.</translation>
    </message>
    <message>
        <source>Файл «%1» не записан: это открытый проект (%2).</source>
        <translation>The file &quot;%1&quot; was not written: it is an open project (%2).</translation>
    </message>
    <message>
        <source>%1, процесс %2, компьютер %3</source>
        <translation>%1, process %2, computer %3</translation>
    </message>
    <message>
        <source>,−</source>
        <comment>decimal separator and minus</comment>
        <translation>.-</translation>
    </message>
    <message>
        <source>Строки таблицы отбираются и сортируются…</source>
        <translation>Finding and sorting the rows of the table…</translation>
    </message>
    <message>
        <source>Поправка v = уравненное превышение − измеренное превышение; r — доля ошибки измерения, которую показывает поправка; ∇ — оценка ошибки −v/r; «Обнаруживается от» — наименьшая ошибка, которую проверка обнаруживает с вероятностью 80&#xa0;%</source>
        <translation>Residual v = adjusted − measured height difference; r is the share of an error that the residual shows; ∇ is the estimated error −v/r; &quot;Detectable from&quot; is the least error that the test detects with a probability of 80 %</translation>
    </message>
    <message>
        <source>Часть %1 — свободная сеть без исходных реперов; сохраняется средняя высота (минимум следа) %2: %3</source>
        <translation>Part %1 is a free network without benchmarks; the mean height (minimum trace) is kept of %2: %3</translation>
    </message>
    <message>
        <source>пунктов с adj=&quot;Z&quot;</source>
        <translation>the points with adj=&quot;Z&quot;</translation>
    </message>
    <message>
        <source>всех пунктов, у которых есть высота</source>
        <translation>all points that have a height</translation>
    </message>
    <message>
        <source>%1: СКО измерений различаются в %2&#xa0;раз, от %3&#xa0;мм (%4) до %5&#xa0;мм (%6); последние цифры высот и СКО недостоверны, проверьте эти СКО</source>
        <translation>%1: standard deviations of measurements differ by a factor of %2, from %3 mm (%4) to %5 mm (%6); the last digits of heights and standard deviations are unreliable, check these values</translation>
    </message>
    <message>
        <source>Случайная СКО на 1&#xa0;км по расхождениям прямых и обратных ходов, секций: %1; одного хода %2&#xa0;мм, среднего из двух %3&#xa0;мм</source>
        <translation>Random standard deviation per km from the discrepancies between forward and backward levelling, sections: %1; of a single levelling %2 mm, of the mean of both %3 mm</translation>
    </message>
    <message>
        <source>%1 не принимает «%2»</source>
        <translation>%1 does not take &quot;%2&quot;</translation>
    </message>
    <message>
        <source>(--run повторяется, порядок сохраняется)</source>
        <translation>(--run may be repeated, the order is kept)</translation>
    </message>
    <message>
        <source>неизвестная обработка «%1»: --run %2</source>
        <translation>unknown run &quot;%1&quot;: --run %2</translation>
    </message>
    <message>
        <source>Импорт по шаблону</source>
        <translation>Import by template</translation>
    </message>
    <message>
        <source>Общий анализ исходных данных</source>
        <translation>Analysis of given heights</translation>
    </message>
    <message>
        <source>Авто трассирование</source>
        <translation>Line tracing</translation>
    </message>
    <message>
        <source>Расчет тахеометрии</source>
        <translation>Tacheometry</translation>
    </message>
    <message>
        <source>предобработка: связность, повторные измерения, невязки</source>
        <translation>pre-processing: connectivity, repeated measurements, misclosures</translation>
    </message>
    <message>
        <source>уравнивание по методу наименьших квадратов</source>
        <translation>least-squares adjustment</translation>
    </message>
    <message>
        <source>L1-анализ: поиск грубых ошибок</source>
        <translation>L1 analysis: search for gross errors</translation>
    </message>
    <message>
        <source>экспортировать, по окончанию имени файла:</source>
        <translation>export, by the suffix of the file&apos;s name:</translation>
    </message>
    <message>
        <source>&amp;Экспорт…</source>
        <translation>&amp;Export…</translation>
    </message>
    <message>
        <source>Записать уравненные высоты или сеть в файл</source>
        <translation>Write adjusted heights or the network to a file</translation>
    </message>
    <message>
        <source>Нивелирная сеть, gama-local</source>
        <translation>Levelling network, gama-local</translation>
    </message>
    <message>
        <source>сеть с измерениями для другой программы уравнивания</source>
        <translation>the network with its measurements, for other adjustment programs</translation>
    </message>
    <message>
        <source>неизвестный вид файла «%1», экспорт пишет %2</source>
        <translation>unknown kind of file &quot;%1&quot;, exports are %2</translation>
    </message>
    <message>
        <source>Экспортировать нечего: в проекте нет сети. Импортируйте нивелирную сеть.</source>
        <translation>Nothing to export: the project has no network. Import a levelling network.</translation>
    </message>
    <message>
        <source>Пункт %1 записан под именем «%2»: его имя в XML не записывается</source>
        <translation>Point %1 is written under the name &quot;%2&quot;: XML cannot hold its own</translation>
    </message>
    <message>
        <source>Секций, вес которых записан как СКО (stdev): %1; в сети он задан иначе</source>
        <translation>Sections whose weight is written as a standard deviation (stdev): %1; the network gives it otherwise</translation>
    </message>
    <message>
        <source>Записано пунктов: %1, секций: %2, файл: %3</source>
        <translation>Points written: %1, sections: %2; file: %3</translation>
    </message>
    <message>
        <source>расхождения отсчётов</source>
        <translation>differences of readings</translation>
    </message>
    <message>
        <source>даты</source>
        <translation>dates</translation>
    </message>
    <message>
        <source>примечания</source>
        <translation>notes</translation>
    </message>
    <message>
        <source>X, м</source>
        <translation>X, m</translation>
    </message>
    <message>
        <source>Y, м</source>
        <translation>Y, m</translation>
    </message>
    <message>
        <source>Координата на север, заданная или вычисленная по тахеометрии</source>
        <translation>Coordinate to the north, given or computed by tacheometry</translation>
    </message>
    <message>
        <source>Координата на восток, заданная или вычисленная по тахеометрии</source>
        <translation>Coordinate to the east, given or computed by tacheometry</translation>
    </message>
    <message>
        <source>Отметка репера, уравненная высота пункта или высота по тахеометрии</source>
        <translation>Height of the benchmark, adjusted height of the point, or its height by tacheometry</translation>
    </message>
    <message>
        <source>&amp;Тахеометрия</source>
        <translation>&amp;Tacheometry</translation>
    </message>
    <message>
        <source>Вычислить координаты и высоты пунктов тахеометрической съёмки</source>
        <translation>Compute coordinates and heights of the points of a tacheometric survey</translation>
    </message>
    <message>
        <source>тахеометрия: координаты и высоты пунктов съёмки</source>
        <translation>tacheometry: coordinates and heights of surveyed points</translation>
    </message>
    <message>
        <source>Вычисляет координаты и высоты пунктов по полярным измерениям тахеометра: ориентирует каждую станцию по исходным пунктам, берёт среднее из двух кругов, учитывает кривизну Земли и рефракцию. Сверяет повторные измерения между собой, исходные пункты с их координатами и результат с координатами, записанными прибором.</source>
        <translation>Computes coordinates and heights from the polar measurements of a total station: orients each set-up by given points, takes the mean of two faces, allows for the curvature of the Earth and refraction. Compares repeated measurements with each other, given points with their coordinates, and the result with the coordinates that the instrument recorded.</translation>
    </message>
    <message>
        <source>В проекте нет тахеометрии. Импортируйте файл тахеометра.</source>
        <translation>The project has no tacheometry. Import a file of a total station.</translation>
    </message>
    <message>
        <source>Вычисление координат</source>
        <translation>Computation of coordinates</translation>
    </message>
    <message>
        <source>Контроль</source>
        <translation>Checks</translation>
    </message>
    <message>
        <source>Результаты</source>
        <translation>Results</translation>
    </message>
    <message>
        <source>Ни один пункт не вычислен: ни одна станция не имеет координат и ориентирования. Импортируйте координаты исходных пунктов.</source>
        <translation>No point was computed: no station has coordinates and an orientation. Import the coordinates of the given points.</translation>
    </message>
    <message>
        <source>строка файла %1</source>
        <translation>file line %1</translation>
    </message>
    <message>
        <source>%1, строка %2</source>
        <translation>%1, line %2</translation>
    </message>
    <message>
        <source>станция %1, %2</source>
        <translation>station %1, %2</translation>
    </message>
    <message>
        <source>Станций: %1, из них не вычислено: %2; наведений: %3; вычислено пунктов: %4</source>
        <translation>Set-ups: %1, not computed: %2; sights: %3; points computed: %4</translation>
    </message>
    <message>
        <source>Допуски: расстояние до пункта %1&#xa0;м, направление на исходный пункт %2, коллимационная ошибка и место нуля %3, расхождение определений пункта %4&#xa0;мм в плане и %5&#xa0;мм по высоте, расхождение с координатами прибора %6&#xa0;мм</source>
        <translation>Tolerances: distance to a point %1&#xa0;m, direction to a given point %2, collimation and index error %3, discrepancy between measurements of a point %4&#xa0;mm in plan and %5&#xa0;mm in height, difference from the instrument&apos;s coordinates %6&#xa0;mm</translation>
    </message>
    <message>
        <source>Превышения исправлены за кривизну Земли и рефракцию (k = %1, R = %2&#xa0;км); расстояния взяты с поправками прибора, к уровню моря и на плоскость проекции не приведены</source>
        <translation>Height differences are corrected for the curvature of the Earth and refraction (k = %1, R = %2&#xa0;km); distances are taken with the instrument&apos;s corrections and not reduced to sea level or to a projection</translation>
    </message>
    <message>
        <source>Станция %1 (%2): нет координат станции, наведений без результата: %3. Импортируйте её координаты или измерьте её с другой станции</source>
        <translation>Station %1 (%2): the station has no coordinates, sights without a result: %3. Import its coordinates or measure it from another station</translation>
    </message>
    <message>
        <source>Станция %1 (%2): нет ориентирования, ни одно направление не ведёт на пункт с координатами; наведений без результата: %3. Импортируйте координаты исходных пунктов</source>
        <translation>Station %1 (%2): no orientation, no direction leads to a point with coordinates; sights without a result: %3. Import the coordinates of the given points</translation>
    </message>
    <message>
        <source>Пункт %1 (%2): расстояние %3&#xa0;м, больше допуска %4&#xa0;м</source>
        <translation>Point %1 (%2): distance %3&#xa0;m exceeds the tolerance of %4&#xa0;m</translation>
    </message>
    <message>
        <source>коллимационная ошибка</source>
        <translation>collimation error</translation>
    </message>
    <message>
        <source>место нуля</source>
        <translation>index error</translation>
    </message>
    <message>
        <source>Пункт %1 (%2): расстояния при двух кругах расходятся на %3&#xa0;мм, больше допуска %4&#xa0;мм</source>
        <translation>Point %1 (%2): the distances of the two faces differ by %3&#xa0;mm, exceeding the tolerance of %4&#xa0;mm</translation>
    </message>
    <message>
        <source>Пункт %1 (%2): %3 %4, больше допуска %5. Проверьте, та ли это цель при другом круге</source>
        <translation>Point %1 (%2): %3 %4 exceeds the tolerance of %5. Check that it is the same target in the other face</translation>
    </message>
    <message>
        <source>Пункт %1 (%2) измерен с самого себя, расстояние до станции %3&#xa0;м: номер пункта ошибочен</source>
        <translation>Point %1 (%2) was measured from itself, %3&#xa0;m from the station: the number of the point is wrong</translation>
    </message>
    <message>
        <source>Пункт %1 измерен повторно (%2; впервые %3): расхождение %4</source>
        <translation>Point %1 was measured again (%2; first %3): discrepancy %4</translation>
    </message>
    <message>
        <source>нет горизонтального направления</source>
        <translation>no horizontal direction</translation>
    </message>
    <message>
        <source>нет зенитного расстояния, наклонное расстояние нельзя привести к горизонту</source>
        <translation>no zenith angle, the slope distance cannot be reduced to the horizontal</translation>
    </message>
    <message>
        <source>Пункт %1 (%2) не вычислен: %3</source>
        <translation>Point %1 (%2) was not computed: %3</translation>
    </message>
    <message>
        <source>ориентирование прибора %1, без контроля</source>
        <translation>orientation of the instrument %1, unchecked</translation>
    </message>
    <message>
        <source>ориентирование %1 по координатам, записанным прибором</source>
        <translation>orientation %1 from the coordinates that the instrument recorded</translation>
    </message>
    <message>
        <source>ориентирование %1 по исходным пунктам %2</source>
        <translation>orientation %1 from given points %2</translation>
    </message>
    <message>
        <source>ориентирование %1 по вычисленным пунктам %2</source>
        <translation>orientation %1 from computed points %2</translation>
    </message>
    <message>
        <source>м</source>
        <translation>m</translation>
    </message>
    <message>
        <source>%1&#xa0;м, высота не определена</source>
        <translation>%1&#xa0;m, height undetermined</translation>
    </message>
    <message>
        <source>высота прибора %1&#xa0;м</source>
        <translation>height of the instrument %1&#xa0;m</translation>
    </message>
    <message>
        <source>высота прибора не записана</source>
        <translation>height of the instrument not recorded</translation>
    </message>
    <message>
        <source>Станция %1 (%2): %3, %4; %5; %6; наведений: %7</source>
        <translation>Station %1 (%2): %3, %4; %5; %6; sights: %7</translation>
    </message>
    <message>
        <source>вычислена</source>
        <translation>computed</translation>
    </message>
    <message>
        <source>исходная</source>
        <translation>given</translation>
    </message>
    <message>
        <source>%1; при двух кругах: %2, коллимационная ошибка %3, место нуля %4</source>
        <translation>%1; measured in both faces: %2, collimation error %3, index error %4</translation>
    </message>
    <message>
        <source>Пункт %1: %2; станция %3, расстояние %4&#xa0;м</source>
        <translation>Point %1: %2; station %3, distance %4&#xa0;m</translation>
    </message>
    <message>
        <source>файл больше %1&#xa0;МиБ и не прочитан; разделите съёмку на части</source>
        <translation>the file is larger than %1&#xa0;MiB and was not read; divide the survey into parts</translation>
    </message>
    <message>
        <source>строка длиннее %1 байт, файл не прочитан; проверьте, что это файл тахеометра</source>
        <translation>the line is longer than %1 bytes, the file was not read; check that it is a file of a total station</translation>
    </message>
    <message>
        <source>станций, наведений или пунктов больше %1, файл не прочитан; разделите съёмку на части</source>
        <translation>there are more than %1 set-ups, sights or points, the file was not read; divide the survey into parts</translation>
    </message>
    <message>
        <source>замечаний больше %1, файл не прочитан; проверьте, что это файл тахеометра</source>
        <translation>there are more than %1 remarks, the file was not read; check that it is a file of a total station</translation>
    </message>
    <message>
        <source>в файле нет ни измерений, ни координат</source>
        <translation>the file has neither measurements nor coordinates</translation>
    </message>
    <message>
        <source>строка не читается, пропущена</source>
        <translation>the line cannot be read and was skipped</translation>
    </message>
    <message>
        <source>не читается «%1», пропущено</source>
        <translation>“%1” cannot be read and was skipped</translation>
    </message>
    <message>
        <source>запись о пункте %1 отмечена прибором как ошибочная, пропущена</source>
        <translation>the record of point %1 is marked as faulty by the instrument and was skipped</translation>
    </message>
    <message>
        <source>величина %1 имеет непригодное значение «%2», считается не заданной</source>
        <translation>the value %1 is unusable (“%2”), taken as not given</translation>
    </message>
    <message>
        <source>величина %1 не используется, здесь и дальше</source>
        <translation>the value %1 is not used, here and from here on</translation>
    </message>
    <message>
        <source>записи вида %1 не используются, здесь и дальше</source>
        <translation>records of the kind %1 are not used, here and from here on</translation>
    </message>
    <message>
        <source>нет номера пункта, строка пропущена</source>
        <translation>no number of a point, the line was skipped</translation>
    </message>
    <message>
        <source>пункт %1 измерен до установки прибора на станцию, измерение пропущено</source>
        <translation>point %1 was measured before the instrument was set up on a station, the measurement was skipped</translation>
    </message>
    <message>
        <source>у пункта %1 нет ни направления, ни расстояния, измерение пропущено</source>
        <translation>point %1 has neither a direction nor a distance, the measurement was skipped</translation>
    </message>
    <message>
        <source>у пункта %1 только одна из координат X и Y, обе считаются не заданными</source>
        <translation>point %1 has only one of the coordinates X and Y, both are taken as not given</translation>
    </message>
    <message>
        <source>координаты пункта %1 отличаются от заданных в строке %2 на %3&#xa0;м, действуют последние</source>
        <translation>the coordinates of point %1 differ from those given in line %2 by %3&#xa0;m, the last ones count</translation>
    </message>
    <message>
        <source>смещение цели пункта %1 записано, а измерение за ним не следует; пропущено</source>
        <translation>an offset of the target of point %1 is recorded, but no measurement follows; skipped</translation>
    </message>
    <message>
        <source>Прочитано установок тахеометра: %1, наведений: %2; заданных координат пунктов: %3</source>
        <translation>Read set-ups of the total station: %1, sights: %2; points with given coordinates: %3</translation>
    </message>
    <message>
        <source>Прибор исправил расстояния сам, наведений: %1; постоянная призмы %2&#xa0;мм, поправка за атмосферу %3&#xa0;мм/км</source>
        <translation>Distances corrected by the instrument itself, sights: %1; prism constant %2&#xa0;mm, atmospheric correction %3&#xa0;ppm</translation>
    </message>
    <message>
        <source>прочитать файл измерений: нивелирную сеть (.gkf) или файл прибора
(GSI, M5, REC_E), по содержанию; второй и следующие добавляются
к сети, порядок сохраняется</source>
        <translation>read a file of measurements: a levelling network (.gkf) or the file
of an instrument (GSI, M5, REC_E), told by its content; the second
and later ones are added to the network, in their order</translation>
    </message>
    <message>
        <source>СКО секций файла нивелира: √(C² + A²·L), мм, L в км
(без неё СКО задаёт класс)</source>
        <translation>standard deviation of a level file&apos;s sections: √(C² + A²·L), mm,
L in km (else the class sets it)</translation>
    </message>
    <message>
        <source>непригодные СКО «%1»: --sigma C,A, два числа в миллиметрах, как 0.2,1.5</source>
        <translation>unusable standard deviations “%1”: --sigma C,A, two numbers in millimetres, such as 0.2,1.5</translation>
    </message>
    <message>
        <source>Использование:
  orvel-desk [параметры] [FILE]
      окно с проектом FILE, с нивелирной сетью или с файлом прибора
  orvel-desk --headless (--import FILE… | --open FILE) [параметры]
      обработка без окна
</source>
        <translation>Usage:
  orvel-desk [options] [FILE]
      a window with the project FILE, a levelling network or the file of an instrument
  orvel-desk --headless (--import FILE… | --open FILE) [options]
      work without a window
</translation>
    </message>
    <message>
        <source>Импортируйте нивелирную сеть или файл нивелира, или откройте проект</source>
        <translation>Import a levelling network or a level&apos;s file, or open a project</translation>
    </message>
    <message>
        <source>Перетащите сюда файл нивелирной сети (.gkf) или нивелира (GSI, M5) или нажмите Ctrl+I</source>
        <translation>Drop the file of a levelling network (.gkf) or of a level (GSI, M5) here, or press Ctrl+I</translation>
    </message>
    <message>
        <source>Формат: GSI цифрового нивелира</source>
        <translation>Format: GSI of a digital level</translation>
    </message>
    <message>
        <source>Формат: M5 цифрового нивелира</source>
        <translation>Format: M5 of a digital level</translation>
    </message>
    <message>
        <source>Формат: REC_E цифрового нивелира</source>
        <translation>Format: REC_E of a digital level</translation>
    </message>
    <message>
        <source>СКО секций приняты по классу нивелирования (%1): %2&#xa0;мм·√L</source>
        <translation>Standard deviations of the sections by the levelling class (%1): %2&#xa0;mm·√L</translation>
    </message>
    <message>
        <source>СКО секций заданы: √(%1² + %2²·L)&#xa0;мм</source>
        <translation>Standard deviations of the sections as given: √(%1² + %2²·L)&#xa0;mm</translation>
    </message>
    <message>
        <source>Высоты относительные, так как отметок реперов нет; отметка ноль у пунктов: %1. Введите отметки на приборе или добавьте их другим файлом</source>
        <translation>Heights are relative, since no benchmark has a height; zero at the points: %1. Enter the heights in the instrument, or add them by another file</translation>
    </message>
    <message>
        <source>два отсчёта по каждой рейке</source>
        <translation>two readings of each staff</translation>
    </message>
    <message>
        <source>рейка на %1</source>
        <translation>staff on %1</translation>
    </message>
    <message>
        <source>Строка файла %1: ход %2, станция %3 (%4)</source>
        <translation>File line %1: line %2, station %3 (%4)</translation>
    </message>
    <message>
        <source>%1: высота по прибору %2&#xa0;м, по отсчётам %3&#xa0;м, разность %4&#xa0;мм, округление объясняет %5&#xa0;мм; взято превышение по отсчётам, проверьте запись</source>
        <translation>%1: the instrument&apos;s height is %2&#xa0;m, by the readings %3&#xa0;m, the difference %4&#xa0;mm, of which rounding explains %5&#xa0;mm; the height difference by the readings is used, check the record</translation>
    </message>
    <message>
        <source>%1: превышение по первым отсчётам %2&#xa0;м, по вторым %3&#xa0;м, разность %4&#xa0;мм при допуске %5&#xa0;мм; взято среднее, повторите станцию</source>
        <translation>%1: the height difference by the first readings is %2&#xa0;m, by the second %3&#xa0;m, they differ by %4&#xa0;mm, the tolerance is %5&#xa0;mm; the mean is used, repeat the station</translation>
    </message>
    <message>
        <source>%1: отсчёт %2&#xa0;м, при повторении %3&#xa0;м, разность %4&#xa0;мм при допуске %5&#xa0;мм; взят последний, проверьте запись</source>
        <translation>%1: the reading is %2&#xa0;m, when repeated %3&#xa0;m, they differ by %4&#xa0;mm, the tolerance is %5&#xa0;mm; the last one is used, check the record</translation>
    </message>
    <message>
        <source>Строка файла %1: пункту %2 введена отметка %4&#xa0;м, прежде — %3&#xa0;м; действует последняя</source>
        <translation>File line %1: point %2 is given the height %4&#xa0;m, before %3&#xa0;m; the last one counts</translation>
    </message>
    <message>
        <source>Длины в футах или дюймах пересчитаны в метры: 1&#xa0;фут = 12&#xa0;дюймов = 0,3048&#xa0;м</source>
        <translation>Lengths in feet or inches were converted into metres: 1&#xa0;foot = 12&#xa0;inches = 0.3048&#xa0;m</translation>
    </message>
    <message>
        <source>Ходов: %1, станций: %2; с высотами прибора сверено: %3, из них расходится: %4</source>
        <translation>Lines: %1, stations: %2; compared with the instrument&apos;s heights: %3, of which differ: %4</translation>
    </message>
    <message>
        <source>станций %1, длина %2&#xa0;км</source>
        <translation>stations %1, length %2&#xa0;km</translation>
    </message>
    <message>
        <source>невязка замкнутого хода %1&#xa0;мм при допуске %2&#xa0;мм (%3)</source>
        <translation>misclosure of the closed line %1&#xa0;mm, tolerance %2&#xa0;mm (%3)</translation>
    </message>
    <message>
        <source>превышение %1&#xa0;м</source>
        <translation>height difference %1&#xa0;m</translation>
    </message>
    <message>
        <source>переходная точка %1</source>
        <translation>turning point %1</translation>
    </message>
    <message>
        <source>промежуточных точек %1</source>
        <translation>intermediate points %1</translation>
    </message>
    <message>
        <source>повторных отсчётов усреднено %1</source>
        <translation>repeated readings averaged %1</translation>
    </message>
    <message>
        <source>секция %1</source>
        <translation>section %1</translation>
    </message>
    <message>
        <source>секции %1</source>
        <translation>sections %1</translation>
    </message>
    <message>
        <source>без станций</source>
        <translation>no stations</translation>
    </message>
    <message>
        <source>%1 (по %2, впервые в строке %3)</source>
        <translation>%1 (%2 each, first in file line %3)</translation>
    </message>
    <message>
        <source>Не использованы слова и записи без отсчётов хода: %1</source>
        <translation>Words and records without readings of a line, not used: %1</translation>
    </message>
    <message>
        <source>формат не распознан: нужны gama-local XML (.gkf) или файл прибора, нивелира (GSI, M5, REC_E) или тахеометра (GSI, M5); текст со столбцами читается по шаблону</source>
        <translation>the format is not known: gama-local XML (.gkf) or the file of an instrument is wanted, of a level (GSI, M5, REC_E) or a total station (GSI, M5); text in columns is read by a template</translation>
    </message>
    <message>
        <source>пунктов, ходов и станций больше %1, файл не прочитан; разделите его на части</source>
        <translation>more than %1 points, lines and stations, the file was not read; divide it into parts</translation>
    </message>
    <message>
        <source>слово «%1» не читается, пропущено</source>
        <translation>the word “%1” cannot be read, skipped</translation>
    </message>
    <message>
        <source>строка не похожа на запись прибора, пропущена</source>
        <translation>this is no record of an instrument, skipped</translation>
    </message>
    <message>
        <source>пункт %1: непригодный отсчёт «%2», пропущен</source>
        <translation>point %1: unusable reading “%2”, skipped</translation>
    </message>
    <message>
        <source>пункт %1: отсчёт «%2» не относится к ходу (отдельное измерение или вынос), пропущен</source>
        <translation>point %1: the reading “%2” is no part of a line (measured alone or set out), skipped</translation>
    </message>
    <message>
        <source>пункт %1: запись помечена прибором как повторённая или ошибочная, пропущена</source>
        <translation>point %1: the instrument marks the record as repeated or faulty, skipped</translation>
    </message>
    <message>
        <source>отсчёты без начала хода, приняты за новый ход</source>
        <translation>readings without the start of a line, taken as a new line</translation>
    </message>
    <message>
        <source>ход начат, но станций в нём нет</source>
        <translation>a line starts, but has no stations</translation>
    </message>
    <message>
        <source>неизвестный порядок отсчётов «%1», отсчёты взяты по их словам</source>
        <translation>unknown order of readings “%1”, the readings are taken as their words say</translation>
    </message>
    <message>
        <source>поверка нивелира, её отсчёты в ход не входят</source>
        <translation>check of the instrument, its readings are no part of a line</translation>
    </message>
    <message>
        <source>станция с передней рейкой на %1 не имеет отсчёта назад, пропущена</source>
        <translation>the station with the fore staff on %1 has no reading back, skipped</translation>
    </message>
    <message>
        <source>станция с задней рейкой на %1 не имеет отсчёта вперёд, пропущена</source>
        <translation>the station with the back staff on %1 has no reading fore, skipped</translation>
    </message>
    <message>
        <source>обе рейки станции на пункте %1, станция пропущена</source>
        <translation>both staffs of the station are on point %1, the station is skipped</translation>
    </message>
    <message>
        <source>станция %1 – %2: нет второго отсчёта, превышение взято по имеющимся</source>
        <translation>station %1 – %2: a second reading is missing, the height difference is that of the others</translation>
    </message>
    <message>
        <source>станция повторена, прежняя %1 – %2 (строка файла %3) не использована</source>
        <translation>the station was repeated, the earlier %1 – %2 (file line %3) is not used</translation>
    </message>
    <message>
        <source>разрыв хода: предыдущая станция кончается на %1, следующая начинается на %2</source>
        <translation>the line is interrupted: the station before ends at %1, the next one begins at %2</translation>
    </message>
    <message>
        <source>промежуточная точка %1 без отсчёта назад пропущена</source>
        <translation>intermediate point %1 without a reading back, skipped</translation>
    </message>
    <message>
        <source>у станций без расстояний (%1 из %2) длина принята %3&#xa0;м</source>
        <translation>stations without distances (%1 of %2) are taken as %3&#xa0;m long</translation>
    </message>
    <message>
        <source>ход кончается или начинается на числе %1, которым названы и переходные точки других ходов; проверьте, один ли это пункт, и назовите марку иначе</source>
        <translation>the line ends or begins at the number %1, which turning points of other lines have, too; check whether it is one point, and give the mark another name</translation>
    </message>
    <message>
        <source>Высоты и координаты, таблица CSV</source>
        <translation>Heights and coordinates, CSV table</translation>
    </message>
    <message>
        <source>уравненные высоты и их СКО, координаты</source>
        <translation>adjusted heights, their standard deviations, coordinates</translation>
    </message>
    <message>
        <source>План в местной системе, GeoJSON</source>
        <translation>Plan in local coordinates, GeoJSON</translation>
    </message>
    <message>
        <source>пункты с координатами и секции для ГИС</source>
        <translation>points with coordinates, and sections, for GIS</translation>
    </message>
    <message>
        <source>План, чертёж DXF</source>
        <translation>Plan, DXF drawing</translation>
    </message>
    <message>
        <source>пункты, имена, высоты и секции для САПР</source>
        <translation>points, names, heights and sections for CAD</translation>
    </message>
    <message>
        <source>Экспортировать нечего: ни у одного пункта нет координат. Импортируйте координаты или выполните расчёт тахеометрии.</source>
        <translation>Nothing to export: no point has coordinates. Import coordinates or compute the tacheometry.</translation>
    </message>
    <message>
        <source>Не экспортировано пунктов без координат: %1 (%2)</source>
        <translation>Points without coordinates, not exported: %1 (%2)</translation>
    </message>
    <message>
        <source>нет ни расстояния, ни координат для ориентирования по нему</source>
        <translation>neither a distance, nor coordinates to orient by it</translation>
    </message>
    <message>
        <source>С&amp;ледующая ошибка</source>
        <translation>&amp;Next error</translation>
    </message>
    <message>
        <source>Перейти в строках протокола к следующей ошибке, а если их нет — к предупреждению</source>
        <translation>Go to the next error in the protocol lines, or to a warning where there is none</translation>
    </message>
    <message>
        <source>&amp;Предыдущая ошибка</source>
        <translation>&amp;Previous error</translation>
    </message>
    <message>
        <source>Время</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>О выделенном</source>
        <translation>About the selected</translation>
    </message>
    <message>
        <source>Показывать только строки о пункте или секции, которые выделены в таблице</source>
        <translation>Show only lines about the point or section that is selected in the table</translation>
    </message>
    <message>
        <source>Поиск в строках протокола</source>
        <translation>Search the protocol lines</translation>
    </message>
    <message>
        <source>Строки протокола</source>
        <translation>Protocol lines</translation>
    </message>
    <message>
        <source>%1 из %2</source>
        <translation>%1 of %2</translation>
    </message>
    <message>
        <source>ошибок и предупреждений нет</source>
        <translation>no errors and warnings</translation>
    </message>
    <message>
        <source>Ошибки</source>
        <translation>Errors</translation>
    </message>
    <message>
        <source>Предупреждения</source>
        <translation>Warnings</translation>
    </message>
    <message>
        <source>Сообщения</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>Вне этапов</source>
        <translation>Outside of stages</translation>
    </message>
    <message>
        <source>Трассирование ходов</source>
        <translation>Tracing of lines</translation>
    </message>
    <message>
        <source>Ход соединяет секции через определяемые пункты, в которых сходятся только две; узловой пункт — тот, где сходятся три или больше. Повторные измерения секции, в том числе прямо и обратно, — одна секция, их среднее</source>
        <translation>A line joins sections at new points where only two of them meet; a node is one where three or more meet. Repeated measurements of a section, forward and backward included, are one section, their mean</translation>
    </message>
    <message>
        <source>Допуск невязок ходов: %1</source>
        <translation>Tolerance of lines: %1</translation>
    </message>
    <message>
        <source>Высоты узловых пунктов не вычислены: веса измерений различаются слишком сильно, проверьте СКО и длины секций</source>
        <translation>Heights of nodes not computed: the weights of the measurements differ too much; check standard deviations and lengths of the sections</translation>
    </message>
    <message>
        <source>между исходными реперами %1</source>
        <translation>between benchmarks %1</translation>
    </message>
    <message>
        <source>от репера к узловому пункту %1</source>
        <translation>from a benchmark to a node %1</translation>
    </message>
    <message>
        <source>между узловыми пунктами %1</source>
        <translation>between nodes %1</translation>
    </message>
    <message>
        <source>замкнутых %1</source>
        <translation>closed %1</translation>
    </message>
    <message>
        <source>висячих %1</source>
        <translation>hanging %1</translation>
    </message>
    <message>
        <source>отдельных %1</source>
        <translation>isolated %1</translation>
    </message>
    <message>
        <source>колец %1</source>
        <translation>rings %1</translation>
    </message>
    <message>
        <source>Ходов: %1 (%2); узловых пунктов: %3; секций: %4, каждая входит в один ход</source>
        <translation>Lines: %1 (%2); nodes: %3; sections: %4, each in one line</translation>
    </message>
    <message>
        <source>Ход между исходными реперами</source>
        <translation>Line between benchmarks</translation>
    </message>
    <message>
        <source>Замкнутый ход</source>
        <translation>Closed line</translation>
    </message>
    <message>
        <source>Ход от исходного репера к узловому пункту</source>
        <translation>Line from a benchmark to a node</translation>
    </message>
    <message>
        <source>Ход между узловыми пунктами</source>
        <translation>Line between nodes</translation>
    </message>
    <message>
        <source>Висячий ход</source>
        <translation>Hanging line</translation>
    </message>
    <message>
        <source>Отдельный ход</source>
        <translation>Isolated line</translation>
    </message>
    <message>
        <source>Кольцевой ход без узлов</source>
        <translation>Ring without nodes</translation>
    </message>
    <message>
        <source>не контролируется</source>
        <translation>not checked</translation>
    </message>
    <message>
        <source>не связан с исходными реперами</source>
        <translation>not connected with benchmarks</translation>
    </message>
    <message>
        <source>невязка %1&#xa0;мм, %2, отношение %3</source>
        <translation>misclosure %1 mm, %2, ratio %3</translation>
    </message>
    <message>
        <source>Σh = %1&#xa0;м</source>
        <translation>Σh = %1 m</translation>
    </message>
    <message>
        <source>станций %1</source>
        <translation>set-ups %1</translation>
    </message>
    <message>
        <source>секций %1</source>
        <translation>sections %1</translation>
    </message>
    <message>
        <source>секций %1, измерений %2</source>
        <translation>sections %1, measurements %2</translation>
    </message>
    <message>
        <source>Узловой пункт %1: высоты нет, он не связан с исходными реперами</source>
        <translation>Node %1: no height, it is not connected with benchmarks</translation>
    </message>
    <message>
        <source>от %1 %2&#xa0;м (%3&#xa0;мм, %4)</source>
        <translation>from %1 %2 m (%3 mm, %4)</translation>
    </message>
    <message>
        <source>Узловой пункт %1: уравненная H = %2&#xa0;м, по ходам с размахом %3&#xa0;мм: %4</source>
        <translation>Node %1: adjusted H = %2 m, by its lines with a range of %3 mm: %4</translation>
    </message>
    <message>
        <source>Пункт %1 не связан ни с одной секцией</source>
        <translation>Point %1 is not connected with any section</translation>
    </message>
    <message>
        <source>Допуск невязок ходов и полигонов и расхождений измерений секции: %1</source>
        <translation>Tolerance of misclosures of lines and loops, and of discrepancies between measurements of a section: %1</translation>
    </message>
    <message>
        <source>Измерения уравнены без исходных отметок (свободная сеть); верные отметки отличаются от её высот все на одну величину. Доверительная вероятность %1</source>
        <translation>The measurements are adjusted without the given heights (free network); right heights differ from its heights all by the same amount. Confidence level %1</translation>
    </message>
    <message>
        <source>Допуск невязок ходов между реперами: %1</source>
        <translation>Tolerance of lines between benchmarks: %1</translation>
    </message>
    <message>
        <source>Свободное уравнивание</source>
        <translation>Free adjustment</translation>
    </message>
    <message>
        <source>Ходы между исходными реперами</source>
        <translation>Lines between benchmarks</translation>
    </message>
    <message>
        <source>Анализировать нечего: в сети нет исходных реперов</source>
        <translation>Nothing to analyse: the network has no benchmarks</translation>
    </message>
    <message>
        <source>Свободная сеть не уравнивается: веса измерений различаются слишком сильно, проверьте СКО и длины секций</source>
        <translation>The free network cannot be adjusted: the weights of the measurements differ too much; check standard deviations and lengths of the sections</translation>
    </message>
    <message>
        <source>Анализировать нечего: ни одна секция не ведёт к исходному реперу</source>
        <translation>Nothing to analyse: no section leads to a benchmark</translation>
    </message>
    <message>
        <source>Часть сети с репером %1. </source>
        <translation>Part with benchmark %1. </translation>
    </message>
    <message>
        <source>%1Исходный репер один, %2: его отметку сравнить не с чем; чтобы найти ошибочную, нужны хотя бы три</source>
        <translation>%1There is one benchmark, %2: its height has nothing to be compared with; to find a wrong one takes three at least</translation>
    </message>
    <message>
        <source>%1Исходных реперов %2, вместе проверяется не больше 2000; проверены только ходы между ними</source>
        <translation>%1There are %2 benchmarks, no more than 2000 are compared together; only the lines between them were checked</translation>
    </message>
    <message>
        <source>%1Исходные отметки согласуются, реперов %2; %3</source>
        <translation>%1The given heights are consistent, benchmarks: %2; %3</translation>
    </message>
    <message>
        <source>%1Измерения друг друга не проверяют, СКО взяты априорные; расхождение отметок может быть и ошибкой измерения</source>
        <translation>%1The measurements do not check each other, standard deviations are a priori; a discrepancy of heights may be an error of a measurement, too</translation>
    </message>
    <message>
        <source>%1Свободное уравнивание: избыточных измерений %2, μ апостериорная к априорной %3</source>
        <translation>%1Free adjustment: redundant measurements %2, σ₀ a posteriori over a priori %3</translation>
    </message>
    <message>
        <source>СКО вычислены по апостериорной</source>
        <translation>standard deviations are a posteriori</translation>
    </message>
    <message>
        <source>СКО вычислены по априорной</source>
        <translation>standard deviations are a priori</translation>
    </message>
    <message>
        <source>%1, больше предела %2: измерения не согласуются и без исходных отметок, сначала найдите их ошибки L1-анализом; %3</source>
        <translation>%1, above the limit %2: the measurements disagree even without the given heights, find their errors by L1 analysis first; %3</translation>
    </message>
    <message>
        <source>%1, предел %2; %3</source>
        <translation>%1, limit %2; %3</translation>
    </message>
    <message>
        <source>отношение дисперсий %1, больше предела %2</source>
        <translation>ratio of variances %1, above the limit %2</translation>
    </message>
    <message>
        <source>отношение дисперсий %1, предел %2</source>
        <translation>ratio of variances %1, limit %2</translation>
    </message>
    <message>
        <source>%1 (отметка больше на %2&#xa0;мм, СКО %3&#xa0;мм)</source>
        <translation>%1 (given height too large by %2 mm, σ %3 mm)</translation>
    </message>
    <message>
        <source>%1 (отметка меньше на %2&#xa0;мм, СКО %3&#xa0;мм)</source>
        <translation>%1 (given height too small by %2 mm, σ %3 mm)</translation>
    </message>
    <message>
        <source>%1Исходные отметки не согласуются, %2. Исключите из исходных или проверьте: %3. Остальные согласуются, реперов %4</source>
        <translation>%1The given heights are not consistent, %2. Exclude from the benchmarks, or check: %3. The others are consistent, benchmarks: %4</translation>
    </message>
    <message>
        <source>%1Перебрать все наборы реперов нельзя, слишком много; возможен и больший согласованный набор</source>
        <translation>%1There are too many sets of benchmarks to try them all; a larger consistent one is possible</translation>
    </message>
    <message>
        <source>%1Исходные отметки не согласуются, %2, но какие неверны, измерения не решают: остальные согласуются без %3. Свяжите их с другими реперами или проверьте отметки</source>
        <translation>%1The given heights are not consistent, %2, but the measurements do not decide which are wrong: the others are consistent without %3. Connect them with further benchmarks or check the heights</translation>
    </message>
    <message>
        <source>, или без </source>
        <translation>, or without </translation>
    </message>
    <message>
        <source>%1Никакие два исходных репера не согласуются, %2: %3. Проверьте отметки, их систему высот и имена пунктов</source>
        <translation>%1No two benchmarks agree, %2: %3. Check the heights, their height system and the names of the points</translation>
    </message>
    <message>
        <source>%1Отметки двух исходных реперов расходятся: %2 относительно %3 на %4&#xa0;мм, СКО %5&#xa0;мм, критерий %6, больше предела %7. Какая неверна, решить нельзя: нужен третий репер</source>
        <translation>%1The heights of two benchmarks disagree: %2 relative to %3 by %4 mm, σ %5 mm, test %6, above the limit %7. Which one is wrong cannot be decided: a third benchmark is needed</translation>
    </message>
    <message>
        <source>В части сети с пунктом %1 нет исходных реперов</source>
        <translation>The part with point %1 has no benchmarks</translation>
    </message>
    <message>
        <source>Исходных реперов много: ходы показаны только между соседними, числом %1</source>
        <translation>There are many benchmarks: lines are shown between neighbours only, %1 of them</translation>
    </message>
    <message>
        <source>Ход %1: Σh = %2&#xa0;м, по отметкам %3&#xa0;м, невязка %4&#xa0;мм, %5, %6</source>
        <translation>Line %1: Σh = %2 m, by the given heights %3 m, misclosure %4 mm, %5, %6</translation>
    </message>
    <message>
        <source>Репер %1: отметка %2&#xa0;м, по всем другим реперам %3&#xa0;м, сдвиг %4&#xa0;мм, СКО %5&#xa0;мм, критерий %6, %7</source>
        <translation>Benchmark %1: given height %2 m, by all other benchmarks %3 m, shift %4 mm, σ %5 mm, test %6, %7</translation>
    </message>
    <message>
        <source>больше предела %1</source>
        <translation>above the limit %1</translation>
    </message>
    <message>
        <source>предел %1</source>
        <translation>limit %1</translation>
    </message>
    <message>
        <source>в свободной сети %1&#xa0;м, разность %2&#xa0;мм, СКО %3&#xa0;мм</source>
        <translation>in the free network %1 m, difference %2 mm, σ %3 mm</translation>
    </message>
    <message>
        <source>%1 (из-за исключённых реперов); %2</source>
        <translation>%1 (because of the excluded benchmarks); %2</translation>
    </message>
    <message>
        <source>Анализ &amp;исходных данных</source>
        <translation>Analysis of &amp;given heights</translation>
    </message>
    <message>
        <source>Проверить, согласуются ли исходные отметки</source>
        <translation>Check whether the given heights are consistent</translation>
    </message>
    <message>
        <source>анализ исходных данных: согласуются ли отметки реперов</source>
        <translation>analysis of given heights: are the benchmarks consistent?</translation>
    </message>
    <message>
        <source>Проверяет, согласуются ли отметки исходных реперов с измерениями и между собой: сравнивает их с высотами свободной сети, вычисляет невязки ходов между реперами и сдвиг каждого репера относительно остальных, находит наибольший согласованный набор и называет реперы, которые следует исключить, или говорит, что решить этого нельзя.</source>
        <translation>Checks whether the given heights of the benchmarks are consistent with the measurements and with each other: compares them with the heights of the free network, computes misclosures of the lines between benchmarks and the shift of each benchmark against all others, finds the largest consistent set and names the benchmarks to exclude, or says that this cannot be decided.</translation>
    </message>
    <message>
        <source>Т&amp;рассирование ходов</source>
        <translation>Line t&amp;racing</translation>
    </message>
    <message>
        <source>Показать сеть ходами между реперами и узловыми пунктами</source>
        <translation>Show the network as lines between benchmarks and nodes</translation>
    </message>
    <message>
        <source>трассирование: сеть ходами, их невязки, узловые пункты</source>
        <translation>line tracing: lines, their misclosures, nodes</translation>
    </message>
    <message>
        <source>Соединяет секции в ходы между исходными реперами и узловыми пунктами, как их чертит геодезист: у каждого хода вид, пункты, длина, станции, сумма превышений, невязка рядом с допуском, у каждого узлового пункта высоты по всем ходам, которые к нему ведут. Висячие и замкнутые ходы и кольца названы отдельно.</source>
        <translation>Joins sections to lines between benchmarks and nodes, as a surveyor draws them: of each line its kind, points, length, set-ups, sum of height differences, and misclosure beside its tolerance; of each node the heights by all lines that lead to it. Hanging and closed lines and rings are named as such.</translation>
    </message>
    <message>
        <source>±%1&#xa0;мм·√L (%2), L — длина, км; без длины — %3 СКО</source>
        <translation>±%1 mm·√L (%2), L is the length in km; without a length %3 standard deviations</translation>
    </message>
    <message>
        <source>порядок отсчётов не назван</source>
        <translation>order of readings not named</translation>
    </message>
    <message>
        <source>%1, секция %2</source>
        <translation>%1, section %2</translation>
    </message>
    <message>
        <source>Σ разностей двух отсчётов %1&#xa0;мм, на станции до %2&#xa0;мм</source>
        <translation>Σ of differences between both readings %1&#xa0;mm, of a station up to %2&#xa0;mm</translation>
    </message>
    <message>
        <source>с прибором расходится до %1&#xa0;мм</source>
        <translation>up to %1&#xa0;mm from the instrument</translation>
    </message>
    <message>
        <source>переходные точки %1…%2 (%3)</source>
        <translation>turning points %1…%2 (%3)</translation>
    </message>
    <message>
        <source>Ход %1 (строки файла %2–%3): %4, %5: %6</source>
        <translation>Line %1 (file lines %2–%3): %4, %5: %6</translation>
    </message>
    <message>
        <source>по высоте %1&#xa0;мм</source>
        <translation>in height %1&#xa0;mm</translation>
    </message>
    <message>
        <source>в плане %1&#xa0;мм (X %2, Y %3)</source>
        <translation>in plan %1&#xa0;mm (X %2, Y %3)</translation>
    </message>
    <message>
        <source>Пункт %1 (%2): отличие измеренного от заданных координат %3</source>
        <translation>Point %1 (%2): what was measured differs from the given coordinates %3</translation>
    </message>
    <message>
        <source>Пункт %1 (%2): вычисленное отличается от координат прибора на %3&#xa0;мм (X %4, Y %5, H %6), больше допуска %7&#xa0;мм</source>
        <translation>Point %1 (%2): what was computed differs from the instrument&apos;s coordinates by %3&#xa0;mm (X %4, Y %5, H %6), exceeding the tolerance of %7&#xa0;mm</translation>
    </message>
    <message>
        <source>Ещё %1 пунктов отличаются от координат прибора больше, чем допускается; проверьте постоянные прибора: призму, масштаб, проекцию</source>
        <translation>Another %1 points differ from the instrument&apos;s coordinates by more than the tolerance; check the settings of the instrument: prism, scale, projection</translation>
    </message>
    <message>
        <source>наибольшее отклонение %1, допуск %2</source>
        <translation>largest deviation %1, tolerance %2</translation>
    </message>
    <message>
        <source>ориентирование прибора %1, контроль по пунктам %2: %3</source>
        <translation>orientation of the instrument %1, checked by points %2: %3</translation>
    </message>
    <message>
        <source>СКО %1″, %2</source>
        <translation>standard deviation %1″, %2</translation>
    </message>
    <message>
        <source>без контроля</source>
        <translation>unchecked</translation>
    </message>
    <message>
        <source>Станция %1: сравнение с координатами прибора, пунктов: %2, наибольшее отличие %3&#xa0;мм (X %4, Y %5, H %6), допуск %7&#xa0;мм</source>
        <translation>Station %1: compared with the instrument&apos;s coordinates, points: %2, largest difference %3&#xa0;mm (X %4, Y %5, H %6), tolerance %7&#xa0;mm</translation>
    </message>
    <message>
        <source>число станций секций</source>
        <translation>numbers of set-ups of sections</translation>
    </message>
    <message>
        <source>координаты пунктов</source>
        <translation>coordinates of points</translation>
    </message>
    <message>
        <source>станции тахеометрии</source>
        <translation>set-ups of tacheometry</translation>
    </message>
    <message>
        <source>В формате .gkf этому нет места, в файл не вошли: %1</source>
        <translation>The .gkf format has no place for this, left out: %1</translation>
    </message>
    <message>
        <source>шаблон, по которому читается текст --import перед ним</source>
        <translation>template by which the text of the --import before it is read</translation>
    </message>
    <message>
        <source>стандартный ввод читается один раз: --import - указан дважды</source>
        <translation>the standard input is read once: --import - is given twice</translation>
    </message>
    <message>
        <source>--import с --template и без него чередуются: поставьте файлы с шаблоном подряд</source>
        <translation>--import with and without --template take turns: put the files with a template next to each other</translation>
    </message>
    <message>
        <source>--template относится к --import перед ним, по одному на файл</source>
        <translation>--template belongs to the --import before it, one for each file</translation>
    </message>
    <message>
        <source>Прочитать файлы .gkf, цифровых нивелиров и тахеометров (GSI, M5)</source>
        <translation>Read .gkf files and those of digital levels and total stations (GSI, M5)</translation>
    </message>
    <message>
        <source>Импорт по ша&amp;блону…</source>
        <translation>Import by &amp;template…</translation>
    </message>
    <message>
        <source>Прочитать текстовый файл, выбрав, что в его столбцах</source>
        <translation>Read a text file by choosing what its columns hold</translation>
    </message>
    <message>
        <source>Открыть проект или измерения</source>
        <translation>Open project or measurements</translation>
    </message>
    <message>
        <source>Проекты и измерения (*.%1 *.%2 %3);;Все файлы (*)</source>
        <translation>Projects and measurements (*.%1 *.%2 %3);;All files (*)</translation>
    </message>
    <message>
        <source>Импорт измерений</source>
        <translation>Import measurements</translation>
    </message>
    <message>
        <source>Файлы измерений (*.%1 %2);;Все файлы (*)</source>
        <translation>Files of measurements (*.%1 %2);;All files (*)</translation>
    </message>
    <message>
        <source>Текстовые файлы (*.%1);;Все файлы (*)</source>
        <translation>Text files (*.%1);;All files (*)</translation>
    </message>
    <message>
        <source>Читает измерения из одного или нескольких файлов. Всё, что в файле не удалось использовать, названо в протоколе с номером строки файла. Новая сеть заменяет прежнюю или добавляется к ней: одноимённые пункты становятся одним пунктом, действует то, что сказано о нём последним; ссылки на одноимённые пункты и секции сохраняются.</source>
        <translation>Reads measurements from one or several files. Whatever in a file could not be used is named in the protocol with its file line. The new network replaces the former one or is added to it: points of one name become one point, and what is said of it last counts; links to points and sections of the same name are kept.</translation>
    </message>
    <message>
        <source>Читает секции или отметки пунктов из текстового файла (.csv, .txt). Шаблон говорит, как разделены строки и что в столбцах; его составляет мастер, показывая первые строки файла, и хранит под именем. В протоколе названы шаблон, пропущенные строки с причиной, повторы и значения, похожие на другую единицу.</source>
        <translation>Reads sections or given heights of points from a text file (.csv, .txt). A template tells how rows are divided and what the columns hold; a wizard makes it, showing the first rows of the file, and keeps it by name. The protocol names the template, skipped rows with the reason, repeated ones, and values that look like another unit.</translation>
    </message>
    <message>
        <source>Заменить сеть проекта «%1» или добавить к ней?</source>
        <translation>Replace the network of the project “%1” or add to it?</translation>
    </message>
    <message>
        <source>&amp;Добавить</source>
        <translation>&amp;Add</translation>
    </message>
    <message>
        <source>Столбец %1: что в нём</source>
        <translation>Column %1: what it holds</translation>
    </message>
    <message>
        <source>шапка, пропускается</source>
        <translation>heading, skipped</translation>
    </message>
    <message>
        <source>пустая, пропускается</source>
        <translation>empty, skipped</translation>
    </message>
    <message>
        <source>комментарий, пропускается</source>
        <translation>comment, skipped</translation>
    </message>
    <message>
        <source>не прочитана: кавычка не закрыта</source>
        <translation>not read: the quotation mark is not closed</translation>
    </message>
    <message>
        <source>Строка</source>
        <translation>Row</translation>
    </message>
    <message>
        <source>Столбец %1</source>
        <translation>Column %1</translation>
    </message>
    <message>
        <source>не прочитана: %1</source>
        <translation>not read: %1</translation>
    </message>
    <message>
        <source>годится</source>
        <translation>good</translation>
    </message>
    <message>
        <source>годится, но %1</source>
        <translation>good, but %1</translation>
    </message>
    <message>
        <source>&amp;Удалить шаблон</source>
        <translation>&amp;Delete template</translation>
    </message>
    <message>
        <source>Файл и шаблон</source>
        <translation>File and template</translation>
    </message>
    <message>
        <source>Шаблон говорит, как разделены строки и что в столбцах. Возьмите готовый или начните с того, что видно по файлу.</source>
        <translation>A template tells how rows are divided and what the columns hold. Take a kept one or begin with what the file looks like.</translation>
    </message>
    <message>
        <source>Об&amp;зор…</source>
        <translation>&amp;Browse…</translation>
    </message>
    <message>
        <source>Текстовый &amp;файл:</source>
        <translation>Text &amp;file:</translation>
    </message>
    <message>
        <source>&amp;Начать с шаблона:</source>
        <translation>Begin &amp;with the template:</translation>
    </message>
    <message>
        <source>Текстовый файл</source>
        <translation>Text file</translation>
    </message>
    <message>
        <source>Шаблоны</source>
        <translation>Templates</translation>
    </message>
    <message>
        <source>Файл не читается: %1</source>
        <translation>The file cannot be read: %1</translation>
    </message>
    <message>
        <source>Новый, по содержанию файла</source>
        <translation>New, by the content of the file</translation>
    </message>
    <message>
        <source>Шаблон не удалён: файл «%1» остался на месте</source>
        <translation>The template is not deleted: the file “%1” is still there</translation>
    </message>
    <message>
        <source>Выберите текстовый файл: .csv, .txt или другой.</source>
        <translation>Choose a text file: .csv, .txt or another.</translation>
    </message>
    <message>
        <source>Файл «%1» не найден или не читается.</source>
        <translation>The file “%1” is not found or cannot be read.</translation>
    </message>
    <message>
        <source>Столбцы</source>
        <translation>Columns</translation>
    </message>
    <message>
        <source>Над каждым столбцом выберите, что в нём. Ниже — первые строки файла, как они читаются.</source>
        <translation>Choose above each column what it holds. Below are the first rows of the file as they are read.</translation>
    </message>
    <message>
        <source>Первые строки файла</source>
        <translation>First rows of the file</translation>
    </message>
    <message>
        <source>нет: столбцы постоянной ширины</source>
        <translation>none: columns of fixed width</translation>
    </message>
    <message>
        <source>точка</source>
        <translation>point</translation>
    </message>
    <message>
        <source>запятая</source>
        <translation>comma</translation>
    </message>
    <message>
        <source>системная</source>
        <translation>of the system</translation>
    </message>
    <message>
        <source>&amp;Разделитель столбцов:</source>
        <translation>Column &amp;separator:</translation>
    </message>
    <message>
        <source>&amp;Ширины столбцов, знаков:</source>
        <translation>Column &amp;widths, characters:</translation>
    </message>
    <message>
        <source>Деся&amp;тичный знак:</source>
        <translation>&amp;Decimal sign:</translation>
    </message>
    <message>
        <source>&amp;Пропустить строк в начале:</source>
        <translation>Rows to sk&amp;ip at the beginning:</translation>
    </message>
    <message>
        <source>&amp;Кодировка:</source>
        <translation>&amp;Encoding:</translation>
    </message>
    <message>
        <source>Ко&amp;мментарий начинается с:</source>
        <translation>&amp;Comments begin with:</translation>
    </message>
    <message>
        <source>&amp;Единица превышений:</source>
        <translation>Unit of &amp;height differences:</translation>
    </message>
    <message>
        <source>Единица д&amp;лин:</source>
        <translation>Unit of &amp;lengths:</translation>
    </message>
    <message>
        <source>Ширины столбцов — целые числа через запятую, например 8, 8, 10.</source>
        <translation>Column widths are whole numbers with commas between them, for example 8, 8, 10.</translation>
    </message>
    <message>
        <source>Не выбран столбец «%1». Секциям нужны оба пункта и превышение, пунктам — имя и отметка или координаты.</source>
        <translation>No column is chosen as “%1”. Sections need both points and the height difference, points a name and a given height or coordinates.</translation>
    </message>
    <message>
        <source>Столбцы секций и пунктов вместе не читаются: лишний «%1».</source>
        <translation>Columns of sections and of points are not read together: “%1” is one too many.</translation>
    </message>
    <message>
        <source>Из первых строк не годится ни одна: проверьте разделитель, десятичный знак и столбцы.</source>
        <translation>None of the first rows is good: check the separator, the decimal sign and the columns.</translation>
    </message>
    <message>
        <source>Из первых строк годится %1, не прочитано %2.</source>
        <translation>Good rows among the first ones: %1; not read: %2.</translation>
    </message>
    <message>
        <source>&amp;Сохранить шаблон для других файлов</source>
        <translation>&amp;Keep the template for other files</translation>
    </message>
    <message>
        <source>Имя шаблона</source>
        <translation>Name of the template</translation>
    </message>
    <message>
        <source>Под этим именем шаблон стоит в протоколе и в списке готовых.</source>
        <translation>Under this name the template stands in the protocol and in the list of kept ones.</translation>
    </message>
    <message>
        <source>&amp;Имя шаблона:</source>
        <translation>&amp;Name of the template:</translation>
    </message>
    <message>
        <source>Шаблон не сохранён: %1</source>
        <translation>The template is not kept: %1</translation>
    </message>
    <message>
        <source>У шаблона должно быть имя.</source>
        <translation>The template must have a name.</translation>
    </message>
    <message>
        <source>&lt; &amp;Назад</source>
        <translation>&lt; &amp;Back</translation>
    </message>
    <message>
        <source>&amp;Дальше &gt;</source>
        <translation>&amp;Next &gt;</translation>
    </message>
    <message>
        <source>&amp;Импортировать</source>
        <translation>&amp;Import</translation>
    </message>
    <message>
        <source>Шаблон: %1</source>
        <translation>Template: %1</translation>
    </message>
    <message>
        <source>Единицы: высоты и координаты — м, СКО — мм</source>
        <translation>Units: heights and coordinates in m, standard deviations in mm</translation>
    </message>
    <message>
        <source>Единицы: превышения — %1, длины — %2, СКО — мм</source>
        <translation>Units: height differences in %1, lengths in %2, standard deviations in mm</translation>
    </message>
    <message>
        <source>Прочитано строк: %1, из них с данными: %2, пропущено: %3</source>
        <translation>Rows read: %1; with data: %2; skipped: %3</translation>
    </message>
    <message>
        <source>Пропущено строк шапки: %1 (от начала файла)</source>
        <translation>Heading rows skipped: %1 (from the beginning of the file)</translation>
    </message>
    <message>
        <source>Пропущено пустых строк: %1 (строки файла %2)</source>
        <translation>Empty rows skipped: %1 (file lines %2)</translation>
    </message>
    <message>
        <source>Пропущено строк с комментарием: %1 (строки файла %2)</source>
        <translation>Comment rows skipped: %1 (file lines %2)</translation>
    </message>
    <message>
        <source>Секций без длины и СКО, вес которых взят по числу штативов (10 на 1&#xa0;км): %1</source>
        <translation>Sections without length and standard deviation that are weighted by their stations (10 per km): %1</translation>
    </message>
    <message>
        <source>пункт %1: отметка %2&#xa0;м вместо прежней %3&#xa0;м</source>
        <translation>point %1: given height %2&#xa0;m in place of %3&#xa0;m</translation>
    </message>
    <message>
        <source>пункт %1 теперь исходный репер</source>
        <translation>point %1 is a benchmark now</translation>
    </message>
    <message>
        <source>отметка пункта %1 теперь измерена с СКО и не удерживается</source>
        <translation>the height of point %1 is now measured with a standard deviation, and not held</translation>
    </message>
    <message>
        <source>пункт %1 был исходным репером, теперь он определяемый</source>
        <translation>point %1 was a benchmark, it is a new point now</translation>
    </message>
    <message>
        <source>координаты пункта %1 заменены</source>
        <translation>the coordinates of point %1 are replaced</translation>
    </message>
    <message>
        <source>Секции с теми же концами и превышением уже были в сети, учтены ещё раз: %1 (%2). Если файл импортирован дважды, замените сеть</source>
        <translation>Sections with the same ends and height difference were in the network already and count once more: %1 (%2). If the file was imported twice, replace the network</translation>
    </message>
    <message>
        <source>Параметры уравнивания этого файла другие; действуют параметры сети, к которой он добавлен</source>
        <translation>The parameters of the adjustment differ in this file; those of the network that it is added to hold</translation>
    </message>
    <message>
        <source>Добавлено к сети пунктов: %1, секций: %2; совпало с имевшимися пунктов: %3</source>
        <translation>Added to the network: points %1, sections %2; points that were there already: %3</translation>
    </message>
    <message>
        <source>Пункты, известные только по секциям, считаются определяемыми: %1 (%2)</source>
        <translation>Points known from sections only are treated as new points: %1 (%2)</translation>
    </message>
    <message>
        <source>Пункты, к которым не ведёт ни одна секция: %1 (%2). Проверьте их имена</source>
        <translation>Points that no section leads to: %1 (%2). Check their names</translation>
    </message>
    <message>
        <source>В сети только пункты. Добавьте к ней файлы с измерениями</source>
        <translation>There are only points in the network. Add files with measurements to it</translation>
    </message>
    <message>
        <source>Координаты — в системе проекта, X на север, Y на восток, м; это не WGS-84</source>
        <translation>Coordinates are in the system of the project, X to the north, Y to the east, m; this is not WGS-84</translation>
    </message>
    <message>
        <source>строка длиннее %1 знаков, файл не прочитан; проверьте, что это текст, и его кодировку</source>
        <translation>a line is longer than %1 characters, the file is not read; check that it is text, and its encoding</translation>
    </message>
    <message>
        <source>кавычка открыта и не закрыта, строка пропущена</source>
        <translation>a quotation mark is opened and not closed, the row is skipped</translation>
    </message>
    <message>
        <source>в столбце %1 пусто, строка пропущена</source>
        <translation>the column %1 is empty, the row is skipped</translation>
    </message>
    <message>
        <source>столбец %1: «%2» — непригодное число, строка пропущена</source>
        <translation>column %1: “%2” is no usable number, the row is skipped</translation>
    </message>
    <message>
        <source>столбец %1: «%2» — число с другим десятичным знаком, в шаблоне «%3»; строка пропущена</source>
        <translation>column %1: “%2” is a number with another decimal sign than the template&apos;s “%3”; the row is skipped</translation>
    </message>
    <message>
        <source>здесь и дальше строк, в которых данные есть и правее последнего столбца шаблона: %1; лишнее не прочитано, столбцов в шаблоне %2</source>
        <translation>rows with data behind the last column of the template, here and further on: %1; the surplus is not read, the template has %2 columns</translation>
    </message>
    <message>
        <source>здесь и дальше строк со знаками, которых нет в кодировке %2: %1; проверьте кодировку в шаблоне</source>
        <translation>rows with characters that the encoding %2 does not have, here and further on: %1; check the encoding in the template</translation>
    </message>
    <message>
        <source>секция %1 – %2 с тем же превышением уже есть в строке файла %3, учтены обе; лишнюю удалите</source>
        <translation>section %1 – %2 with the same height difference is in file line %3 already, both count; delete the surplus one</translation>
    </message>
    <message>
        <source>секция %1 – %2: нет ни длины, ни числа штативов, ни СКО; принята априорная СКО 1&#xa0;км хода</source>
        <translation>section %1 – %2: neither length nor stations nor standard deviation; the a priori standard deviation of 1&#xa0;km is taken</translation>
    </message>
    <message>
        <source>секция %1 – %2: непригодное число штативов «%3», считается не заданным</source>
        <translation>section %1 – %2: unusable number of stations “%3”, treated as not given</translation>
    </message>
    <message>
        <source>секция %1 – %2: превышение %3&#xa0;м больше правдоподобного для её длины %4&#xa0;м; проверьте единицы</source>
        <translation>section %1 – %2: the height difference %3&#xa0;m is larger than what is plausible for its length, %4&#xa0;m; check the units</translation>
    </message>
    <message>
        <source>пункт %1: непригодная СКО отметки «%2», отметка удерживается</source>
        <translation>point %1: unusable standard deviation “%2” of the given height, which is held</translation>
    </message>
    <message>
        <source>пункт %1: непригодная координата %2 «%3», координаты не взяты</source>
        <translation>point %1: unusable coordinate %2 “%3”, the coordinates are not taken</translation>
    </message>
    <message>
        <source>столбец %1: среднее по величине значение %3 неправдоподобно для единицы %2; проверьте единицу в шаблоне</source>
        <translation>column %1: the median %3 is not plausible for the unit %2; check the unit in the template</translation>
    </message>
    <message>
        <source>файл начинается меткой кодировки %1, он прочитан в ней, а не в кодировке шаблона %2</source>
        <translation>the file begins with the mark of the encoding %1 and is read by it, not by the template&apos;s encoding %2</translation>
    </message>
    <message>
        <source>в файле нет ни одной пригодной строки; проверьте разделитель и столбцы шаблона</source>
        <translation>there is no usable row in the file; check the separator and the columns of the template</translation>
    </message>
    <message>
        <source>непригодное значение ключа «%1»: допустимо %2</source>
        <translation>unusable value of the key “%1”: allowed is %2</translation>
    </message>
    <message>
        <source>неизвестный ключ «%1»: допустимы %2</source>
        <translation>unknown key “%1”: allowed are %2</translation>
    </message>
    <message>
        <source>целое число от %1 до %2</source>
        <translation>a whole number from %1 to %2</translation>
    </message>
    <message>
        <source>нужен один из ключей separator (знак между столбцами) и widths (ширины столбцов)</source>
        <translation>one of the keys separator (sign between columns) and widths (of the columns) is needed</translation>
    </message>
    <message>
        <source>список целых чисел</source>
        <translation>a list of whole numbers</translation>
    </message>
    <message>
        <source>UTF-8, windows-1251, UTF-16, system или другое известное имя кодировки</source>
        <translation>UTF-8, windows-1251, UTF-16, system or another known name of an encoding</translation>
    </message>
    <message>
        <source>не больше %1 знаков</source>
        <translation>at most %1 characters</translation>
    </message>
    <message>
        <source>список из %1</source>
        <translation>a list of %1</translation>
    </message>
    <message>
        <source>это не JSON, ошибка в строке %1</source>
        <translation>this is not JSON, error in line %1</translation>
    </message>
    <message>
        <source>непустое имя</source>
        <translation>a name that is not empty</translation>
    </message>
    <message>
        <source>Шаблон «%1»: %2</source>
        <translation>Template “%1”: %2</translation>
    </message>
    <message>
        <source>файл больше 1&#xa0;МиБ</source>
        <translation>the file is larger than 1&#xa0;MiB</translation>
    </message>
    <message>
        <source>не читать</source>
        <translation>do not read</translation>
    </message>
    <message>
        <source>начальный пункт</source>
        <translation>from point</translation>
    </message>
    <message>
        <source>конечный пункт</source>
        <translation>to point</translation>
    </message>
    <message>
        <source>превышение</source>
        <translation>height difference</translation>
    </message>
    <message>
        <source>длина</source>
        <translation>length</translation>
    </message>
    <message>
        <source>число штативов</source>
        <translation>stations</translation>
    </message>
    <message>
        <source>дата</source>
        <translation>date</translation>
    </message>
    <message>
        <source>примечание</source>
        <translation>note</translation>
    </message>
    <message>
        <source>отметка, м</source>
        <translation>given height, m</translation>
    </message>
    <message>
        <source>X (север), м</source>
        <translation>X (north), m</translation>
    </message>
    <message>
        <source>Y (восток), м</source>
        <translation>Y (east), m</translation>
    </message>
    <message>
        <source>см</source>
        <translation>cm</translation>
    </message>
    <message>
        <source>мм</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>км</source>
        <translation>km</translation>
    </message>
    <message>
        <source>пробелы</source>
        <translation>blanks</translation>
    </message>
    <message>
        <source>табуляция</source>
        <translation>tabulator</translation>
    </message>
    <message>
        <source>разделитель %1</source>
        <translation>separator %1</translation>
    </message>
    <message>
        <source>столбцы постоянной ширины</source>
        <translation>columns of fixed width</translation>
    </message>
    <message>
        <source>«%1»; %2; десятичный знак «%3»; кодировка %4; столбцы: %5</source>
        <translation>“%1”; %2; decimal sign “%3”; encoding %4; columns: %5</translation>
    </message>
    <message>
        <source>в columns нет столбца %1; для таблицы пунктов нужны point и height или x и y</source>
        <translation>there is no column %1 in columns; a table of points needs point and height, or x and y</translation>
    </message>
    <message>
        <source>в columns нет столбца %1; для таблицы секций нужны from, to и dh</source>
        <translation>there is no column %1 in columns; a table of sections needs from, to and dh</translation>
    </message>
    <message>
        <source>в columns столбец %1 назван дважды; повторяться может только skip</source>
        <translation>the column %1 is named twice in columns; only skip may be repeated</translation>
    </message>
    <message>
        <source>в columns смешаны столбцы секций и пунктов: %1; в таблице секций есть from, to, dh, в таблице пунктов — point, height, x, y</source>
        <translation>columns of sections and of points are mixed in columns: %1; a table of sections has from, to, dh, one of points point, height, x, y</translation>
    </message>
    <message>
        <source>в widths %1 чисел, а в columns столбцов %2; нужно поровну</source>
        <translation>there are %1 numbers in widths, but %2 columns in columns; they must be equally many</translation>
    </message>
    <message>
        <source>separator «%1» не может разделять столбцы; нужен один знак, например «;», «,», «|», пробел или табуляция</source>
        <translation>separator “%1” cannot divide columns; one sign is needed, for example “;”, “,”, “|”, a blank or a tabulator</translation>
    </message>
    <message>
        <source>пусто</source>
        <translation>empty</translation>
    </message>
    <message>
        <source>другой десятичный знак</source>
        <translation>another decimal sign</translation>
    </message>
    <message>
        <source>непригодное число</source>
        <translation>unusable number</translation>
    </message>
    <message>
        <source>один знак, например «;», «,», «|», пробел или табуляция</source>
        <translation>one sign, for example “;”, “,”, “|”, a blank or a tabulator</translation>
    </message>
    <message>
        <source>«%1»</source>
        <translation>“%1”</translation>
    </message>
    <message>
        <source>Импортируйте файл нивелирной сети (.gkf) или цифрового нивелира (GSI, M5, REC_E), выполните предобработку, затем уравнивание; для файла тахеометра (GSI, M5) — расчёт тахеометрии. Каждая обработка пишет протокол. Ссылка на пункт или секцию в протоколе выделяет этот пункт или секцию в таблице, а щелчок в столбце «Протокол» показывает все их строки.</source>
        <translation>Import a file with a levelling network (.gkf) or of a digital level (GSI, M5, REC_E), run the pre-processing, then the adjustment; for the file of a total station (GSI, M5) compute the tacheometry. Every run writes a protocol. A link to a point or section in a protocol selects it in the table, and a click in the column “Protocol” shows all lines about it.</translation>
    </message>
    <message>
        <source>%1; пункты: %2</source>
        <translation>%1; points: %2</translation>
    </message>
    <message>
        <source>Станция %1: направление на пункт %2 (%3) отклоняется от ориентирования на %4, больше допуска %5; на расстоянии %6&#xa0;м это %7&#xa0;мм%8. Проверьте, тот ли это пункт и верны ли его координаты</source>
        <translation>Station %1: the direction to point %2 (%3) deviates from the orientation by %4, exceeding the tolerance of %5; at a distance of %6&#xa0;m this is %7&#xa0;mm%8. Check that it is the right point and that its coordinates are right</translation>
    </message>
    <message>
        <source>; из ориентирования исключено</source>
        <translation>; it is excluded from the orientation</translation>
    </message>
    <message>
        <source>В проекте ничего не изменилось, протокол прежнего импорта остался.</source>
        <translation>Nothing in the project has changed; the protocol of the earlier import has stayed.</translation>
    </message>
    <message>
        <source>«%1» — не файл, а канал или устройство. Их читает только orvel-desk --headless.</source>
        <translation>“%1” is no file but a pipe or a device. Only orvel-desk --headless reads these.</translation>
    </message>
    <message>
        <source>Страницы без оформления: папка «Protocol» с их шаблоном не найдена. Переустановите программу.</source>
        <translation>Pages are without their look: the folder “Protocol” with their template was not found. Install the program again.</translation>
    </message>
    <message>
        <source>Страницы без оформления: шаблон из папки «%1» не скопирован в «%2».</source>
        <translation>Pages are without their look: the template in the folder “%1” was not copied to “%2”.</translation>
    </message>
    <message>
        <source>свои допуски вместо допусков проекта</source>
        <translation>own tolerances instead of the project&apos;s</translation>
    </message>
    <message>
        <source>&amp;Допуски…</source>
        <translation>&amp;Tolerances…</translation>
    </message>
    <message>
        <source>Задать свои допуски, уровень критериев и число знаков</source>
        <translation>Set own tolerances, the level of the tests and the decimals</translation>
    </message>
    <message>
        <source>±%1&#xa0;мм·√n (%2), n — число станций; без числа станций — %3 СКО</source>
        <translation>±%1&#xa0;mm·√n (%2), n is the number of stations; without it %3 standard deviations</translation>
    </message>
    <message>
        <source>%1&#xa0;мм·√n</source>
        <translation>%1&#xa0;mm·√n</translation>
    </message>
    <message>
        <source>Допуск невязок ходов и полигонов: %1. Допуск расхождений измерений секции: %2</source>
        <translation>Limit of the misclosures of lines and loops: %1. Limit of the discrepancies of a section&apos;s measurements: %2</translation>
    </message>
    <message>
        <source>Доверительная вероятность критериев задана в допусках проекта: %1</source>
        <translation>The project&apos;s tolerances set the confidence level of the tests: %1</translation>
    </message>
    <message>
        <source>%1, свои допуски</source>
        <translation>%1, own tolerances</translation>
    </message>
    <message>
        <source>%1 — это объект JSON {…} с ключами %2</source>
        <translation>%1 is a JSON object {…} with the keys %2</translation>
    </message>
    <message>
        <source>шаблон</source>
        <translation>a template</translation>
    </message>
    <message>
        <source>Класс и допуски: %1</source>
        <translation>Class and tolerances: %1</translation>
    </message>
    <message>
        <source>Допуски</source>
        <translation>Tolerances</translation>
    </message>
    <message>
        <source>СКО секций из файлов приборов задаёт класс при импорте: ни другой класс, ни свои допуски их не меняют. Протоколы показывают допуски, с которыми выполнены.</source>
        <translation>The class sets the standard deviations of sections from instruments&apos; files at the import: neither another class nor own tolerances change them. Protocols show the tolerances that they were made with.</translation>
    </message>
    <message>
        <source>Предельные невязки, мм</source>
        <translation>Limits of misclosures, mm</translation>
    </message>
    <message>
        <source>Ходы и полигоны</source>
        <translation>Lines and loops</translation>
    </message>
    <message>
        <source>%1 (в проекте)</source>
        <translation>%1 (of the project)</translation>
    </message>
    <message>
        <source>%1: ходы и полигоны</source>
        <translation>%1: lines and loops</translation>
    </message>
    <message>
        <source>%1: повторные измерения</source>
        <translation>%1: repeated measurements</translation>
    </message>
    <message>
        <source>Критерии и знаки</source>
        <translation>Tests and decimals</translation>
    </message>
    <message>
        <source>Без длины (числа станций) предел, СКО невязки</source>
        <translation>Limit without length (stations), standard deviations</translation>
    </message>
    <message>
        <source>Своя доверительная вероятность критериев (в файле сети %1)</source>
        <translation>Own confidence level of the tests (%1 in the network&apos;s file)</translation>
    </message>
    <message>
        <source>Доверительная вероятность</source>
        <translation>Confidence level</translation>
    </message>
    <message>
        <source>Знаков после запятой: высоты и превышения, м</source>
        <translation>Decimals of heights and height differences, m</translation>
    </message>
    <message>
        <source>Знаков после запятой: невязки, поправки и СКО, мм</source>
        <translation>Decimals of misclosures, residuals and standard deviations, mm</translation>
    </message>
    <message>
        <source>Образец</source>
        <translation>Example</translation>
    </message>
    <message>
        <source>&amp;Применить</source>
        <translation>&amp;Apply</translation>
    </message>
    <message>
        <source>По &amp;умолчанию</source>
        <translation>&amp;Defaults</translation>
    </message>
    <message>
        <source>Вернуть допуски, с которыми начинает каждый проект</source>
        <translation>Go back to the tolerances that every project begins with</translation>
    </message>
    <message>
        <source>%1&#xa0;м; %2&#xa0;мм</source>
        <translation>%1&#xa0;m; %2&#xa0;mm</translation>
    </message>
    <message>
        <source>объект {…} с ключами %1</source>
        <translation>an object {…} with the keys %1</translation>
    </message>
    <message>
        <source>число от %1 до %2</source>
        <translation>a number from %1 to %2</translation>
    </message>
    <message>
        <source>файл допусков</source>
        <translation>a file of tolerances</translation>
    </message>
    <message>
        <source>Допуски «%1»: %2</source>
        <translation>Tolerances “%1”: %2</translation>
    </message>
    <message>
        <source>Скопировано строк: %1</source>
        <translation>Rows copied: %1</translation>
    </message>
    <message>
        <source>Поиск и отбор не нашли ни пунктов, ни секций</source>
        <translation>Search and choice found neither points nor sections</translation>
    </message>
    <message>
        <source>Важность</source>
        <translation>Severity</translation>
    </message>
    <message>
        <source>Штативов</source>
        <translation>Set-ups</translation>
    </message>
    <message>
        <source>|v|/σ</source>
        <translation>|v|/σ</translation>
    </message>
    <message>
        <source>Избыточность</source>
        <translation>Redundancy</translation>
    </message>
    <message>
        <source>Файл</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Строка файла</source>
        <translation>Line of file</translation>
    </message>
    <message>
        <source>Дата</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Примечание</source>
        <translation>Note</translation>
    </message>
    <message>
        <source>Самая важная из строк последних протоколов об этом пункте или секции</source>
        <translation>The gravest line about the point or section in the latest protocols</translation>
    </message>
    <message>
        <source>Поправка в измеренное превышение из уравнивания; сортируется по размеру</source>
        <translation>Residual of the measured height difference from the adjustment; sorted by size</translation>
    </message>
    <message>
        <source>Размер нормированной или стьюдентизированной поправки, как её проверяет уравнивание</source>
        <translation>Size of the normalised or studentised residual, as the adjustment tests it</translation>
    </message>
    <message>
        <source>Доля ошибки измерения, которую показывает поправка: от 0 до 1</source>
        <translation>Share of an error of the measurement that the residual shows: from 0 to 1</translation>
    </message>
    <message>
        <source>Число штативов секции</source>
        <translation>Count of the section&apos;s set-ups</translation>
    </message>
    <message>
        <source>Файл, из которого пункт или секция</source>
        <translation>The file that the point or section comes from</translation>
    </message>
    <message>
        <source>Номер строки этого файла</source>
        <translation>Number of the line in that file</translation>
    </message>
    <message>
        <source>Когда секция измерена, как сказано в файле</source>
        <translation>When the section was measured, as the file says</translation>
    </message>
    <message>
        <source>Примечание к секции из файла</source>
        <translation>Note on the section from the file</translation>
    </message>
    <message>
        <source>Всё</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Показать все пункты и секции</source>
        <translation>Show all points and sections</translation>
    </message>
    <message>
        <source>Пункты</source>
        <translation>Points</translation>
    </message>
    <message>
        <source>Показать только пункты</source>
        <translation>Show points only</translation>
    </message>
    <message>
        <source>Секции</source>
        <translation>Sections</translation>
    </message>
    <message>
        <source>Показать только секции</source>
        <translation>Show sections only</translation>
    </message>
    <message>
        <source>Сверх допуска</source>
        <translation>Over limit</translation>
    </message>
    <message>
        <source>Показать секции, о которых в протоколах есть ошибки</source>
        <translation>Show the sections about which the protocols have errors</translation>
    </message>
    <message>
        <source>составить ведомость, .html или .pdf:</source>
        <translation>make a report, .html or .pdf:</translation>
    </message>
    <message>
        <source>
(--report повторяется)</source>
        <translation>
(--report may be repeated)</translation>
    </message>
    <message>
        <source>неизвестная ведомость «%1»: --report KIND=FILE, где KIND — %2</source>
        <translation>unknown report &quot;%1&quot;: --report KIND=FILE, where KIND is %2</translation>
    </message>
    <message>
        <source>непонятно, чем записать ведомость «%1»: окончание имени файла — %2</source>
        <translation>unknown kind of file for a report &quot;%1&quot;: the suffix is %2</translation>
    </message>
    <message>
        <source>для --import, --open, --run, --export, --report, --pages, --data, --save и --fail-on нужен --headless</source>
        <translation>--import, --open, --run, --export, --report, --pages, --data, --save and --fail-on need --headless</translation>
    </message>
    <message>
        <source>&amp;Печать…</source>
        <translation>&amp;Print…</translation>
    </message>
    <message>
        <source>Печатать таблицу, строки протокола или ведомость, или записать их в PDF</source>
        <translation>Print the table, the lines of a protocol or a report, or write them as PDF</translation>
    </message>
    <message>
        <source>Сохранить для печати</source>
        <translation>Save for printing</translation>
    </message>
    <message>
        <source>ведомость «%1» составляется по результатам, а сеть не уравнена</source>
        <translation>the report &quot;%1&quot; is made of results, and the network is not adjusted</translation>
    </message>
    <message>
        <source>сначала выполните уравнивание</source>
        <translation>run the adjustment first</translation>
    </message>
    <message>
        <source>Таблица пунктов и секций, как показана</source>
        <translation>Table of points and sections, as shown</translation>
    </message>
    <message>
        <source>в ней нет строк</source>
        <translation>it has no rows</translation>
    </message>
    <message>
        <source>Строки протокола, как показаны</source>
        <translation>Lines of the protocol, as shown</translation>
    </message>
    <message>
        <source>сейчас их нет на экране</source>
        <translation>none are on the screen</translation>
    </message>
    <message>
        <source>Строки протокола «%1», как показаны</source>
        <translation>Lines of the protocol “%1”, as shown</translation>
    </message>
    <message>
        <source>Протокол: %1</source>
        <translation>Protocol: %1</translation>
    </message>
    <message>
        <source>Составление</source>
        <translation>Composing</translation>
    </message>
    <message>
        <source>Печать</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>Печать не началась: проверьте принтер или файл, в который печатается.</source>
        <translation>Printing did not begin: check the printer, or the file that is printed to.</translation>
    </message>
    <message>
        <source>Записано: %1</source>
        <translation>Written: %1</translation>
    </message>
    <message>
        <source>Просмотр не открылся: в системе не назначена программа для файлов PDF.</source>
        <translation>The preview did not open: the system has no program for PDF files.</translation>
    </message>
    <message>
        <source>&amp;Что печатать:</source>
        <translation>&amp;What to print:</translation>
    </message>
    <message>
        <source>Что печатать</source>
        <translation>What to print</translation>
    </message>
    <message>
        <source>&amp;Сохранить в файл…</source>
        <translation>&amp;Save to a file…</translation>
    </message>
    <message>
        <source>П&amp;росмотр</source>
        <translation>P&amp;review</translation>
    </message>
    <message>
        <source>Остановить</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Лист %1 из %2</source>
        <translation>Sheet %1 of %2</translation>
    </message>
    <message>
        <source>ошибка</source>
        <translation>error</translation>
    </message>
    <message>
        <source>предупреждение</source>
        <translation>warning</translation>
    </message>
    <message>
        <source>сообщение</source>
        <translation>message</translation>
    </message>
    <message>
        <source>&amp;Копировать строки</source>
        <translation>&amp;Copy rows</translation>
    </message>
    <message>
        <source>&amp;Столбцы</source>
        <translation>Co&amp;lumns</translation>
    </message>
    <message>
        <source>Строки в порядке &amp;файла</source>
        <translation>Rows in the order of the &amp;file</translation>
    </message>
    <message>
        <source>&amp;Обычные столбцы</source>
        <translation>&amp;Usual columns</translation>
    </message>
    <message>
        <source>Длина секции</source>
        <translation>Length of the section</translation>
    </message>
    <message>
        <source>В &amp;строках протокола</source>
        <translation>In the &amp;lines of the protocol</translation>
    </message>
    <message>
        <source>%1: ошибок и предупреждений нет</source>
        <translation>%1: no errors or warnings</translation>
    </message>
    <message>
        <source>О выделенном здесь строк нет</source>
        <translation>No lines about the selected one here</translation>
    </message>
    <message>
        <source>Отключённые</source>
        <translation>Switched off</translation>
    </message>
    <message>
        <source>Показать отключённые секции</source>
        <translation>Show the sections that are switched off</translation>
    </message>
    <message>
        <source>Отключена: в обработке не участвует</source>
        <translation>Switched off: takes no part in processing</translation>
    </message>
    <message>
        <source>Отключена: %1</source>
        <translation>Switched off: %1</translation>
    </message>
    <message>
        <source>%1, отключена</source>
        <translation>%1, switched off</translation>
    </message>
    <message>
        <source>Графики</source>
        <translation>Plots</translation>
    </message>
    <message>
        <source>меньше %1</source>
        <translation>below %1</translation>
    </message>
    <message>
        <source>от %1</source>
        <translation>from %1</translation>
    </message>
    <message>
        <source>от %1 до %2</source>
        <translation>from %1 to %2</translation>
    </message>
    <message>
        <source>Нормированные поправки</source>
        <translation>Normalised residuals</translation>
    </message>
    <message>
        <source>Число секций</source>
        <translation>Number of sections</translation>
    </message>
    <message>
        <source>Поправок ещё нет: сначала выполните уравнивание (F6)</source>
        <translation>No residuals yet: adjust first (F6)</translation>
    </message>
    <message>
        <source>Секции не контролируются другими измерениями: нормированных поправок нет</source>
        <translation>Nothing checks the sections: there are no normalised residuals</translation>
    </message>
    <message>
        <source>Нормированная поправка %1: секций %2</source>
        <translation>Normalised residual %1: %2 sections</translation>
    </message>
    <message>
        <source>%1; наибольшая %2 у секции %3</source>
        <translation>%1; largest %2, section %3</translation>
    </message>
    <message>
        <source>Поправки по длине</source>
        <translation>Residuals by length</translation>
    </message>
    <message>
        <source>Длина секции, км</source>
        <translation>Length of the section, km</translation>
    </message>
    <message>
        <source>У секций нет длин: показать поправки по длине нельзя</source>
        <translation>Sections have no lengths: residuals cannot be shown by length</translation>
    </message>
    <message>
        <source>Секция %1: длина %2&#xa0;км, v = %3&#xa0;мм</source>
        <translation>Section %1: length %2&#xa0;km, v = %3&#xa0;mm</translation>
    </message>
    <message>
        <source>%1; ошибка в протоколе</source>
        <translation>%1; error in a protocol</translation>
    </message>
    <message>
        <source>Строка протокола</source>
        <translation>Line of the protocol</translation>
    </message>
    <message>
        <source>Ведомость ходов</source>
        <translation>List of lines</translation>
    </message>
    <message>
        <source>Ведомости ходов</source>
        <translation>Lists of lines</translation>
    </message>
    <message>
        <source>Ведомость секций</source>
        <translation>List of sections</translation>
    </message>
    <message>
        <source>Ведомости секций</source>
        <translation>Lists of sections</translation>
    </message>
    <message>
        <source>%1 и ещё %2</source>
        <translation>%1 and %2 more</translation>
    </message>
    <message>
        <source>больше допуска</source>
        <translation>over tolerance</translation>
    </message>
    <message>
        <source>№</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Начало</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Конец</source>
        <translation>End</translation>
    </message>
    <message>
        <source>Через пункты</source>
        <translation>By way of</translation>
    </message>
    <message>
        <source>Станций</source>
        <translation>Set-ups</translation>
    </message>
    <message>
        <source>Σh, м</source>
        <translation>Σh, m</translation>
    </message>
    <message>
        <source>Невязка, мм</source>
        <translation>Misclosure, mm</translation>
    </message>
    <message>
        <source>Ходов и полигонов, которые замыкаются, нет</source>
        <translation>There are no lines or loops that close</translation>
    </message>
    <message>
        <source>%1 от %2, секций %3: невязка %4&#xa0;мм, %5</source>
        <translation>%1 from %2, %3 sections: misclosure %4&#xa0;mm, %5</translation>
    </message>
    <message>
        <source>Прямо и обратно</source>
        <translation>Forward and back</translation>
    </message>
    <message>
        <source>Расхождение, мм</source>
        <translation>Discrepancy, mm</translation>
    </message>
    <message>
        <source>Секций, измеренных прямо и обратно или повторно, нет</source>
        <translation>No section was measured forward and back or repeatedly</translation>
    </message>
    <message>
        <source>Секция %1, измерений %2: расхождение %3&#xa0;мм, %4</source>
        <translation>Section %1, %2 measurements: discrepancy %3&#xa0;mm, %4</translation>
    </message>
    <message>
        <source>Число станций</source>
        <translation>Number of stations</translation>
    </message>
    <message>
        <source>Сначала импортируйте нивелирную сеть (Ctrl+I)</source>
        <translation>Import a levelling network first (Ctrl+I)</translation>
    </message>
    <message>
        <source>%1, или у их секций нет длин</source>
        <translation>%1, or their sections have no lengths</translation>
    </message>
    <message>
        <source>%1, или у их секций нет числа станций</source>
        <translation>%1, or their sections have no number of stations</translation>
    </message>
    <message>
        <source>Сохранить…</source>
        <translation>Save…</translation>
    </message>
    <message>
        <source>Сохранить график как SVG или PDF</source>
        <translation>Save the plot as SVG or PDF</translation>
    </message>
    <message>
        <source>Графики строятся…</source>
        <translation>Plots are being made…</translation>
    </message>
    <message>
        <source>Сеть изменена после уравнивания: поправки прежние</source>
        <translation>The network was changed after the adjustment: the residuals are the earlier ones</translation>
    </message>
    <message>
        <source>Сохранить график</source>
        <translation>Save the plot</translation>
    </message>
    <message>
        <source>%1&#xa0;км</source>
        <translation>%1&#xa0;km</translation>
    </message>
    <message>
        <source>&amp;Вид</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>Сохранить схему сети</source>
        <translation>Save the picture of the network</translation>
    </message>
    <message>
        <source>В протоколах: ошибка</source>
        <translation>In the protocols: error</translation>
    </message>
    <message>
        <source>В протоколах: предупреждение</source>
        <translation>In the protocols: warning</translation>
    </message>
    <message>
        <source>репер с измеренной высотой</source>
        <translation>benchmark with an observed height</translation>
    </message>
    <message>
        <source>Высота %1&#xa0;м, СКО %2&#xa0;мм</source>
        <translation>Height %1&#xa0;m, σ %2&#xa0;mm</translation>
    </message>
    <message>
        <source>Заданная высота %1&#xa0;м</source>
        <translation>Given height %1&#xa0;m</translation>
    </message>
    <message>
        <source>X %1&#xa0;м, Y %2&#xa0;м</source>
        <translation>X %1&#xa0;m, Y %2&#xa0;m</translation>
    </message>
    <message>
        <source>Отключена</source>
        <translation>Switched off</translation>
    </message>
    <message>
        <source>Превышение %1&#xa0;м</source>
        <translation>Difference %1&#xa0;m</translation>
    </message>
    <message>
        <source>Длина %1&#xa0;км</source>
        <translation>Length %1&#xa0;km</translation>
    </message>
    <message>
        <source>Поправка %1&#xa0;мм</source>
        <translation>Residual %1&#xa0;mm</translation>
    </message>
    <message>
        <source>Нормированная поправка %1</source>
        <translation>Normalised residual %1</translation>
    </message>
    <message>
        <source>Не контролируется другими измерениями</source>
        <translation>No other measurement checks it</translation>
    </message>
    <message>
        <source>%1&#xa0;мм, допуск ±%2&#xa0;мм</source>
        <translation>%1&#xa0;mm, limit ±%2&#xa0;mm</translation>
    </message>
    <message>
        <source>Допуск, мм</source>
        <translation>Tolerance, mm</translation>
    </message>
    <message>
        <source>Отношение</source>
        <translation>Ratio</translation>
    </message>
    <message>
        <source>Оценка</source>
        <translation>Judgement</translation>
    </message>
    <message>
        <source>Схема сети</source>
        <translation>Picture of the network</translation>
    </message>
    <message>
        <source>Показать или убрать рисунок сети с ошибками протоколов</source>
        <translation>Show or hide the drawing of the network with the errors of the protocols</translation>
    </message>
    <message>
        <source>%1&#xa0;м</source>
        <translation>%1&#xa0;m</translation>
    </message>
    <message>
        <source>пункт без координат, место условное</source>
        <translation>point without coordinates, its place is arbitrary</translation>
    </message>
    <message>
        <source>отключённая секция</source>
        <translation>section switched off</translation>
    </message>
    <message>
        <source>ошибка в протоколах</source>
        <translation>error in the protocols</translation>
    </message>
    <message>
        <source>предупреждение в протоколах</source>
        <translation>warning in the protocols</translation>
    </message>
    <message>
        <source>невязка больше допуска</source>
        <translation>misclosure over the limit</translation>
    </message>
    <message>
        <source>Координат нет: схема без масштаба</source>
        <translation>No coordinates: not to scale</translation>
    </message>
    <message>
        <source>В проекте нет ни одного пункта</source>
        <translation>The project has no point</translation>
    </message>
    <message>
        <source>Вся сеть</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Показать всю сеть (Home)</source>
        <translation>Show the whole network (Home)</translation>
    </message>
    <message>
        <source>Крупнее (+ или колесо мыши)</source>
        <translation>Larger (+ or the mouse wheel)</translation>
    </message>
    <message>
        <source>Мельче (− или колесо мыши)</source>
        <translation>Smaller (− or the mouse wheel)</translation>
    </message>
    <message>
        <source>К выделенному</source>
        <translation>To the selected</translation>
    </message>
    <message>
        <source>Показать выделенное посередине (пробел)</source>
        <translation>Show the selected item in the middle (Space)</translation>
    </message>
    <message>
        <source>Невязки</source>
        <translation>Misclosures</translation>
    </message>
    <message>
        <source>Показать ходы и полигоны с невязкой больше допуска</source>
        <translation>Show the lines and loops whose misclosure is over the limit</translation>
    </message>
    <message>
        <source>Сохранить схему в файл SVG или PDF</source>
        <translation>Save the picture as an SVG or PDF file</translation>
    </message>
    <message>
        <source>Печать…</source>
        <translation>Print…</translation>
    </message>
    <message>
        <source>Напечатать схему</source>
        <translation>Print the picture</translation>
    </message>
    <message>
        <source>Схема составляется…</source>
        <translation>The picture is being laid out…</translation>
    </message>
    <message>
        <source>Невязки вычисляются…</source>
        <translation>Misclosures are being computed…</translation>
    </message>
    <message>
        <source>Невязок больше допуска: %1</source>
        <translation>Misclosures over the limit: %1</translation>
    </message>
    <message>
        <source>подпись</source>
        <translation>signature</translation>
    </message>
    <message>
        <source>фамилия, инициалы</source>
        <translation>name</translation>
    </message>
    <message>
        <source>Выполнил</source>
        <translation>Performed by</translation>
    </message>
    <message>
        <source>Проверил</source>
        <translation>Checked by</translation>
    </message>
    <message>
        <source>Проект: %1, файл %2</source>
        <translation>Project: %1, file %2</translation>
    </message>
    <message>
        <source>Файлы измерений: %1</source>
        <translation>Files of measurements: %1</translation>
    </message>
    <message>
        <source>Файлы измерений: %1 и ещё %2</source>
        <translation>Files of measurements: %1 and %2 more</translation>
    </message>
    <message>
        <source>Сеть: пунктов %1, из них исходных реперов %2; секций %3</source>
        <translation>Network: points %1, of which benchmarks %2; sections %3</translation>
    </message>
    <message>
        <source>больше верхнего предела</source>
        <translation>above the upper limit</translation>
    </message>
    <message>
        <source>меньше нижнего предела</source>
        <translation>below the lower limit</translation>
    </message>
    <message>
        <source>в пределах</source>
        <translation>within the limits</translation>
    </message>
    <message>
        <source>поправки проверены τ-критерием Поупа, предел %1, предел предупреждения %2</source>
        <translation>residuals tested by Pope&apos;s τ, limit %1, warning limit %2</translation>
    </message>
    <message>
        <source>проверены нормированные поправки, предел %1, предел предупреждения %2</source>
        <translation>normalised residuals tested, limit %1, warning limit %2</translation>
    </message>
    <message>
        <source>%1: неизвестных %2, избыточных измерений %3</source>
        <translation>%1: unknowns %2, redundant measurements %3</translation>
    </message>
    <message>
        <source>%1; μ априорная %2&#xa0;мм, апостериорная не определяется</source>
        <translation>%1; σ₀ a priori %2&#xa0;mm, a posteriori not determined</translation>
    </message>
    <message>
        <source>%1; μ априорная %2&#xa0;мм, апостериорная %3&#xa0;мм, отношение %4 %5 %6 и %7 (критерий χ², доверительная вероятность %8); %9</source>
        <translation>%1; σ₀ a priori %2&#xa0;mm, a posteriori %3&#xa0;mm, ratio %4 %5 %6 and %7 (χ² test, confidence %8); %9</translation>
    </message>
    <message>
        <source>dd.MM.yyyy</source>
        <comment>date of a report</comment>
        <translation>yyyy-MM-dd</translation>
    </message>
    <message>
        <source>Дата: %1</source>
        <translation>Date: %1</translation>
    </message>
    <message>
        <source>Частей сети ещё: %1</source>
        <translation>Further parts of the network: %1</translation>
    </message>
    <message>
        <source>больше предела</source>
        <translation>over the limit</translation>
    </message>
    <message>
        <source>больше предела предупреждения</source>
        <translation>over the warning limit</translation>
    </message>
    <message>
        <source>Направление</source>
        <translation>Direction</translation>
    </message>
    <message>
        <source>Среднее, м</source>
        <translation>Mean, m</translation>
    </message>
    <message>
        <source>Ход %1: %2 – %3, %4</source>
        <translation>Line %1: %2 – %3, %4</translation>
    </message>
    <message>
        <source>прямо</source>
        <translation>forward</translation>
    </message>
    <message>
        <source>обратно</source>
        <translation>back</translation>
    </message>
    <message>
        <source>Секции стоят по ходам; «прямо» и среднее — в направлении хода, с весами 1/σ²; расхождение — наибольшее превышение в этом направлении минус наименьшее</source>
        <translation>Sections stand by lines; &quot;forward&quot; and the mean are in the direction of the line, with weights 1/σ²; the discrepancy is the largest difference in that direction less the smallest</translation>
    </message>
    <message>
        <source>Записывает уравненные высоты и их СКО в таблицу CSV или всю сеть с измерениями в файл .gkf, который читают другие программы уравнивания.</source>
        <translation>Writes the adjusted heights and their standard deviations to a CSV table, or the whole network with its measurements to a .gkf file, which other adjustment programs read.</translation>
    </message>
    <message>
        <source>Ведомости и печать</source>
        <translation>Reports and print</translation>
    </message>
    <message>
        <source>Протокол устарел: сеть изменена после этой обработки.</source>
        <translation>The protocol is out of date: the network was changed after this run.</translation>
    </message>
    <message>
        <source>%1; отключено секций %2</source>
        <translation>%1; sections switched off %2</translation>
    </message>
    <message>
        <source>Результаты устарели: сеть изменена после уравнивания. Уравняйте её заново.</source>
        <translation>The results are out of date: the network was changed after the adjustment. Adjust it again.</translation>
    </message>
    <message>
        <source>отключена</source>
        <translation>switched off</translation>
    </message>
    <message>
        <source>отключена: %1</source>
        <translation>switched off: %1</translation>
    </message>
    <message>
        <source>Вручную ничего не изменено</source>
        <translation>Nothing was changed by hand</translation>
    </message>
    <message>
        <source>Изменено вручную: %1</source>
        <translation>Changed by hand: %1</translation>
    </message>
    <message>
        <source>Изменено вручную</source>
        <translation>Changed by hand</translation>
    </message>
    <message>
        <source>Изменение</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>Отключены</source>
        <translation>Switched off</translation>
    </message>
    <message>
        <source>Гистограмма</source>
        <translation>Histogram</translation>
    </message>
    <message>
        <source>Поправки</source>
        <translation>Residuals</translation>
    </message>
    <message>
        <source>Прямо и обратно, повторно</source>
        <translation>Forward and back, repeated</translation>
    </message>
    <message>
        <source>1, 4, 10&#xa0;км (ст.)</source>
        <translation>1, 4, 10&#xa0;km (st.)</translation>
    </message>
    <message>
        <source>мм·√L</source>
        <translation>mm·√L</translation>
    </message>
    <message>
        <source>мм·√n</source>
        <translation>mm·√n</translation>
    </message>
    <message>
        <source>√L — по длине в км, √n — по числу станций</source>
        <translation>√L by the length in km, √n by the number of stations</translation>
    </message>
    <message>
        <source>Класс нивелирования: %1</source>
        <translation>Class of levelling: %1</translation>
    </message>
    <message>
        <source>не задана</source>
        <translation>not given</translation>
    </message>
    <message>
        <source>длина %1</source>
        <translation>length %1</translation>
    </message>
    <message>
        <source>СКО %1&#xa0;мм</source>
        <translation>standard deviation %1&#xa0;mm</translation>
    </message>
    <message>
        <source>превышение %1&#xa0;м вместо %2&#xa0;м</source>
        <translation>height difference %1&#xa0;m instead of %2&#xa0;m</translation>
    </message>
    <message>
        <source>длина %1 вместо %2</source>
        <translation>length %1 instead of %2</translation>
    </message>
    <message>
        <source>СКО %1&#xa0;мм вместо %2&#xa0;мм</source>
        <translation>standard deviation %1&#xa0;mm instead of %2&#xa0;mm</translation>
    </message>
    <message>
        <source>исходный репер, отметка %1&#xa0;м</source>
        <translation>benchmark, given height %1&#xa0;m</translation>
    </message>
    <message>
        <source>отметка %1&#xa0;м известна с ковариациями</source>
        <translation>height %1&#xa0;m known with covariances</translation>
    </message>
    <message>
        <source>определяемый пункт, приближённая высота %1&#xa0;м</source>
        <translation>new point, approximate height %1&#xa0;m</translation>
    </message>
    <message>
        <source>Пункт %1 изменён вручную: %2</source>
        <translation>Point %1 changed by hand: %2</translation>
    </message>
    <message>
        <source>%1 (было: %2)</source>
        <translation>%1 (before: %2)</translation>
    </message>
    <message>
        <source>Пункт %1 добавлен вручную: %2</source>
        <translation>Point %1 added by hand: %2</translation>
    </message>
    <message>
        <source>Секция %1 отключена, причина не указана</source>
        <translation>Section %1 switched off, no reason given</translation>
    </message>
    <message>
        <source>Секция %1 отключена: %2</source>
        <translation>Section %1 switched off: %2</translation>
    </message>
    <message>
        <source>Секция %1 изменена вручную: %2</source>
        <translation>Section %1 changed by hand: %2</translation>
    </message>
    <message>
        <source>Секция %1 добавлена вручную: %2</source>
        <translation>Section %1 added by hand: %2</translation>
    </message>
    <message>
        <source>Секция %1 удалена: %2</source>
        <translation>Section %1 deleted: %2</translation>
    </message>
    <message>
        <source>На с&amp;хеме</source>
        <translation>In the &amp;picture</translation>
    </message>
    <message>
        <source>Во время обработки сеть не меняется.</source>
        <translation>The network does not change while a run works.</translation>
    </message>
    <message>
        <source>Отметка «%1» — не число. Исходному реперу нужна отметка в метрах, как 123,4567.</source>
        <translation>The height “%1” is no number. A benchmark needs a height in metres, like 123.4567.</translation>
    </message>
    <message>
        <source>отметка %1</source>
        <translation>height of %1</translation>
    </message>
    <message>
        <source>Превышение «%1» — не число. Введите метры, как −1,2345.</source>
        <translation>The height difference “%1” is no number. Enter metres, like -1.2345.</translation>
    </message>
    <message>
        <source>превышение %1</source>
        <translation>height difference of %1</translation>
    </message>
    <message>
        <source>Длина «%1» — не число больше нуля. Введите километры, как 0,85.</source>
        <translation>The length “%1” is no number above zero. Enter kilometres, like 0.85.</translation>
    </message>
    <message>
        <source>СКО «%1» — не число больше нуля. Введите миллиметры, как 2,5.</source>
        <translation>The standard deviation “%1” is no number above zero. Enter millimetres, like 2.5.</translation>
    </message>
    <message>
        <source>СКО %1</source>
        <translation>standard deviation of %1</translation>
    </message>
    <message>
        <source>Результат устарел: сеть изменена после уравнивания</source>
        <translation>This result is out of date: the network was changed after the adjustment</translation>
    </message>
    <message>
        <source>Готово</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Отмена</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Отключаются измерения: выделите секции.</source>
        <translation>Measurements are switched off: select sections.</translation>
    </message>
    <message>
        <source>секций: %1</source>
        <translation>%1 sections</translation>
    </message>
    <message>
        <source>включение %1</source>
        <translation>switching on %1</translation>
    </message>
    <message>
        <source>Отключить измерения</source>
        <translation>Switch measurements off</translation>
    </message>
    <message>
        <source>Отключается %1. Почему (можно оставить пустым):</source>
        <translation>To be switched off: %1. Why (may stay empty):</translation>
    </message>
    <message>
        <source>отключение %1</source>
        <translation>switching off %1</translation>
    </message>
    <message>
        <source>СКО задаётся измерениям: выделите секции.</source>
        <translation>Measurements have standard deviations: select sections.</translation>
    </message>
    <message>
        <source>СКО измерений</source>
        <translation>Standard deviation of measurements</translation>
    </message>
    <message>
        <source>СКО выделенных секций (%1), мм:</source>
        <translation>Standard deviation of the selected sections (%1), mm:</translation>
    </message>
    <message>
        <source>СКО секций: %1</source>
        <translation>standard deviation of %1 sections</translation>
    </message>
    <message>
        <source>Отметка репера %1, м:</source>
        <translation>Height of the benchmark %1, m:</translation>
    </message>
    <message>
        <source>Исходный репер</source>
        <translation>Benchmark</translation>
    </message>
    <message>
        <source>«%1» — не число. Отметка репера %2 в метрах, как 123,4567:</source>
        <translation>“%1” is no number. Height of the benchmark %2 in metres, like 123.4567:</translation>
    </message>
    <message>
        <source>Исходными реперами становятся определяемые пункты: выделите их.</source>
        <translation>Points to be determined become benchmarks: select them.</translation>
    </message>
    <message>
        <source>исходный репер %1</source>
        <translation>benchmark %1</translation>
    </message>
    <message>
        <source>Исходному реперу нужна отметка, а у пункта %1 её нет. Сделайте его репером отдельно.</source>
        <translation>A benchmark needs a height, and point %1 has none. Make it a benchmark by itself.</translation>
    </message>
    <message>
        <source>исходные реперы: %1</source>
        <translation>%1 benchmarks</translation>
    </message>
    <message>
        <source>Освобождаются исходные реперы с удержанной отметкой: выделите их.</source>
        <translation>Benchmarks whose height is held are freed: select them.</translation>
    </message>
    <message>
        <source>реперов: %1</source>
        <translation>%1 benchmarks</translation>
    </message>
    <message>
        <source>освобождение %1</source>
        <translation>freeing %1</translation>
    </message>
    <message>
        <source>новое измерение %1</source>
        <translation>new measurement %1</translation>
    </message>
    <message>
        <source>Удаляются измерения: выделите секции.</source>
        <translation>Measurements are deleted: select sections.</translation>
    </message>
    <message>
        <source>удаление %1</source>
        <translation>deleting %1</translation>
    </message>
    <message>
        <source>Новое измерение</source>
        <translation>New measurement</translation>
    </message>
    <message>
        <source>&amp;От пункта:</source>
        <translation>&amp;From point:</translation>
    </message>
    <message>
        <source>&amp;До пункта:</source>
        <translation>&amp;To point:</translation>
    </message>
    <message>
        <source>&amp;Превышение, м:</source>
        <translation>&amp;Height difference, m:</translation>
    </message>
    <message>
        <source>&amp;Длина, км:</source>
        <translation>&amp;Length, km:</translation>
    </message>
    <message>
        <source>&amp;Станций:</source>
        <translation>&amp;Set-ups:</translation>
    </message>
    <message>
        <source>С&amp;КО, мм:</source>
        <translation>S&amp;tandard deviation, mm:</translation>
    </message>
    <message>
        <source>по длине или числу станций</source>
        <translation>by the length or the set-ups</translation>
    </message>
    <message>
        <source>Введите имена обоих пунктов.</source>
        <translation>Enter the names of both points.</translation>
    </message>
    <message>
        <source>Измерение ведёт от одного пункта к другому.</source>
        <translation>A measurement leads from one point to another.</translation>
    </message>
    <message>
        <source>Введите превышение в метрах, как −1,2345.</source>
        <translation>Enter the height difference in metres, like -1.2345.</translation>
    </message>
    <message>
        <source>Длина — число километров больше нуля, как 0,85.</source>
        <translation>The length is a number of kilometres above zero, like 0.85.</translation>
    </message>
    <message>
        <source>Станций — целое число больше нуля.</source>
        <translation>The set-ups are a whole number above zero.</translation>
    </message>
    <message>
        <source>СКО — число миллиметров больше нуля, как 2,5.</source>
        <translation>The standard deviation is a number of millimetres above zero, like 2.5.</translation>
    </message>
    <message>
        <source>Без веса измерение не уравнять: введите длину, число станций или СКО.</source>
        <translation>Without a weight a measurement cannot be adjusted: enter the length, the set-ups or the standard deviation.</translation>
    </message>
    <message>
        <source>Выполнить снова (Ctrl+R)</source>
        <translation>Run again (Ctrl+R)</translation>
    </message>
    <message>
        <source>Устарело, сеть или класс с тех пор изменены: %1</source>
        <translation>Out of date, the network or the class was changed since: %1</translation>
    </message>
    <message>
        <source>&amp;Отменить</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>&amp;Вернуть</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>%1 (устарело)</source>
        <translation>%1 (out of date)</translation>
    </message>
    <message>
        <source>&amp;Правка</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>&amp;Изменить значение</source>
        <translation>Edit the &amp;value</translation>
    </message>
    <message>
        <source>Превышение, длина и СКО секции, отметка исходного репера — прямо в таблице</source>
        <translation>Height difference, length and standard deviation of a section, height of a benchmark: in the table itself</translation>
    </message>
    <message>
        <source>О&amp;тключить или включить измерения</source>
        <translation>&amp;Switch measurements off or on</translation>
    </message>
    <message>
        <source>Отключённые секции остаются в проекте, но обработки о них не знают</source>
        <translation>Sections that are off stay in the project, but runs know nothing of them</translation>
    </message>
    <message>
        <source>&amp;СКО выделенных измерений…</source>
        <translation>Standard &amp;deviation of the selected measurements…</translation>
    </message>
    <message>
        <source>Сделать исходным &amp;репером…</source>
        <translation>Make a &amp;benchmark…</translation>
    </message>
    <message>
        <source>Осво&amp;бодить репер</source>
        <translation>&amp;Free the benchmark</translation>
    </message>
    <message>
        <source>&amp;Добавить измерение…</source>
        <translation>&amp;Add a measurement…</translation>
    </message>
    <message>
        <source>&amp;Удалить измерения</source>
        <translation>D&amp;elete the measurements</translation>
    </message>
    <message>
        <source>В&amp;ыполнить устаревшие снова</source>
        <translation>Run &amp;again what is out of date</translation>
    </message>
    <message>
        <source>Обработки, после которых сеть или класс изменены, одна за другой</source>
        <translation>The runs after which the network or the class was changed, one after the other</translation>
    </message>
    <message>
        <source>Сеть или класс изменены после этой обработки</source>
        <translation>The network or the class was changed after this run</translation>
    </message>
    <message>
        <source>Отключённые секции в файл не вошли, их %1: %2</source>
        <translation>Sections that are switched off are not in the file, %1 of them: %2</translation>
    </message>
    <message>
        <source>Панели</source>
        <translation>Panels</translation>
    </message>
    <message>
        <source>Ctrl+R — выполнить устаревшие обработки снова, Ctrl+J — окно выполнения, Ctrl+T — допуски</source>
        <translation>Ctrl+R — run again what is out of date, Ctrl+J — progress window, Ctrl+T — tolerances</translation>
    </message>
    <message>
        <source>F2 — изменить значение в таблице, F4 — отключить или включить выделенные секции, Ins — добавить измерение, Del — удалить выделенные, Ctrl+Z — отменить правку, Ctrl+Shift+Z или Ctrl+Y — вернуть её</source>
        <translation>F2 — edit the value in the table, F4 — switch the selected sections off or on, Ins — add a measurement, Del — delete the selected ones, Ctrl+Z — undo, Ctrl+Shift+Z or Ctrl+Y — redo</translation>
    </message>
    <message>
        <source>F8 и Shift+F8 — следующая и предыдущая ошибка, Ctrl+L или Enter — страница о выделенном, Ctrl и цифра — страница протокола, Ctrl+F — поиск, Ctrl+C — копировать строки</source>
        <translation>F8 and Shift+F8 — next and previous error, Ctrl+L or Enter — page about the selected item, Ctrl and a digit — page of a protocol, Ctrl+F — search, Ctrl+C — copy rows</translation>
    </message>
    <message>
        <source>Ctrl+Shift+N — схема сети, Ctrl+Shift+G — графики, F1 — эта справка</source>
        <translation>Ctrl+Shift+N — picture of the network, Ctrl+Shift+G — plots, F1 — this help</translation>
    </message>
    <message>
        <source>Ctrl+N — новый проект, Ctrl+O — открыть, Ctrl+S — сохранить, Ctrl+Shift+S — сохранить как, Ctrl+I — импорт, Ctrl+Shift+I — импорт по шаблону, Ctrl+E — экспорт, Ctrl+P — печать, Ctrl+Q — выход</source>
        <translation>Ctrl+N — new project, Ctrl+O — open, Ctrl+S — save, Ctrl+Shift+S — save as, Ctrl+I — import, Ctrl+Shift+I — import by a template, Ctrl+E — export, Ctrl+P — print, Ctrl+Q — quit</translation>
    </message>
    <message>
        <source>Клавиши</source>
        <translation>Keys</translation>
    </message>
    <message>
        <source>Правка сети</source>
        <translation>Changing the network</translation>
    </message>
    <message>
        <source>Сомнительные секции отключаются (F4): они остаются в проекте, но обработки о них не знают. Значения меняются прямо в таблице (F2), измерения добавляются и удаляются, пункты становятся исходными реперами и освобождаются; всё это можно отменить. Результаты и протоколы, после которых сеть изменена, названы устаревшими, Ctrl+R выполняет такие обработки снова.</source>
        <translation>Doubtful sections are switched off (F4): they stay in the project, but no run knows of them. Values are changed in the table itself (F2), measurements are added and deleted, points become benchmarks and are freed; all of it can be undone. Results and protocols after which the network was changed are said to be out of date; Ctrl+R runs these again.</translation>
    </message>
    <message>
        <source>Проекты</source>
        <translation>Projects</translation>
    </message>
    <message>
        <source>Рисунок SVG</source>
        <translation>SVG drawing</translation>
    </message>
    <message>
        <source>Документ PDF</source>
        <translation>PDF document</translation>
    </message>
    <message>
        <source>Листы для печати, PDF</source>
        <translation>Sheets to print, PDF</translation>
    </message>
    <message>
        <source>Страница, HTML</source>
        <translation>Page, HTML</translation>
    </message>
    <message>
        <source>В проекте нет ни одной секции, или все они отключены.</source>
        <translation>The project has no section, or all of them are switched off.</translation>
    </message>
    <message>
        <source>Каталог высот, ведомости поправок, ходов и секций открываются из меню «Ведомости»: с допусками, критериями и местом для подписей. Ctrl+P печатает ведомость, таблицу или строки протокола, как они показаны, схему сети или график или записывает их в PDF; на каждом листе — заголовок и номер.</source>
        <translation>The catalogue of heights and the lists of residuals, lines and sections open from the menu Reports: with tolerances, tests and a place for signatures. Ctrl+P prints a report, the table or the lines of a protocol as they are shown, the picture of the network or a plot, or writes them as PDF, with a head and a number on each sheet.</translation>
    </message>
    <message>
        <source>в проекте нет ни одного пункта</source>
        <translation>the project has no point</translation>
    </message>
    <message>
        <source>График, как показан</source>
        <translation>Plot, as shown</translation>
    </message>
    <message>
        <source>сейчас его нет на экране</source>
        <translation>it is not on the screen now</translation>
    </message>
    <message>
        <source>График «%1», как показан</source>
        <translation>Plot “%1”, as shown</translation>
    </message>
    <message>
        <source>Таких пунктов в сети ещё нет, они добавляются: %1</source>
        <translation>Points that the network does not have yet, and that are added: %1</translation>
    </message>
    <message>
        <source>Пунктов: %1, секций: %2 (отключено: %3), показано: %4</source>
        <translation>Points: %1, sections: %2 (off: %3), shown: %4</translation>
    </message>
    <message>
        <source>При замене пропадут и изменения, сделанные вручную: %1.</source>
        <translation>Replacing also loses what was changed by hand; number of changes: %1.</translation>
    </message>
    <message>
        <source>%1: в файле нет ни одного пункта, импортировать нечего</source>
        <translation>%1: there is no point in the file, nothing to be imported</translation>
    </message>
    <message>
        <source>не задано</source>
        <translation>not given</translation>
    </message>
    <message>
        <source>станций %1 вместо %2</source>
        <translation>set-ups %1 instead of %2</translation>
    </message>
    <message>
        <source>Станций «%1» — не целое число больше нуля, как 12.</source>
        <translation>The number of set-ups “%1” is not a whole number greater than zero, like 12.</translation>
    </message>
    <message>
        <source>число станций %1</source>
        <translation>number of set-ups %1</translation>
    </message>
</context>
<context>
    <name>ExceptionCatcher</name>
    <message>
        <source>Ошибка boost</source>
        <translation>Boost error</translation>
    </message>
    <message>
        <source>Системная ошибка</source>
        <translation>System error</translation>
    </message>
</context>
<context>
    <name>Host</name>
    <message>
        <source>Не удалось создать временную папку в «%1»: %2.</source>
        <translation>The temporary folder in “%1” could not be created: %2.</translation>
    </message>
    <message>
        <source>такой папки нет</source>
        <translation>there is no such folder</translation>
    </message>
    <message>
        <source>Файл не найден.</source>
        <translation>The file was not found.</translation>
    </message>
    <message>
        <source>Модуль не расширяет ни приложение, ни модель проекта, ни его окно.</source>
        <translation>The plug-in extends neither the application nor the project model nor its window.</translation>
    </message>
    <message>
        <source>Модуль не смог расширить приложение.</source>
        <translation>The plug-in could not extend the application.</translation>
    </message>
    <message>
        <source>Предупреждение</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>Файл повреждён: недопустимое содержимое.</source>
        <translation>The file is damaged: invalid content.</translation>
    </message>
    <message>
        <source>Не удалось открыть файл.</source>
        <translation>The file could not be opened.</translation>
    </message>
    <message>
        <source>Не удалось прочитать файл.</source>
        <translation>The file could not be read.</translation>
    </message>
    <message>
        <source>Не удалось записать файл.</source>
        <translation>The file could not be written.</translation>
    </message>
    <message>
        <source>Не удалось создать папку.</source>
        <translation>The folder could not be created.</translation>
    </message>
    <message>
        <source>Ошибка при работе с файлом (код %1).</source>
        <translation>Error with a file (code %1).</translation>
    </message>
    <message>
        <source>Не удалось записать данные: %1.</source>
        <translation>The data could not be written: %1.</translation>
    </message>
    <message>
        <source>Файл повреждён: данные обрываются раньше времени или недопустимы.</source>
        <translation>The file is damaged: its data ends early or is invalid.</translation>
    </message>
    <message>
        <source>значения типа «%1» не сохраняются</source>
        <translation>values of type “%1” cannot be saved</translation>
    </message>
    <message>
        <source>Неизвестная ошибка.</source>
        <translation>Unknown error.</translation>
    </message>
    <message>
        <source>Для выполнения операции не хватило памяти.</source>
        <translation>There was not enough memory for the operation.</translation>
    </message>
    <message>
        <source>Не удалось прочитать файл «%1»: %2.</source>
        <translation>The file “%1” could not be read: %2.</translation>
    </message>
    <message>
        <source>Не удалось записать файл «%1»: %2.</source>
        <translation>The file “%1” could not be written: %2.</translation>
    </message>
    <message>
        <source>Не удалось открыть файл «%1»: %2.</source>
        <translation>The file “%1” could not be opened: %2.</translation>
    </message>
    <message>
        <source>имя файла пусто</source>
        <translation>the file name is empty</translation>
    </message>
    <message>
        <source>такой способ открытия не поддерживается</source>
        <translation>this way of opening is not supported</translation>
    </message>
    <message>
        <source>Готово к выполнению</source>
        <translation>Ready to run</translation>
    </message>
    <message>
        <source>Останавливается…</source>
        <translation>Stopping…</translation>
    </message>
    <message>
        <source>Начато: %1</source>
        <translation>Started: %1</translation>
    </message>
    <message>
        <source>Остановлено</source>
        <translation>Stopped</translation>
    </message>
    <message>
        <source>Завершено с ошибками</source>
        <translation>Finished with errors</translation>
    </message>
    <message>
        <source>Завершено</source>
        <translation>Finished</translation>
    </message>
    <message>
        <source>Выполнение</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>Этап</source>
        <translation>Stage</translation>
    </message>
    <message>
        <source>Время с начала выполнения</source>
        <translation>Time since the start</translation>
    </message>
    <message>
        <source>Выполнено, в процентах</source>
        <translation>Done, per cent</translation>
    </message>
    <message>
        <source>Журнал</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>&amp;Остановить</source>
        <translation>&amp;Stop</translation>
    </message>
    <message>
        <source>П&amp;ауза</source>
        <translation>P&amp;ause</translation>
    </message>
    <message>
        <source>&amp;Протокол</source>
        <translation>&amp;Protocol</translation>
    </message>
    <message>
        <source>&amp;Закрыть</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>Показать протокол выполнения</source>
        <translation>Show the protocol of the run</translation>
    </message>
    <message>
        <source>Выполняется…</source>
        <translation>Running…</translation>
    </message>
    <message>
        <source>Выполнение ещё не закончено. Остановить его?</source>
        <translation>The run is not over yet. Stop it?</translation>
    </message>
    <message>
        <source>&amp;Продолжить</source>
        <translation>&amp;Continue</translation>
    </message>
    <message>
        <source>Пр&amp;одолжить</source>
        <translation>&amp;Resume</translation>
    </message>
    <message>
        <source>Приостановлено: %1</source>
        <translation>Paused: %1</translation>
    </message>
    <message>
        <source>Показаны последние строки, не более %1. Более ранние строки (%2) есть в протоколе, если обработка не остановлена.</source>
        <translation>The latest lines are shown, at most %1. Earlier lines (%2) are in the protocol unless the run was stopped.</translation>
    </message>
    <message>
        <source>строка из %1 знаков сокращена; полностью — в протоколе, если обработка не остановлена</source>
        <translation>a line of %1 characters was shortened; it is in the protocol in full unless the run was stopped</translation>
    </message>
    <message>
        <source>это ссылка другого пользователя в общей папке</source>
        <translation>it is a link of another user in a shared folder</translation>
    </message>
    <message>
        <source>С этим проектом уже работает другая обработка. Повторите, когда она закончится.</source>
        <translation>Another run is working on this project. Try again when it is over.</translation>
    </message>
    <message>
        <source>Идёт обработка. Откройте ссылку ещё раз, когда она закончится.</source>
        <translation>A run is working. Open the link again when it is over.</translation>
    </message>
    <message>
        <source>Файл «%1» не удалось прочитать. То, что в нём было, осталось в «%2».</source>
        <translation>The file “%1” could not be read. What it held is kept in “%2”.</translation>
    </message>
    <message>
        <source>Остановлено ошибкой</source>
        <translation>Stopped by an error</translation>
    </message>
    <message>
        <source>Не начато</source>
        <translation>Not started</translation>
    </message>
    <message>
        <source>нет прав доступа</source>
        <translation>no permission</translation>
    </message>
    <message>
        <source>такого файла или папки нет</source>
        <translation>there is no such file or folder</translation>
    </message>
    <message>
        <source>часть пути — файл, а не папка</source>
        <translation>a part of the path is a file, not a folder</translation>
    </message>
    <message>
        <source>это папка, а не файл</source>
        <translation>it is a folder, not a file</translation>
    </message>
    <message>
        <source>на диске нет места</source>
        <translation>no space is left on the disk</translation>
    </message>
    <message>
        <source>исчерпана дисковая квота</source>
        <translation>the disk quota is used up</translation>
    </message>
    <message>
        <source>файл слишком велик</source>
        <translation>the file is too large</translation>
    </message>
    <message>
        <source>диск доступен только для чтения</source>
        <translation>the disk is read-only</translation>
    </message>
    <message>
        <source>ошибка ввода-вывода</source>
        <translation>input/output error</translation>
    </message>
    <message>
        <source>имя слишком длинное</source>
        <translation>the name is too long</translation>
    </message>
    <message>
        <source>ссылки ведут по кругу</source>
        <translation>links lead in a circle</translation>
    </message>
    <message>
        <source>открыто слишком много файлов</source>
        <translation>too many files are open</translation>
    </message>
    <message>
        <source>система этого не разрешает</source>
        <translation>the system does not permit it</translation>
    </message>
    <message>
        <source>файл занят другой программой</source>
        <translation>another program uses the file</translation>
    </message>
    <message>
        <source>читающая программа закрыла канал</source>
        <translation>the reading program has closed the pipe</translation>
    </message>
    <message>
        <source>Строк журнала</source>
        <translation>Lines of the journal</translation>
    </message>
    <message>
        <source>Ошибок: %1, предупреждений: %2, сообщений: %3</source>
        <translation>Errors: %1, warnings: %2, messages: %3</translation>
    </message>
</context>
<context>
    <name>Orvel</name>
    <message>
        <source>Ошибки и предупреждения</source>
        <translation>Errors and warnings</translation>
    </message>
    <message>
        <source>Ведомости:</source>
        <translation>Reports:</translation>
    </message>
    <message>
        <source>Сообщения</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>Общие</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Проект: %1</source>
        <translation>Project: %1</translation>
    </message>
    <message>
        <source>Строки остановленной обработки в протокол не записаны. Его страница покажет прежнюю обработку, если она была.</source>
        <translation>The lines of a run that was stopped are not in the protocol. Its page will show the run before, if there was one.</translation>
    </message>
</context>
</TS>
