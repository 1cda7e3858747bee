#pragma once

#include "Orvel/store/COVMessage.h"

#include <QString>

#include <map>
#include <vector>

class CProjectModel;

/// Protocol lines as a levelling run writes them: Russian texts that link two points each, about 400 bytes a
/// message in the data file. The same number gives the same lines every time.
namespace orvel::bench::sample {

using MessageStore = std::map<int, std::vector<COVMessage>>;

/// URI scheme of the links.
QString getScheme();
QString getProjectName();

/// Registers the item types with their names; to be done before a protocol is made.
void registerItemTypes();

/// Adds the points that `lineCount` lines link: a quarter as many.
void addPoints(int lineCount, CProjectModel& model);

/// Lines as a run hands them to intake. Every 40th has a line break.
std::vector<QString> makeLines(int count);

/// The messages of one run: half of them plain, 30 % warnings, 15 % errors, the rest service lines. Those of
/// an adjustment stand in three stages with a heading each.
MessageStore makeMessages(int protocolType, int count);

/// Kind of the line with that number.
COVMessage::MessageType getKind(int number);

/// A line that is nothing but `size` bytes of beginnings of links.
QString makeHostileLine(int size);

} // namespace orvel::bench::sample
