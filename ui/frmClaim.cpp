#include "ui/frmClaim.h"

#include <QHeaderView>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tvrx {

frmClaim::frmClaim(QWidget* parent)
    : QWidget(parent), tabs_(new QTabWidget(this)), panel_(new QWidget), tree_(new QTreeWidget) {
    tabs_->setObjectName(QStringLiteral("sstClaim"));
    panel_->setObjectName(QStringLiteral("SSActiveTabPanel1"));
    tree_->setHeaderHidden(true);
    tree_->setColumnCount(1);
    auto* panelLayout = new QVBoxLayout(panel_);
    panelLayout->addWidget(tree_);
    tabs_->addTab(panel_, QStringLiteral("Claim Results"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
}

}  // namespace tvrx
