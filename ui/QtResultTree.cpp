#include "ui/QtResultTree.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QTreeWidget>

namespace tvrx {
namespace {

// A paid claim's image: a green coin with a dollar sign.
QIcon coin() {
    QPixmap picture(16, 16);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(0x2e, 0x8b, 0x3e));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(1, 1, 14, 14);
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(picture.rect(), Qt::AlignCenter, QStringLiteral("$"));
    return QIcon(picture);
}

// An image name that the tree does not hold fails as the host's image list did.
constexpr long kImageNotFound = 35601;

}  // namespace

QtResultTree::QtResultTree(QTreeWidget& widget) : widget_(widget) {
    QStyle* style = QApplication::style();
    icons_ = {
        {QString::fromLatin1(Information), style->standardIcon(QStyle::SP_MessageBoxInformation)},
        {QString::fromLatin1(Check), style->standardIcon(QStyle::SP_DialogApplyButton)},
        {QString::fromLatin1(Exclamation), style->standardIcon(QStyle::SP_MessageBoxWarning)},
        {QString::fromLatin1(Paid), coin()},
        {QString::fromLatin1(Rejected), style->standardIcon(QStyle::SP_MessageBoxCritical)},
    };
}

void QtResultTree::setRedraw(bool on) {
    widget_.setUpdatesEnabled(on);
}

void QtResultTree::Clear() {
    widget_.clear();
    model_.Clear();
    items_.clear();
}

TreeControl::Node QtResultTree::Add(const QString& parentKey, const QString& key,
                                    const QString& text, const QString& image) {
    if (!icons_.contains(image)) fail(kImageNotFound, QStringLiteral("Element not found"));
    const Node node = model_.Add(parentKey, key, text, image);
    const Node parent = model_.item(node).parent;
    auto* item =
        parent < 0 ? new QTreeWidgetItem(&widget_) : new QTreeWidgetItem(items_.at(parent));
    item->setText(0, text);
    item->setIcon(0, icons_.value(image));
    items_.append(item);
    return node;
}

QTreeWidgetItem* QtResultTree::item(Node node) const {
    if (node < 0 || node >= items_.size()) fail(err::ObjectVariableNotSet);
    return items_.at(node);
}

TreeControl::Node QtResultTree::Parent(Node node) const {
    return model_.Parent(node);
}

void QtResultTree::setExpanded(Node node, bool expanded) {
    item(node)->setExpanded(expanded);
}

void QtResultTree::setBold(Node node, bool bold) {
    QFont font = item(node)->font(0);
    font.setBold(bold);
    item(node)->setFont(0, font);
}

void QtResultTree::setFontSize(Node node, int points) {
    QFont font = item(node)->font(0);
    font.setPointSize(points);
    item(node)->setFont(0, font);
}

void QtResultTree::setForeColor(Node node, qint32 colour) {
    // Blue is the high byte, red the low one.
    item(node)->setForeground(0,
                              QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF));
}

}  // namespace tvrx
