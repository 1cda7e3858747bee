#pragma once

#include "levelling/TableTemplate.h"

#include <QStringList>
#include <QWizard>

namespace orvel::desk {

class TemplateColumnsPage;
class TemplateFilePage;
class TemplateNamePage;

/// Leads from a text file to the template that it is imported by: which file and which kept template to
/// begin with, what the columns hold, and under which name the template is kept.
class TemplateWizard : public QWizard
{
    Q_OBJECT

public:
    explicit TemplateWizard(const QStringList& files, QWidget* parent = nullptr);

    /// The files, which are all read by the same template.
    QStringList getFiles() const;
    const levelling::TableTemplate& getFormat() const { return format; }

    void accept() override;

private:
    friend class TemplateFilePage;
    friend class TemplateColumnsPage;
    friend class TemplateNamePage;

    levelling::TableTemplate format;
    QByteArray beginning; // of the first file
    TemplateFilePage* filePage;
    TemplateColumnsPage* columnsPage;
    TemplateNamePage* namePage;
};

} // namespace orvel::desk
