#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// The readable notation of claim texts in files, samples, tests and on the command line.
// Control bytes are written as tags: <STX> <ETX> <FS> <GS> <RS> <CR> <LF> <NUL> for bytes
// 2, 3, 28, 29, 30, 13, 10 and 0, and <xHH> (two hexadecimal digits) for any other byte
// below 32 or from 127 up and for a literal "<". Every other character stands for itself.
// docs/CLAIM-NOTATION.md has examples.
namespace tvrx {

// The outcome of reading notation: the claim text, or what is wrong with the notation.
struct NotationResult {
    std::optional<QString> text;
    QString error;  // empty when the notation was read

    explicit operator bool() const { return text.has_value(); }
};

// The claim text in notation. Hexadecimal digits are written in upper case; characters
// beyond 255, which a claim text never holds, are passed through unchanged.
QString toNotation(QStringView claimText);

// The claim text that notation stands for. Hexadecimal digits may be in either case, and
// <xHH> is accepted for any byte, also one that has a name. An unknown tag, a tag with a
// bad hexadecimal number or a "<" without its ">" is an error that names the position.
NotationResult fromNotation(QStringView notation);

}  // namespace tvrx
