#include "apps/desk/gui/TableOrder.h"

#include "apps/desk/gui/ItemColumns.h"

#include <QCollator>
#include <QHash>

#include <algorithm>
#include <limits>
#include <numeric>

namespace orvel::desk {

namespace tableorder {

namespace {

/// A text as the collator wants it.
using Key = std::variant<double, QCollatorSortKey>;

// The locale of a system that was told none sorts by code alone.
QCollator makeCollator()
{
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::Russian) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

/// Makes keys one after the other; texts in succession that are the same share theirs.
class KeyMaker
{
public:
    Key make(const Value& value)
    {
        if (const auto* number = std::get_if<double>(&value))
            return *number;
        const auto* text = std::get_if<QString>(&value);
        if (!text)
            return 0.0;
        if (!lastKey || *text != lastText) {
            lastText = *text;
            lastKey = collator.sortKey(*text);
        }
        return *lastKey;
    }

private:
    const QCollator collator = makeCollator();
    QString lastText;
    std::optional<QCollatorSortKey> lastKey;
};

QString fold(const Value& value)
{
    const auto* text = std::get_if<QString>(&value);
    return text ? text->toCaseFolded() : QString();
}

std::vector<int> findRows(const Task& task)
{
    std::vector<int> rows(static_cast<std::size_t>(task.rowCount));
    std::iota(rows.begin(), rows.end(), 0);
    if (task.wantedTraits != 0) {
        const auto isOther = [&](int row) {
            return !hasTraits((*task.traits)[static_cast<std::size_t>(row)], task.wantedTraits);
        };
        rows.erase(std::remove_if(rows.begin(), rows.end(), isOther), rows.end());
    }
    for (const QString& word : task.words) {
        std::vector<bool> isKindFound;
        for (const QString& kind : task.texts->kinds)
            isKindFound.push_back(kind.contains(word));
        const auto isMissing = [&](int row) {
            const auto place = static_cast<std::size_t>(row);
            return !isKindFound[static_cast<std::size_t>(task.texts->kindOfRow[place])] &&
                   !task.texts->names[place].contains(word);
        };
        rows.erase(std::remove_if(rows.begin(), rows.end(), isMissing), rows.end());
    }
    return rows;
}

} // namespace

QStringList makeWords(const QString& text)
{
    return text.simplified().toCaseFolded().split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool hasTraits(int traits, int wanted)
{
    return (traits & wanted) == wanted;
}

bool isFound(const QStringList& words, const Value& name, const Value& kind)
{
    const QString foldedName = fold(name);
    const QString foldedKind = fold(kind);
    return std::all_of(words.begin(), words.end(), [&](const QString& word) {
        return foldedName.contains(word) || foldedKind.contains(word);
    });
}

Ranks makeRanks(const Values& values)
{
    KeyMaker keyMaker;
    std::vector<Key> keys;
    keys.reserve(values.size());
    std::vector<std::size_t> rows;
    for (const Value& value : values) {
        if (!std::holds_alternative<std::monostate>(value))
            rows.push_back(keys.size());
        keys.push_back(keyMaker.make(value));
    }
    std::sort(rows.begin(), rows.end(),
              [&keys](std::size_t left, std::size_t right) { return keys[left] < keys[right]; });
    Ranks ranks(values.size());
    int rank = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && keys[rows[i - 1]] < keys[rows[i]])
            ++rank;
        ranks[rows[i]] = rank;
    }
    return ranks;
}

SearchTexts makeSearchTexts(const Values& names, const Values& kinds)
{
    SearchTexts texts;
    texts.names.reserve(names.size());
    std::transform(names.begin(), names.end(), std::back_inserter(texts.names), fold);
    QHash<QString, int> indexOfKind;
    texts.kindOfRow.reserve(kinds.size());
    for (const Value& kind : kinds) {
        const auto* text = std::get_if<QString>(&kind);
        const QString key = text ? *text : QString();
        auto known = indexOfKind.find(key);
        if (known == indexOfKind.end()) {
            known = indexOfKind.insert(key, texts.kinds.size());
            texts.kinds.append(fold(kind));
        }
        texts.kindOfRow.push_back(*known);
    }
    return texts;
}

std::vector<int> arrange(Task& task)
{
    if (!task.words.isEmpty() && !task.texts)
        task.texts = std::make_shared<const SearchTexts>(
            makeSearchTexts(task.values[itemcolumns::Name], task.values[itemcolumns::Type]));
    if (task.sortColumn >= 0 && !task.ranks)
        task.ranks = std::make_shared<const Ranks>(makeRanks(task.values[task.sortColumn]));
    task.values.clear();
    std::vector<int> rows = findRows(task);
    if (task.sortColumn < 0)
        return rows;
    const int sign = task.direction == Qt::AscendingOrder ? 1 : -1;
    const auto place = [&ranks = *task.ranks, sign](int row) {
        const std::optional<int>& rank = ranks[static_cast<std::size_t>(row)];
        return rank ? sign * *rank : std::numeric_limits<int>::max();
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&place](int left, int right) { return place(left) < place(right); });
    return rows;
}

} // namespace tableorder

} // namespace orvel::desk
