#pragma once

#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QPushButton;
class QTableWidget;

namespace tvrx {

// A table of rows to pick one from (a fill, a plan): OK or a double-click picks the
// selected row, Cancel or closing the window picks none. The first row starts selected so
// that Enter alone takes it.
class RowPicker : public QDialog {
    Q_OBJECT

public:
    RowPicker(const QString& title, const QStringList& columns, const QList<QStringList>& rows,
              QWidget* parent = nullptr);

    QTableWidget* table() const { return table_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    // The 0-based row picked, once the dialog was accepted; none otherwise.
    std::optional<int> pickedRow() const;

private:
    void fill(const QStringList& columns, const QList<QStringList>& rows);

    QTableWidget* table_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

}  // namespace tvrx
