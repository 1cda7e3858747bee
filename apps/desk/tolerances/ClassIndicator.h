#pragma once

#include <QToolButton>

namespace orvel::desk {

class Document;

/// Shows by what the project judges: its class and limit; a click asks for the tolerances.
class ClassIndicator : public QToolButton
{
    Q_OBJECT

public:
    /// The document outlives the button.
    explicit ClassIndicator(const Document& projectDocument, QWidget* parent = nullptr);

private:
    void showRules();

    const Document& document;
};

} // namespace orvel::desk
