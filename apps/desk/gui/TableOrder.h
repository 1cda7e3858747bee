#pragma once

#include <QString>
#include <QStringList>
#include <Qt>

#include <map>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace orvel::desk {

/// Which rows of the item table are shown, and in which order: computed from plain values, in any thread.
namespace tableorder {

/// What stands in a cell: nothing, a number or a text.
using Value = std::variant<std::monostate, double, QString>;
using Values = std::vector<Value>; ///< of a column, by row

/// Where a row stands by the values of a column. Equal values have equal ranks, empty cells none.
using Ranks = std::vector<std::optional<int>>;

/// What a search looks at, as case does not matter to it.
struct SearchTexts
{
    std::vector<QString> names; ///< by row
    std::vector<int> kindOfRow; ///< by row, an index of `kinds`
    QStringList kinds;
};

/// What each row can be chosen by: bits.
using Traits = std::vector<int>;

/// What an order is made of. Ranks and texts that are not there yet are made of the columns' values.
struct Task
{
    int rowCount = 0;
    Qt::SortOrder direction = Qt::AscendingOrder;
    QStringList words;                        ///< of the search, by makeWords()
    int sortColumn = -1;                      ///< -1 for none
    std::shared_ptr<const Ranks> ranks;       ///< of that column
    std::shared_ptr<const SearchTexts> texts; ///< if there are words
    int wantedTraits = 0;                     ///< that a row must have all of
    std::shared_ptr<const Traits> traits;     ///< if any are wanted
    std::map<int, Values> values;             ///< of columns
};

/// The words of a search text, as case does not matter to it.
QStringList makeWords(const QString& text);
/// Whether a row with such traits has all that are wanted.
bool hasTraits(int traits, int wanted);
/// Whether each of the words stands in the name or in the kind.
bool isFound(const QStringList& words, const Value& name, const Value& kind);

/// Names are ranked as people count ("2" before "10"), by the rules of the language.
Ranks makeRanks(const Values& values);
SearchTexts makeSearchTexts(const Values& names, const Values& kinds);
/// The rows that are found, sorted. Empty cells stand last in either direction, and equal ones as in the
/// file. The task keeps the ranks and texts that were made, and gives up the values.
std::vector<int> arrange(Task& task);

} // namespace tableorder

} // namespace orvel::desk
