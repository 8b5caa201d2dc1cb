#include "ui/RowPicker.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace tvrx {

RowPicker::RowPicker(const QString& title, const QStringList& columns,
                     const QList<QStringList>& rows, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(title);
    setObjectName(QStringLiteral("rowPicker"));
    auto* layout = new QVBoxLayout(this);
    table_ = new QTableWidget(this);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->verticalHeader()->setVisible(false);
    table_->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(table_, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    cancel_ = buttons->button(QDialogButtonBox::Cancel);
    layout->addWidget(buttons);

    fill(columns, rows);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(table_, &QTableWidget::cellDoubleClicked, this, [this](int row, int) {
        table_->selectRow(row);
        accept();
    });
    // OK means nothing without a selected row.
    connect(table_, &QTableWidget::itemSelectionChanged, this,
            [this] { ok_->setEnabled(!table_->selectedItems().isEmpty()); });
    ok_->setEnabled(!table_->selectedItems().isEmpty());
    resize(560, 320);
}

void RowPicker::fill(const QStringList& columns, const QList<QStringList>& rows) {
    table_->setColumnCount(static_cast<int>(columns.size()));
    table_->setHorizontalHeaderLabels(columns);
    table_->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        const QStringList& values = rows.at(r);
        // Every cell gets an item, so a short row can still be selected and picked.
        for (int c = 0; c < columns.size(); ++c) {
            table_->setItem(r, c, new QTableWidgetItem(values.value(c)));
        }
    }
    table_->resizeColumnsToContents();
    if (!rows.isEmpty()) table_->selectRow(0);
}

std::optional<int> RowPicker::pickedRow() const {
    if (result() != QDialog::Accepted) return std::nullopt;
    const QList<QTableWidgetSelectionRange> ranges = table_->selectedRanges();
    if (ranges.isEmpty()) return std::nullopt;
    return ranges.first().topRow();
}

}  // namespace tvrx
