#pragma once

#include "responses/PlainTree.h"

#include <QHash>
#include <QIcon>
#include <QList>

class QTreeWidget;
class QTreeWidgetItem;

namespace tvrx {

// The result tree on a QTreeWidget that the form owns. The five images are the platform's
// standard icons, except "Paid", a small green coin drawn here. Keys and parents are kept
// by a plain tree beside the widget, so both number their nodes alike.
class QtResultTree : public TreeControl {
public:
    explicit QtResultTree(QTreeWidget& widget);

    void setRedraw(bool on) override;
    void Clear() override;
    Node Add(const QString& parentKey, const QString& key, const QString& text,
             const QString& image) override;
    Node Parent(Node node) const override;
    void setExpanded(Node node, bool expanded) override;
    void setBold(Node node, bool bold) override;
    void setFontSize(Node node, int points) override;
    void setForeColor(Node node, qint32 colour) override;

    QTreeWidgetItem* item(Node node) const;
    // The icon shown for an image name; a null icon for a name the tree does not hold.
    QIcon icon(const QString& image) const { return icons_.value(image); }

private:
    QTreeWidget& widget_;
    QHash<QString, QIcon> icons_;
    PlainTree model_;
    QList<QTreeWidgetItem*> items_;
};

}  // namespace tvrx
