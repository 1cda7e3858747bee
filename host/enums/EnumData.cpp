#include "host/enums/EnumData.h"

#include "host/model/ModelRevision.h"

#include <QString>

#include <mutex>
#include <unordered_map>

namespace {

struct Registry
{
    std::mutex mutex;
    std::unordered_map<int, EnumData> records;
};

/// Made on first use, so that it is there for the static initializers of other libraries.
Registry& getRegistry()
{
    static Registry registry;
    return registry;
}

} // namespace

EnumData::EnumData(int enumValue, const std::string& internal, const std::string& singular,
                   const std::string& plural)
    : value(enumValue)
    , textInternal(internal)
    , textSingular(singular)
    , textPlural(plural)
{}

int EnumData::getValue() const
{
    return value;
}

std::string EnumData::getTextInternal() const
{
    return textInternal;
}

std::wstring EnumData::getTextSingular() const
{
    return QString::fromStdString(textSingular).toStdWString();
}

std::wstring EnumData::getTextPlural() const
{
    return QString::fromStdString(textPlural).toStdWString();
}

void registerEnumData(const EnumData& record)
{
    Registry& registry = getRegistry();
    const std::lock_guard lock(registry.mutex);
    registry.records.insert_or_assign(record.getValue(), record);
    modelrevision::advance();
}

EnumData getEnumData(int value)
{
    Registry& registry = getRegistry();
    const std::lock_guard lock(registry.mutex);
    const auto found = registry.records.find(value);
    return found == registry.records.end() ? EnumData(value, {}, {}, {}) : found->second;
}
