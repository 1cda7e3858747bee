#include "host/files/StringUtils.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cerrno>

namespace utils {

namespace {

struct Reason
{
    int code;
    const char* text;
};

constexpr std::array kReasons{
    Reason{EACCES, QT_TRANSLATE_NOOP("Host", "нет прав доступа")},
    Reason{ENOENT, QT_TRANSLATE_NOOP("Host", "такого файла или папки нет")},
    Reason{ENOTDIR, QT_TRANSLATE_NOOP("Host", "часть пути — файл, а не папка")},
    Reason{EISDIR, QT_TRANSLATE_NOOP("Host", "это папка, а не файл")},
    Reason{ENOSPC, QT_TRANSLATE_NOOP("Host", "на диске нет места")},
    Reason{EDQUOT, QT_TRANSLATE_NOOP("Host", "исчерпана дисковая квота")},
    Reason{EFBIG, QT_TRANSLATE_NOOP("Host", "файл слишком велик")},
    Reason{EROFS, QT_TRANSLATE_NOOP("Host", "диск доступен только для чтения")},
    Reason{EIO, QT_TRANSLATE_NOOP("Host", "ошибка ввода-вывода")},
    Reason{ENAMETOOLONG, QT_TRANSLATE_NOOP("Host", "имя слишком длинное")},
    Reason{ELOOP, QT_TRANSLATE_NOOP("Host", "ссылки ведут по кругу")},
    Reason{EMFILE, QT_TRANSLATE_NOOP("Host", "открыто слишком много файлов")},
    Reason{EPERM, QT_TRANSLATE_NOOP("Host", "система этого не разрешает")},
    Reason{EBUSY, QT_TRANSLATE_NOOP("Host", "файл занят другой программой")},
    Reason{ETXTBSY, QT_TRANSLATE_NOOP("Host", "файл занят другой программой")},
    Reason{EPIPE, QT_TRANSLATE_NOOP("Host", "читающая программа закрыла канал")},
};

// Qt's own word for it, in Qt's translations.
constexpr const char* kOpenedFolder = "file to open is a directory";

/// The error that the system's text, in its own language, or Qt's stands for; 0 if it is not known.
int findCode(const QString& systemText)
{
    if (systemText == QCoreApplication::translate("QIODevice", kOpenedFolder))
        return EISDIR;
    const auto* const found = std::find_if(kReasons.begin(), kReasons.end(), [&](const Reason& reason) {
        return systemText == qt_error_string(reason.code);
    });
    return found == kReasons.end() ? 0 : found->code;
}

} // namespace

QString toUpperFirst(const QString& text)
{
    const bool startsWithPair =
        text.size() > 1 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate();
    const int length = startsWithPair ? 2 : 1;
    return text.left(length).toUpper() + text.mid(length);
}

QString escapeControls(const QString& text)
{
    QString line;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (character == QLatin1Char('\n'))
            line += QLatin1String("\\n");
        else if (character == QLatin1Char('\t'))
            line += QLatin1String("\\t");
        else if (character.category() == QChar::Other_Control)
            line += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else if (character.category() == QChar::Other_Format ||
                 character.category() == QChar::Separator_Line ||
                 character.category() == QChar::Separator_Paragraph)
            line += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            line += character;
    }
    return line;
}

QString describeReason(const QString& systemText)
{
    const int code = findCode(systemText);
    for (const Reason& reason : kReasons) {
        if (reason.code == code)
            return QCoreApplication::translate("Host", reason.text);
    }
    return systemText;
}

} // namespace utils
