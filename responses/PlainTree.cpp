#include "responses/PlainTree.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/text/ClaimNotation.h"

namespace tvrx {

void PlainTree::Clear() {
    items_.clear();
    byKey_.clear();
}

TreeControl::Node PlainTree::Add(const QString& parentKey, const QString& key, const QString& text,
                                 const QString& image) {
    Node parent = -1;
    if (!parentKey.isEmpty()) {
        const auto found = byKey_.constFind(parentKey);
        if (found == byKey_.cend()) fail(KeyNotFound, QStringLiteral("Element not found"));
        parent = *found;
    }
    if (!key.isEmpty() && byKey_.contains(key)) {
        fail(KeyInUse, QStringLiteral("Key is not unique in collection"));
    }
    const Node node = Node(items_.size());
    items_.append(Item{parent, key, text, image, false, false, std::nullopt, std::nullopt});
    if (!key.isEmpty()) byKey_.insert(key, node);
    return node;
}

const PlainTree::Item& PlainTree::item(Node node) const {
    if (node < 0 || node >= items_.size()) fail(err::ObjectVariableNotSet);
    return items_.at(node);
}

PlainTree::Item& PlainTree::itemRef(Node node) {
    if (node < 0 || node >= items_.size()) fail(err::ObjectVariableNotSet);
    return items_[node];
}

TreeControl::Node PlainTree::Parent(Node node) const {
    const Node parent = item(node).parent;
    if (parent < 0) fail(err::ObjectVariableNotSet);
    return parent;
}

void PlainTree::setExpanded(Node node, bool expanded) {
    itemRef(node).expanded = expanded;
}

void PlainTree::setBold(Node node, bool bold) {
    itemRef(node).bold = bold;
}

void PlainTree::setFontSize(Node node, int points) {
    itemRef(node).fontSize = points;
}

void PlainTree::setForeColor(Node node, qint32 colour) {
    itemRef(node).colour = colour;
}

QList<TreeControl::Node> PlainTree::children(Node parent) const {
    QList<Node> nodes;
    for (Node node = 0; node < items_.size(); ++node) {
        if (items_.at(node).parent == parent) nodes.append(node);
    }
    return nodes;
}

QStringList PlainTree::outline() const {
    QStringList lines;
    outlineFrom(-1, 0, lines);
    return lines;
}

void PlainTree::outlineFrom(Node parent, int depth, QStringList& lines) const {
    for (const Node node : children(parent)) {
        const Item& it = items_.at(node);
        QString line = QString(qsizetype(depth) * 2, u' ') + u'"' + toNotation(it.text) + u'"';
        if (!it.key.isEmpty()) line += QStringLiteral(" key=\"%1\"").arg(toNotation(it.key));
        line += QStringLiteral(" image=") + it.image;
        if (it.expanded) line += QStringLiteral(" expanded");
        if (it.bold) line += QStringLiteral(" bold");
        if (it.fontSize) line += QStringLiteral(" size=%1").arg(*it.fontSize);
        if (it.colour) {
            line += QStringLiteral(" colour=") +
                    QStringLiteral("%1").arg(*it.colour, 6, 16, QChar(u'0')).toUpper();
        }
        lines.append(line);
        outlineFrom(node, depth + 1, lines);
    }
}

}  // namespace tvrx
