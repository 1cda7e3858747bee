#include "host/files/CQtArchive.h"

#include "host/files/CFileException.h"

#include <QCoreApplication>
#include <QIODevice>

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
    return load(value);
}

template<class T>
CQtArchive& CQtArchive::save(const T& value)
{
    stream << value;
    if (stream.status() != QDataStream::Ok) {
        throw qor::CFileException(qor::CFileException::CannotWrite,
                                  QCoreApplication::translate("Host", "Не удалось записать данные: %1.")
                                      .arg(stream.device()->errorString())
                                      .toStdWString());
    }
    return *this;
}

template<class T>
CQtArchive& CQtArchive::load(T& value)
{
    stream >> value;
    if (stream.status() != QDataStream::Ok) {
        throw qor::CFileException(
            qor::CFileException::CorruptFile,
            QCoreApplication::translate(
                "Host", "Файл повреждён: данные обрываются раньше времени или не могут быть верными.")
                .toStdWString());
    }
    return *this;
}
