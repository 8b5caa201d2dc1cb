#pragma once

#include <QStringList>

#include <cstdio>

namespace tvrx {

class PlainTree;

namespace cli {

// The result tree as the command-line host prints it: a node a line, indented two blanks a
// level, its text in the readable notation (a node's text can hold a line feed or a
// separator byte). A node with children is marked "-" when the desktop tree shows it open
// and "+" when closed. With colour, bold and coloured nodes carry terminal escapes.
QStringList treeLines(const PlainTree& tree, bool colour);

// Prints the tree to out, coloured only when out is a terminal.
void printTree(const PlainTree& tree, std::FILE* out);

}  // namespace cli
}  // namespace tvrx
