#pragma once

#include "host/delegates/IDelegateCreator.h"
#include "host/host_export.h"

#include <QObject>

#include <map>
#include <memory>

/// Makes item delegates by their ids. An application that has tables makes one factory.
class HOST_EXPORT ItemDelegateFactory : public QObject
{
    Q_OBJECT

public:
    /// The application's factory from now on; @p parent owns it.
    explicit ItemDelegateFactory(QObject* parent = nullptr);
    ~ItemDelegateFactory() override;

    /// The application's factory; null when there is none.
    static ItemDelegateFactory* instance();

    /// Registers the creator of the delegates of @p delegateId.
    /// @return false, and the creator is destroyed, when it is null or the id has one already
    bool registerExtension(int delegateId, std::unique_ptr<IDelegateCreator> creator);
    /// Makes a delegate, owned by @p parent; null for an id without a creator.
    QAbstractItemDelegate* createDelegate(int delegateId, CProjectModel* model, int propertyId,
                                          QObject* parent) const;

private:
    static ItemDelegateFactory* s_instance;

    std::map<int, std::unique_ptr<IDelegateCreator>> creators;
};
