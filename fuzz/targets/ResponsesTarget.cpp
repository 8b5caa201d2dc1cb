#include "fuzz/targets/FuzzSession.h"
#include "fuzz/targets/FuzzTargets.h"
#include "responses/FieldReader.h"
#include "responses/ResponseJson.h"
#include "responses/clsClaimResponse.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"
#include "session/text/Encodings.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

namespace tvrx::fuzz {
namespace {

// A lookup database of the harness's own, made and opened once per process: a few codes,
// one with a description past 50 characters and one with a null description. Every input
// gets the same open connection, so its reject rows are read once.
std::shared_ptr<DbConnection> lookupConnection() {
    static const QTemporaryDir folder;
    static const std::shared_ptr<DbConnection> connection = [] {
        auto lookup = std::make_shared<DbConnection>(folder.filePath(mdlMain::lookupFileName()));
        lookup->Open();
        lookup->Execute(QStringLiteral("CREATE TABLE Reject (Code TEXT, Description TEXT)"));
        const QVariantList rows[] = {
            {QStringLiteral("75"), QStringLiteral("Prior Authorization Required")},
            {QStringLiteral("83"), QStringLiteral("Duplicate Paid/Captured Claim")},
            {QStringLiteral("EC"), QString(60, u'D')},
            {QStringLiteral("NN"), QVariant()},
        };
        for (const QVariantList& row : rows) {
            lookup->Execute(QStringLiteral("INSERT INTO Reject VALUES (?, ?)"), row);
        }
        return lookup;
    }();
    return connection;
}

const QStringList kStatusWords{QString(),
                               QStringLiteral("PAID"),
                               QStringLiteral("DUPLICATE"),
                               QStringLiteral("CAPTURED"),
                               QStringLiteral("REJECTED"),
                               QStringLiteral("SUCCESS")};

void checkDecoded(const clsClaimResponse& response, bool result, qsizetype boxes) {
    check(result == (boxes == 0), "a decoding returns False exactly when it showed a box");
    check(kStatusWords.contains(response.PaidStatus()), "the status is one of the words");
    check(response.PAID() == 0 || response.PAID() == 1, "PAID is 0 or 1");
    const bool fixedReversal = response.Reversal && !response.Claim.mid(1, 2).startsWith(u"51");
    for (const auto& reject : *response.colReject()) {
        check(fixedReversal || reject->Description.size() <= 50,
              "descriptions are cut to 50 characters but in fixed-format reversals");
    }
}

void checkReports(FuzzSession& session) {
    for (const ErrorReport& report : session.reporter().reports()) {
        check(report.number != QString::number(err::InternalError),
              "no fault but the platform's own reaches a frame");
    }
}

bool isCode(QStringView code) {
    return std::all_of(code.begin(), code.end(), [](QChar c) {
        return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
    });
}

// Every field of the text with a code of two ASCII letters or digits (as all the layouts'
// codes are) reads from the one-pass reader as GetField reads it; closed by ":", a field reads as
// GetField reads it from the closed text, less the closing.
void checkFieldReader(const QString& text) {
    const response::FieldReader plain(text);
    const response::FieldReader closed(text, QLatin1StringView(":"));
    for (qsizetype at = text.indexOf(QChar(28)); at >= 0 && at + 2 < text.size();
         at = text.indexOf(QChar(28), at + 1)) {
        const QString code = text.mid(at + 1, 2);
        if (!isCode(code)) continue;
        const QByteArray codeBytes = code.toLatin1();
        const QLatin1StringView latin(codeBytes);
        QString separator;
        QString scan;
        const QString expected = mdlMain::GetField(code, text, separator, scan).value_or(QString());
        check(plain.value(latin) == expected, "the field reader reads as GetField does");
        QString closedExpected =
            mdlMain::GetField(code, text + u':', separator = QString(), scan = QString())
                .value_or(QString());
        if (plain.find(latin) + 2 + closedExpected.size() == text.size() + 1) {
            closedExpected.chop(1);
        }
        check(closed.value(latin) == closedExpected, "a closed text keeps no closing");
    }
    // Segments, searched by segment separator and a longer code, as the DUR segment is.
    const QLatin1StringView segmentCode(
        "\x1c"
        "AM24");
    QString separator{QChar(mdlMain::kSegmentSeparator)};
    QString scan;
    const QString expected =
        mdlMain::GetField(QString(segmentCode), text, separator, scan).value_or(QString());
    const response::FieldReader segments(text, {}, mdlMain::kSegmentSeparator);
    check(segments.value(segmentCode) == expected, "segments read as GetField reads them");
}

}  // namespace

int fuzzBuildResponse(const std::uint8_t* data, std::size_t size) {
    const QString claim =
        QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    FuzzSession session;
    mdlMain::LookupConnection = lookupConnection();
    auto& user = static_cast<ScriptedUserInteraction&>(mdlMain::user());
    for (const bool reversal : {false, true}) {
        clsClaimResponse response;
        response.Reversal = reversal;
        response.Claim = claim;
        user.clear();
        const bool result = response.BuildResponse();
        checkDecoded(response, result, user.callsOf(ScriptedUserInteraction::Kind::MsgBox).size());
        // Decoding the same text again sets the same values over themselves.
        const QJsonObject first = responseJson(response);
        response.BuildResponse();
        check(responseJson(response) == first, "decoding a text twice changes nothing");
    }
    checkFieldReader(claim);
    checkReports(session);
    return 0;
}

}  // namespace tvrx::fuzz
