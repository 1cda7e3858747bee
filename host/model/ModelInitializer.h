#pragma once

#include "host/host_export.h"

#include <QObject>

class CProjectModel;

/// Fills a new project model with what a subsystem needs in it. The base adds nothing.
class HOST_EXPORT ModelInitializer : public QObject
{
    Q_OBJECT

public:
    /// The model becomes the QObject parent.
    explicit ModelInitializer(CProjectModel* projectModel);
    ~ModelInitializer() override;

    CProjectModel* getModel() const; ///< The model that it was made for.

    /// Adds the subsystem's system items.
    virtual void initSystemItems();
    /// Connects them with each other and with those of other subsystems, which all exist by then.
    virtual void initSubsystemRelations();

private:
    CProjectModel* model;
};
