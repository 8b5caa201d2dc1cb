#include "ui/FindRefillDialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace tvrx {

namespace {

constexpr int kF2 = 113;

}  // namespace

FindRefillDialog::FindRefillDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmFindRefill"));
    auto* layout = new QVBoxLayout(this);
    model_ = new QStandardItemModel(this);
    list_ = new QTableView(this);
    list_->setObjectName(QStringLiteral("TDBList1"));
    list_->setModel(model_);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->verticalHeader()->setVisible(false);
    list_->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(list_, 1);

    auto* buttons = new QHBoxLayout;
    ok_ = new QPushButton(this);
    cancel_ = new QPushButton(this);
    redo_ = new QPushButton(this);
    ok_->setDefault(true);
    buttons->addWidget(redo_);
    buttons->addStretch(1);
    buttons->addWidget(ok_);
    buttons->addWidget(cancel_);
    layout->addLayout(buttons);

    connect(ok_, &QPushButton::clicked, this, [this] { finish(FindRefillGesture::Kind::Ok); });
    connect(cancel_, &QPushButton::clicked, this,
            [this] { finish(FindRefillGesture::Kind::Cancel); });
    connect(redo_, &QPushButton::clicked, this,
            [this] { finish(FindRefillGesture::Kind::FindAnother); });
    connect(list_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        list_->selectRow(index.row());
        finish(FindRefillGesture::Kind::DoubleClick);
    });
    resize(760, 300);
}

void FindRefillDialog::showForm(const frmFindRefill& form) {
    gesture_ = {};
    setWindowTitle(form.Caption);
    ok_->setText(form.cmdOK.Caption);
    cancel_->setText(form.cmdCancel.Caption);
    redo_->setText(form.cmdRedo.Caption);
    model_->clear();
    model_->setHorizontalHeaderLabels(frmFindRefill::captions());
    for (const QStringList& cells : form.rows()) {
        QList<QStandardItem*> items;
        for (const QString& cell : cells) items << new QStandardItem(cell);
        model_->appendRow(items);
    }
    list_->resizeColumnsToContents();
    list_->clearSelection();
    if (form.Row) list_->selectRow(*form.Row);
}

void FindRefillDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2) {
        finish(FindRefillGesture::Kind::Key, kF2);
        return;
    }
    QDialog::keyPressEvent(event);
}

void FindRefillDialog::finish(FindRefillGesture::Kind kind, int keyCode) {
    gesture_ = {kind, selectedRow(), keyCode};
    accept();
}

std::optional<int> FindRefillDialog::selectedRow() const {
    const QModelIndexList selected = list_->selectionModel()->selectedRows();
    if (selected.isEmpty()) return std::nullopt;
    return selected.first().row();
}

FindRefillGesture QtFindRefillFace::next(const frmFindRefill& form) {
    FindRefillDialog dialog(parent_);
    dialog.showForm(form);
    dialog.exec();
    return dialog.gesture();
}

}  // namespace tvrx
