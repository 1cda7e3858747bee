#include "host/model/CModelElement.h"

#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "host/model/ItemTypes.h"
#include "host/model/ModelRevision.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr quint32 kMaxPropertyCount = 10000;

} // namespace

CModelElement::CModelElement(CModelElement* parentElement) : parent(parentElement)
{
    if (parent)
        parent->children.emplace_back(this);
}

CModelElement::CModelElement(const CModelElement& other)
    : ISubject(other)
    , CGuardedObject(other)
    , IIdentifiable(other)
    , IPropertyHolder(other)
    , id(other.id)
    , name(other.name)
    , properties(other.properties)
{}

CModelElement& CModelElement::operator=(const CModelElement& other)
{
    if (this == &other)
        return *this;
    id = other.id;
    name = other.name;
    properties = other.properties;
    modelrevision::advance();
    notify();
    return *this;
}

CModelElement::~CModelElement()
{
    for (const auto& child : children)
        child->parent = nullptr;
    if (parent)
        static_cast<void>(parent->takeChild(this).release()); // it is being destroyed already
}

int CModelElement::getType() const
{
    return kGeneralItemType;
}

void CModelElement::serialize(CQtArchive& archive)
{
    if (archive.isSaving()) {
        archive << id << name << static_cast<quint32>(properties.size());
        for (const auto& [propertyId, value] : properties)
            archive << propertyId << value;
        return;
    }

    LONGID loadedId = 0;
    QString loadedName;
    quint32 propertyCount = 0;
    archive >> loadedId >> loadedName >> propertyCount;
    if (propertyCount > kMaxPropertyCount)
        throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
    std::map<int, QVariant> loadedProperties;
    for (quint32 i = 0; i < propertyCount; ++i) {
        int propertyId = 0;
        QVariant value;
        archive >> propertyId >> value;
        loadedProperties.emplace(propertyId, value);
    }

    id = loadedId;
    name = loadedName;
    properties = std::move(loadedProperties);
    notify();
}

LONGID CModelElement::getId() const
{
    return id;
}

QVariant CModelElement::getProperty(int propertyId) const
{
    const auto found = properties.find(propertyId);
    return found == properties.end() ? QVariant() : found->second;
}

bool CModelElement::setProperty(int propertyId, const QVariant& value)
{
    if (value == getProperty(propertyId))
        return true;
    if (value.isValid())
        properties[propertyId] = value;
    else
        properties.erase(propertyId);
    notify();
    return true;
}

void CModelElement::setId(LONGID newId)
{
    if (newId == id)
        return;
    id = newId;
    notify();
}

QString CModelElement::getName() const
{
    return name;
}

void CModelElement::setName(const QString& newName)
{
    if (newName == name)
        return;
    name = newName;
    notify();
}

CModelElement* CModelElement::getParent() const
{
    return parent;
}

const CModelElement::Children& CModelElement::getChildren() const
{
    return children;
}

CModelElement* CModelElement::addChild(std::unique_ptr<CModelElement> child)
{
    if (!child)
        return nullptr;
    child->parent = this;
    return children.emplace_back(std::move(child)).get();
}

std::unique_ptr<CModelElement> CModelElement::takeChild(const CModelElement* child)
{
    // From the end: of many children the last ones are removed first.
    const auto found = std::find_if(children.rbegin(), children.rend(),
                                    [child](const auto& own) { return own.get() == child; });
    if (found == children.rend())
        return nullptr;
    std::unique_ptr<CModelElement> taken = std::move(*found);
    children.erase(std::prev(found.base()));
    taken->parent = nullptr;
    return taken;
}
