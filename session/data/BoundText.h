#pragma once

#include <QString>

namespace tvrx {

// The value a column receives for a text the record code used to write "quoted with
// single quotes doubled, then cut to width": the doubled text cut to width, with each
// doubled pair turned back into one quote. A lone quote left by the cut stays one quote.
// The result is bound as it is; nothing is pasted into SQL.
QString doubledThenCut(const QString& text, int width);

}  // namespace tvrx
