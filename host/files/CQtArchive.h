#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <QByteArray>
#include <QDataStream>
#include <QString>
#include <QVariant>

class QIODevice;

/// Saves values to a device or loads them back, in the same order. Numbers are big-endian; texts, byte arrays
/// and variants are written as QDataStream of version 5.15 does. A variant may hold a bool, a number, a text,
/// a byte array, a date or a time, or nothing.
///
/// Every operator throws qor::CFileException: with code CannotWrite when a write fails or a variant holds
/// something else, with code CorruptFile when the data ends early or makes no sense. An archive that saves is
/// not to be read from, and the reverse.
class HOST_EXPORT CQtArchive
{
public:
    /// Which way the values go.
    enum Mode { Save, Load };

    /// The device is not owned and must be open.
    CQtArchive(QIODevice* archiveDevice, Mode archiveMode);
    CQtArchive(const CQtArchive&) = delete;
    CQtArchive& operator=(const CQtArchive&) = delete;

    bool isSaving() const; ///< True for an archive that was made to save.

    /// @{
    /// Saves a value.
    /// @throws qor::CFileException when the device does not take it
    CQtArchive& operator<<(quint32 value);
    CQtArchive& operator<<(qint32 value);
    CQtArchive& operator<<(LONGID value);
    CQtArchive& operator<<(double value);
    CQtArchive& operator<<(bool value);
    CQtArchive& operator<<(const QString& value);
    CQtArchive& operator<<(const QByteArray& value);
    CQtArchive& operator<<(const QVariant& value);
    /// @}
    /// A pointer would be saved as a bool.
    template<class T>
    CQtArchive& operator<<(const T* value) = delete;

    /// @{
    /// Loads a value.
    /// @throws qor::CFileException when the data ends early or makes no sense
    CQtArchive& operator>>(quint32& value);
    CQtArchive& operator>>(qint32& value);
    CQtArchive& operator>>(LONGID& value);
    CQtArchive& operator>>(double& value);
    CQtArchive& operator>>(bool& value);
    CQtArchive& operator>>(QString& value);
    CQtArchive& operator>>(QByteArray& value);
    CQtArchive& operator>>(QVariant& value);
    /// @}

private:
    template<class T>
    CQtArchive& save(const T& value);
    template<class T>
    CQtArchive& load(T& value);

    QDataStream stream;
    Mode mode;
};
