#pragma once

#include "host/model/ISubject.h"

#include <QStringList>

/// Notes in a common list when it is told of a change.
class RecordingObserver : public IObserver
{
public:
    RecordingObserver(QStringList* commonLog, const QString& ownName) : log(commonLog), name(ownName) {}

    void subjectChanged(const ISubject& /*subject*/) override { log->append(name); }

private:
    QStringList* log;
    QString name;
};
