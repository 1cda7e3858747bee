#include "host/delegates/ItemDelegateFactory.h"

ItemDelegateFactory* ItemDelegateFactory::s_instance = nullptr;

ItemDelegateFactory::ItemDelegateFactory(QObject* parent) : QObject(parent)
{
    Q_ASSERT(s_instance == nullptr);
    s_instance = this;
}

ItemDelegateFactory::~ItemDelegateFactory()
{
    if (s_instance == this)
        s_instance = nullptr;
}

ItemDelegateFactory* ItemDelegateFactory::instance()
{
    return s_instance;
}

bool ItemDelegateFactory::registerExtension(int delegateId, std::unique_ptr<IDelegateCreator> creator)
{
    return creator != nullptr && creators.emplace(delegateId, std::move(creator)).second;
}

QAbstractItemDelegate* ItemDelegateFactory::createDelegate(int delegateId, CProjectModel* model,
                                                           int propertyId, QObject* parent) const
{
    const auto found = creators.find(delegateId);
    if (found == creators.end())
        return nullptr;
    return found->second->createDelegate(delegateId, model, propertyId, parent);
}
