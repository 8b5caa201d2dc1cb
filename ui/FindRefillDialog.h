#pragma once

#include "prescription/frmFindRefill.h"

#include <QDialog>
#include <QPointer>

class QPushButton;
class QStandardItemModel;
class QTableView;

namespace tvrx {

// The refill finder on the desktop: the fills in a table, with Ok, Cancel and "Find
// another number". A button, a double click on a row or F2 hands the gesture back to the
// form; closing the window or Escape is a cancel.
class FindRefillDialog : public QDialog {
    Q_OBJECT

public:
    explicit FindRefillDialog(QWidget* parent = nullptr);

    // Draws the form's caption, buttons and list, with its current row selected.
    void showForm(const frmFindRefill& form);
    // What the user did; Closed until a button, a double click or F2.
    const FindRefillGesture& gesture() const { return gesture_; }

    QTableView* list() const { return list_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* redoButton() const { return redo_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void finish(FindRefillGesture::Kind kind, int keyCode = 0);
    std::optional<int> selectedRow() const;

    QTableView* list_ = nullptr;
    QStandardItemModel* model_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* redo_ = nullptr;
    FindRefillGesture gesture_;
};

// The finder as a modal dialog over the host's window, shown afresh for each gesture.
class QtFindRefillFace : public FindRefillFace {
public:
    explicit QtFindRefillFace(QWidget* parent = nullptr) : parent_(parent) {}

    FindRefillGesture next(const frmFindRefill& form) override;

private:
    QPointer<QWidget> parent_;
};

}  // namespace tvrx
