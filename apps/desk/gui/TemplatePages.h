#pragma once

#include "apps/desk/gui/TemplateWizard.h"
#include "apps/desk/templates/TemplateFolder.h"

#include <QWizardPage>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;
class QTableView;

namespace orvel::desk {

class RoleHeader;
class TablePreviewModel;

/// Which file, and which template to begin with.
class TemplateFilePage : public QWizardPage
{
    Q_OBJECT

public:
    TemplateFilePage(TemplateWizard& templateWizard, const QStringList& files);

    QStringList getFiles() const { return paths; }
    bool isComplete() const override;
    bool validatePage() override;

private:
    void chooseFiles();
    void takeText(const QString& text);
    void fillTemplates();
    void forgetTemplate();
    void updateState();

    TemplateWizard& wizard;
    QStringList paths;
    std::vector<templatefolder::KeptTemplate> kept;
    QLineEdit* pathField;
    QListWidget* templates;
    QPushButton* forgetButton;
    QLabel* problem;
};

/// How rows are divided and what the columns hold, with the first rows as they are read by that.
class TemplateColumnsPage : public QWizardPage
{
    Q_OBJECT

public:
    explicit TemplateColumnsPage(TemplateWizard& templateWizard);

    void initializePage() override;
    bool isComplete() const override;

private:
    void createFields();
    QWidget* createForm();
    void showFormat();
    void takeFields();
    void takeRole(int column, levelling::ColumnRole role);
    void updatePreview();
    void fitColumns();
    void updateState();
    QString findProblem() const;

    TemplateWizard& wizard;
    QComboBox* separator;
    QLineEdit* widths;
    QComboBox* decimal;
    QSpinBox* skipRows;
    QComboBox* encoding;
    QLineEdit* comment;
    QComboBox* differenceUnit;
    QComboBox* lengthUnit;
    QTableView* table;
    TablePreviewModel* preview;
    RoleHeader* header;
    QLabel* state;
    bool areWidthsReadable = true;
};

/// Under which name the template is kept.
class TemplateNamePage : public QWizardPage
{
    Q_OBJECT

public:
    explicit TemplateNamePage(TemplateWizard& templateWizard);

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;

private:
    void updateState();

    TemplateWizard& wizard;
    QCheckBox* isKept;
    QLineEdit* name;
    QLabel* summary;
    QLabel* problem;
};

} // namespace orvel::desk
