#include "host/files/CFileException.h"

#include <QCoreApplication>

namespace qor {

namespace {

const char* sourceText(int code)
{
    switch (code) {
    case CFileException::CorruptFile:
        return QT_TRANSLATE_NOOP("Host", "Файл повреждён: недопустимое содержимое.");
    case CFileException::CannotOpen:
        return QT_TRANSLATE_NOOP("Host", "Не удалось открыть файл.");
    case CFileException::CannotRead:
        return QT_TRANSLATE_NOOP("Host", "Не удалось прочитать файл.");
    case CFileException::CannotWrite:
        return QT_TRANSLATE_NOOP("Host", "Не удалось записать файл.");
    case CFileException::CannotCreateFolder:
        return QT_TRANSLATE_NOOP("Host", "Не удалось создать папку.");
    default:
        return QT_TRANSLATE_NOOP("Host", "Ошибка при работе с файлом (код %1).");
    }
}

std::wstring makeText(int code, const std::wstring& description)
{
    if (!description.empty())
        return description;
    QString text = QCoreApplication::translate("Host", sourceText(code));
    return text.replace(QStringLiteral("%1"), QString::number(code)).toStdWString();
}

} // namespace

CFileException::CFileException(int errorCode, const std::wstring& errorDescription)
    : Error(makeText(errorCode, errorDescription))
    , code(errorCode)
    , description(errorDescription)
{}

int CFileException::getCode() const
{
    return code;
}

std::wstring CFileException::getDescription() const
{
    return description;
}

} // namespace qor
