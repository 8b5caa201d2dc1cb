#pragma once

#include "session/text/ClaimNotation.h"

#include <QString>

#include <gtest/gtest.h>

namespace tvrx::test {

// A claim or response text written in the readable notation ("<STX>610066<FS>AM01").
inline QString notated(const QString& notation) {
    const NotationResult read = fromNotation(notation);
    EXPECT_TRUE(read) << read.error.toStdString();
    return read.text.value_or(QString());
}

}  // namespace tvrx::test
