#include "host/files/CQtArchive.h"

#include "host/files/CFileException.h"
#include "host/files/StringUtils.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QtEndian>

namespace {

/// Whether variants of that QMetaType are saved. Containers are not: those of a damaged file can ask for any
/// amount of memory, or be nested until the stack overflows.
bool isPlainType(quint32 type)
{
    switch (type) {
    case QMetaType::UnknownType:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return true;
    default:
        return false;
    }
}

[[noreturn]] void failSaving(const QString& reason)
{
    throw qor::CFileException(
        qor::CFileException::CannotWrite,
        QCoreApplication::translate("Host", "Не удалось записать данные: %1.").arg(reason).toStdWString());
}

[[noreturn]] void failLoading()
{
    throw qor::CFileException(qor::CFileException::CorruptFile,
                              QCoreApplication::translate(
                                  "Host", "Файл повреждён: данные обрываются раньше времени или недопустимы.")
                                  .toStdWString());
}

} // namespace

CQtArchive::CQtArchive(QIODevice* archiveDevice, Mode archiveMode) : stream(archiveDevice), mode(archiveMode)
{
    stream.setVersion(QDataStream::Qt_5_15);
}

bool CQtArchive::isSaving() const
{
    return mode == Save;
}

CQtArchive& CQtArchive::operator<<(quint32 value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(qint32 value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(LONGID value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(double value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(bool value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(const QString& value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(const QByteArray& value)
{
    return save(value);
}

CQtArchive& CQtArchive::operator<<(const QVariant& value)
{
    if (!isPlainType(static_cast<quint32>(value.userType()))) {
        failSaving(QCoreApplication::translate("Host", "значения типа «%1» не сохраняются")
                       .arg(QString::fromLatin1(value.typeName())));
    }
    return save(value);
}

CQtArchive& CQtArchive::operator>>(quint32& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(qint32& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(LONGID& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(double& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(bool& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(QString& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(QByteArray& value)
{
    return load(value);
}

CQtArchive& CQtArchive::operator>>(QVariant& value)
{
    quint32 type = QMetaType::UnknownType;
    const QByteArray typeBytes = stream.device()->peek(sizeof(type));
    if (typeBytes.size() == sizeof(type))
        type = qFromBigEndian<quint32>(typeBytes.constData());
    if (!isPlainType(type))
        failLoading();
    return load(value);
}

template<class T>
CQtArchive& CQtArchive::save(const T& value)
{
    stream << value;
    if (stream.status() != QDataStream::Ok)
        failSaving(utils::describeReason(stream.device()->errorString()));
    return *this;
}

template<class T>
CQtArchive& CQtArchive::load(T& value)
{
    stream >> value;
    if (stream.status() != QDataStream::Ok)
        failLoading();
    return *this;
}
