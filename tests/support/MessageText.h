#pragma once

#include "Orvel/store/COVMessage.h"

#include <QString>
#include <QStringList>

#include <map>
#include <vector>

/// All fields of a message in one line, "ptype=1 mtype=5 stage=0 ids=5,7 types=2,3 text=…", so that a failed
/// comparison shows what differs.
QString describe(const COVMessage& message);

/// One line per message, in the order of the store.
QStringList describe(const std::map<int, std::vector<COVMessage>>& store);

/// The text with every date and time, like "31.12.2020 23:59:59", made "DATE".
QString withoutDates(QString text);

/// The text as XML can carry it: lone surrogates, U+FFFE and U+FFFF become U+FFFD.
QString carried(QString text);
