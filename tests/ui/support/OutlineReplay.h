#pragma once

#include "responses/TreeControl.h"
#include "session/text/ClaimNotation.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

namespace tvrx::test {

// The tree lines of a result tree outline (tests/responses/tree/<case>.txt): every line
// that starts with a quote or with indentation.
inline QStringList outlineTreeLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
    QStringList lines;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (line.startsWith(u'"') || line.startsWith(u' ')) lines.append(line);
    }
    return lines;
}

// Builds on a tree control the nodes an outline shows, with their keys, images and
// styles, as Wrapper.BuildTree built them. Returns false at a line it cannot read.
inline bool replayOutline(const QStringList& lines, TreeControl& tree) {
    static const QRegularExpression form(QString::fromUtf8(
        R"re(^( *)"(.*?)"(?: key="(.*?)")? image=(\w+)( expanded)?( bold)?(?: size=(\d+))?)re"
        R"re((?: colour=([0-9A-F]{6}))?$)re"));
    QStringList keys;  // the key of the last node at each depth
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = form.match(line);
        if (!match.hasMatch()) return false;
        const qsizetype depth = match.capturedLength(1) / 2;
        keys.resize(depth + 1);
        const auto text = fromNotation(match.captured(2));
        if (!text) return false;
        const TreeControl::Node node = tree.Add(depth == 0 ? QString() : keys[depth - 1],
                                                match.captured(3), *text.text, match.captured(4));
        keys[depth] = match.captured(3);
        if (match.capturedLength(5) > 0) tree.setExpanded(node, true);
        if (match.capturedLength(6) > 0) tree.setBold(node, true);
        if (match.capturedLength(7) > 0) tree.setFontSize(node, match.captured(7).toInt());
        if (match.capturedLength(8) > 0)
            tree.setForeColor(node, match.captured(8).toInt(nullptr, 16));
    }
    return true;
}

}  // namespace tvrx::test
