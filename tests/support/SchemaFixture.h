#pragma once

#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "support/DatabaseFixture.h"

#include <QDir>
#include <QFile>

namespace tvrx::test {

// A database fixture whose database already has the pharmacy's schema.
class SchemaFixture : public DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_NO_THROW(applySchema(*db));
    }

    // The claim builders' small pharmacy (tests/claims/pharmacy), one file per table; the
    // table given alone when one is named.
    void loadClaimsPharmacy(const QString& onlyTable = {}) {
        const QDir folder(QStringLiteral(TVRX_SOURCE_DIR "/tests/claims/pharmacy"));
        const QString pattern =
            (onlyTable.isEmpty() ? QStringLiteral("*") : onlyTable) + QStringLiteral(".tsv");
        for (const QFileInfo& file : folder.entryInfoList({pattern})) {
            QFile data(file.filePath());
            ASSERT_TRUE(data.open(QIODevice::ReadOnly));
            loadTabSeparated(*db, file.completeBaseName(), QString::fromUtf8(data.readAll()));
        }
    }
};

}  // namespace tvrx::test
