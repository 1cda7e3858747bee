#include "host/files/RandomName.h"

#include <QRandomGenerator>

namespace randomname {

QString make()
{
    const QString characters = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
    QString name;
    for (int i = 0; i < kLength; ++i)
        name += characters.at(QRandomGenerator::system()->bounded(characters.size()));
    return name;
}

} // namespace randomname
