#pragma once

#include "responses/TreeControl.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tvrx {

// A tree control without a screen: the nodes as data, for hosts that print the result
// tree (the command-line host) and for tests.
class PlainTree : public TreeControl {
public:
    struct Item {
        Node parent = -1;  // -1 for a root
        QString key;
        QString text;
        QString image;
        bool expanded = false;
        bool bold = false;
        std::optional<int> fontSize;
        std::optional<qint32> colour;
    };

    void setRedraw(bool on) override { redraw_ = on; }
    void Clear() override;
    Node Add(const QString& parentKey, const QString& key, const QString& text,
             const QString& image) override;
    Node Parent(Node node) const override;
    void setExpanded(Node node, bool expanded) override;
    void setBold(Node node, bool bold) override;
    void setFontSize(Node node, int points) override;
    void setForeColor(Node node, qint32 colour) override;

    bool redraw() const { return redraw_; }
    int count() const { return int(items_.size()); }
    const Item& item(Node node) const;
    // The nodes whose parent is `parent` (-1: the roots), in the order they were added.
    QList<Node> children(Node parent) const;

    // Every node on a line of its own, indented two blanks a level: its text quoted and in
    // the readable notation of claim texts, then what else is set on it.
    //   "RX 1042 HAS BEEN PAID<LF>" key="Claim 1 1" image=Paid expanded bold size=12 colour=00FF00
    QStringList outline() const;

private:
    Item& itemRef(Node node);
    void outlineFrom(Node parent, int depth, QStringList& lines) const;

    QList<Item> items_;
    QHash<QString, Node> byKey_;
    bool redraw_ = true;
};

}  // namespace tvrx
