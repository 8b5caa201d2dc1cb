#pragma once

#include "claims/ScriptedTransmitFace.h"
#include "claims/Wrapper.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace tvrx::test {

// An exchange directory of its own and a scripted transmit wait, for a test that also has
// a session (a SessionFixture or one of its kind as Base).
template <class Base>
class ExchangeFixture : public Base {
protected:
    void SetUp() override {
        Base::SetUp();
        face = std::make_shared<ScriptedTransmitFace>();
        setTransmitFace(face);
    }
    void TearDown() override {
        setTransmitFace(nullptr);
        Base::TearDown();
    }

    QString directory() const { return folder_.path(); }
    QString pathOf(const QString& name) const { return QDir(folder_.path()).filePath(name); }

    // Every file of the exchange directory, hidden ones too, by name.
    QStringList files() const {
        return QDir(folder_.path())
            .entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    // Writes a file elsewhere and renames it into place, as a transmission program does.
    void land(const QString& name, const QByteArray& bytes) const {
        const QString staging = pathOf(QStringLiteral(".landing"));
        QFile file(staging);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        ASSERT_TRUE(QFile::rename(staging, pathOf(name)));
    }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    struct Outcome {
        bool answered = false;
        std::optional<QByteArray> response;  // what the reader found
    };

    // One exchange through a new Wrapper; the reader keeps what the response file held.
    Outcome exchange(const QString& text, const QString& dir = {}) {
        Outcome outcome;
        Wrapper wrapper;
        outcome.answered = wrapper.ExchangeClaimFile(
            dir.isEmpty() ? directory() : dir, text,
            [&outcome](const QString& path) { outcome.response = contents(path); });
        return outcome;
    }

    std::shared_ptr<ScriptedTransmitFace> face;

private:
    QTemporaryDir folder_;
};

}  // namespace tvrx::test
