#include "host/files/ErrorMessageProcessor.h"

#include <QCoreApplication>
#include <QTextCodec>

namespace qor {

namespace {

QString decode(const std::string& message)
{
    QTextCodec::ConverterState state;
    const QString text = QTextCodec::codecForName("UTF-8")->toUnicode(
        message.data(), static_cast<int>(message.size()), &state);
    const bool isUtf8 = state.invalidChars == 0 && state.remainingChars == 0;
    return isUtf8 ? text : QString::fromLocal8Bit(message.data(), static_cast<int>(message.size()));
}

std::wstring process(const QString& message)
{
    const QString text = message.trimmed();
    return text.isEmpty() ? QCoreApplication::translate("Host", "Неизвестная ошибка.").toStdWString()
                          : text.toStdWString();
}

} // namespace

std::wstring ErrorMessageProcessor::getBadAllocText()
{
    return QCoreApplication::translate("Host", "Для выполнения операции не хватило памяти.").toStdWString();
}

std::wstring ErrorMessageProcessor::processMessage(const std::string& message)
{
    return process(decode(message));
}

std::wstring ErrorMessageProcessor::processMessage(const std::wstring& message)
{
    return process(QString::fromStdWString(message));
}

} // namespace qor
