#pragma once

#include "apps/desk/document/ToleranceRules.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QSpinBox;

namespace orvel::desk {

/// Edits the tolerances of a project and shows the limits that come of them.
class ToleranceDialog : public QDialog
{
    Q_OBJECT

public:
    /// @param networkConfidence  level of the tests that holds where the rules name none
    ToleranceDialog(const SurveyRules& rules, double networkConfidence, QWidget* parent = nullptr);

    ToleranceRules getRules() const;

private:
    /// The fields of one limit, and what it is for some lines.
    struct RuleFields
    {
        QDoubleSpinBox* factor = nullptr;
        QComboBox* measure = nullptr;
        QLabel* preview = nullptr;
    };

    struct ClassFields
    {
        RuleFields loops;
        RuleFields repeated;
    };

    QWidget* createClassFields(LevellingClass current);
    RuleFields createRuleFields(QGridLayout* grid, int row, int column, const QString& name);
    QWidget* createOtherFields(double networkConfidence);
    QWidget* createButtons();
    void setRules(const ToleranceRules& rules);
    void updatePreview();

    static void setRule(const RuleFields& fields, const ToleranceRule& rule);
    static ToleranceRule getRule(const RuleFields& fields);

    std::array<ClassFields, kLevellingClasses.size()> classes;
    QDoubleSpinBox* sigmaLimit = nullptr;
    QCheckBox* hasConfidence = nullptr;
    QDoubleSpinBox* confidence = nullptr;
    QSpinBox* heightDecimals = nullptr;
    QSpinBox* millimetreDecimals = nullptr;
    QLabel* example = nullptr;
};

} // namespace orvel::desk
