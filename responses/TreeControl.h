#pragma once

#include <QString>

namespace tvrx {

// The tree control a host passes to Wrapper.BuildTree to show what the payers answered.
// Nodes are found by their keys; a node's handle is whatever number the tree gave it.
// Failures are raised into the caller's frame with the numbers the host's tree control
// raised, so that a failed node is reported and the tree goes on.
class TreeControl {
public:
    using Node = int;

    // A key that another node holds.
    static constexpr long KeyInUse = 35602;
    // A parent key that no node holds.
    static constexpr long KeyNotFound = 35601;

    // The images a host's tree must know by these names.
    static constexpr const char* Information = "Information";
    static constexpr const char* Check = "Check";
    static constexpr const char* Exclamation = "Exclamation";
    static constexpr const char* Paid = "Paid";
    static constexpr const char* Rejected = "Rejected";

    // Colours as 24-bit values with blue in the high byte.
    static constexpr qint32 Blue = 0xFF0000;
    static constexpr qint32 Green = 0x00FF00;
    static constexpr qint32 Red = 0x0000FF;

    virtual ~TreeControl() = default;

    // Suspends (false) or resumes (true) drawing while nodes are added.
    virtual void setRedraw(bool on) = 0;
    // Removes every node.
    virtual void Clear() = 0;
    // Adds a node at the end of the children of the node holding parentKey, or as a root
    // when parentKey is empty. An empty key leaves the node without one.
    virtual Node Add(const QString& parentKey, const QString& key, const QString& text,
                     const QString& image) = 0;
    // The node's parent; a root has none, which fails as an object not set (91).
    virtual Node Parent(Node node) const = 0;
    virtual void setExpanded(Node node, bool expanded) = 0;
    virtual void setBold(Node node, bool bold) = 0;
    virtual void setFontSize(Node node, int points) = 0;
    virtual void setForeColor(Node node, qint32 colour) = 0;
};

}  // namespace tvrx
