#pragma once

#include "responses/clsClaimResponse.h"
#include "session/runtime/AppConfig.h"
#include "support/Notation.h"
#include "support/QtPrinters.h"
#include "support/SessionFixture.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

#include <optional>

namespace tvrx::test {

// A row of the test's own Reject table; a null QVariant is a database null.
struct RejectRow {
    QVariant code;
    QVariant description;
};

// The Reject table the response tests decode with: a few codes with known descriptions,
// one over 50 characters, a lower-case code, one with a trailing blank, a null
// description, a second row for a code already listed, and a row without a code.
QList<RejectRow> testRejectRows();

// Writes a lookup database at path: an empty Conflict table, and a Reject table with these
// rows unless withRejectTable is false.
void writeLookupFile(const QString& path, const QList<RejectRow>& rows,
                     bool withRejectTable = true);

// A session whose lookup database is a file the test made, in a folder of its own that
// AppConfig::LibraryFolder points to for the length of the test.
class ResponseFixture : public SessionFixture {
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes the lookup database: a Reject table with these rows, or no Reject table.
    void writeLookup(const QList<RejectRow>& rows, bool withRejectTable = true);
    QString lookupPath() const;

    // A shipped sample response text, by its file name without ".txt".
    static QString sample(const QString& name);

    // Sets Claim, decodes, and returns what BuildResponse returned.
    bool decode(clsClaimResponse& response, const QString& claim);
    // The decoded response with the result, boxes and reports, in the JSON form.
    QJsonObject outcome(const clsClaimResponse& response, bool result) const;

private:
    QTemporaryDir folder_;
    AppConfig saved_;
};

// How much of an object jsonDifferences compares: all its members, or only those that the
// expected object names.
enum class Members { All, Named };

// Empty when expected and actual agree (numbers to a millionth); otherwise one line for
// each path that differs.
QString jsonDifferences(const QJsonValue& expected, const QJsonValue& actual,
                        Members members = Members::All, const QString& path = QStringLiteral("$"));

}  // namespace tvrx::test
