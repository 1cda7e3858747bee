#include "apps/desk/document/StateDigest.h"

#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"

#include <cstring>

namespace orvel::desk {

namespace statedigest {

namespace {

/// Makes one number of many values. It stands in project files: the hashes of Qt and of the standard library
/// differ from process to process.
class Digest
{
public:
    Digest& add(quint64 value)
    {
        // The steps of splitmix64.
        number += value + 0x9e3779b97f4a7c15U;
        number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9U;
        number = (number ^ (number >> 27U)) * 0x94d049bb133111ebU;
        number ^= number >> 31U;
        return *this;
    }

    Digest& add(LONGID value) { return add(static_cast<quint64>(value)); }
    Digest& add(int value) { return add(static_cast<quint64>(value)); }
    Digest& add(bool value) { return add(value ? 1 : 0); }

    Digest& add(double value)
    {
        // Both zeros are one.
        const double known = value + 0.0;
        quint64 bits = 0;
        std::memcpy(&bits, &known, sizeof bits);
        return add(bits);
    }

    Digest& add(const QString& text)
    {
        for (const QChar character : text)
            add(static_cast<int>(character.unicode()));
        return add(text.size());
    }

    template<typename Value>
    Digest& add(const std::optional<Value>& value)
    {
        add(value.has_value());
        return value ? add(*value) : *this;
    }

    Digest& add(const ToleranceRule& rule) { return add(static_cast<int>(rule.measure)).add(rule.factor); }

    quint64 get() const { return number; }

private:
    quint64 number = 0;
};

quint64 ofPoint(LONGID id, const levelling::Point& point)
{
    return Digest().add(id).add(point.height).add(point.fixed).add(point.observed).get();
}

/// The protocol of an adjustment tells why a section is switched off.
quint64 ofSection(LONGID id, const levelling::Section& section, const SectionHandPointer& hand)
{
    Digest digest;
    digest.add(id)
        .add(section.difference)
        .add(section.distance)
        .add(section.stdev)
        .add(section.sigma)
        .add(section.stations)
        .add(hand && hand->isOff);
    if (hand && hand->isOff)
        digest.add(hand->offReason);
    return digest.get();
}

template<typename Item>
quint64 sum(const std::vector<NetworkChange::Placed<Item>>& placed)
{
    quint64 number = 0;
    for (const auto& each : placed)
        number += of(*each.item);
    return number;
}

} // namespace

quint64 of(const LevellingPoint& item)
{
    return ofPoint(item.getId(), item.getPoint());
}

quint64 of(const LevellingSection& item)
{
    return ofSection(item.getId(), item.getSection(), item.getHand());
}

quint64 of(const NetworkChange& change)
{
    quint64 number = sum(change.addedPoints) + sum(change.addedSections) - sum(change.removedPoints) -
                     sum(change.removedSections);
    for (const auto& edit : change.pointEdits)
        number += ofPoint(edit.id, edit.after.point) - ofPoint(edit.id, edit.before.point);
    for (const auto& edit : change.sectionEdits)
        number += ofSection(edit.id, edit.after.section, edit.after.hand) -
                  ofSection(edit.id, edit.before.section, edit.before.hand);
    return number;
}

quint64 of(const SurveyRules& rules)
{
    const ClassTolerances& limits = rules.tolerances.of(rules.levellingClass);
    return Digest()
        .add(static_cast<int>(rules.levellingClass))
        .add(limits.loops)
        .add(limits.repeated)
        .add(rules.tolerances.sigmaLimit)
        .add(ofTests(rules.tolerances))
        .get();
}

quint64 ofTests(const ToleranceRules& rules)
{
    return Digest().add(rules.confidence).add(rules.heightDecimals).add(rules.millimetreDecimals).get();
}

} // namespace statedigest

} // namespace orvel::desk
