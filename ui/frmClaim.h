#pragma once

#include <QWidget>

class QTabWidget;
class QTreeWidget;

namespace tvrx {

// The form that shows a claim's result: a tab control with one panel holding the result
// tree. It does nothing of its own; the host passes tree() to Wrapper.BuildTree through a
// QtResultTree.
class frmClaim : public QWidget {
    Q_OBJECT

public:
    explicit frmClaim(QWidget* parent = nullptr);

    QTabWidget* sstClaim() const { return tabs_; }
    QWidget* SSActiveTabPanel1() const { return panel_; }
    QTreeWidget* tree() const { return tree_; }

private:
    QTabWidget* tabs_;
    QWidget* panel_;
    QTreeWidget* tree_;
};

}  // namespace tvrx
