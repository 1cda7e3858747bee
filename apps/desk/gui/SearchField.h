#pragma once

#include <QLineEdit>

namespace orvel::desk {

/// A line for words to look for. Esc empties it.
class SearchField : public QLineEdit
{
    Q_OBJECT

public:
    /// @param hint  what stands in it while it is empty
    /// @param name  what it is called for those who do not see it
    SearchField(const QString& hint, const QString& name, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace orvel::desk
