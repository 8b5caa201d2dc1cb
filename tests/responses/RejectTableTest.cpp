#include "responses/ResponseFixture.h"
#include "session/data/DbConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"

#include <gtest/gtest.h>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

class RejectTableTest : public test::ResponseFixture {
protected:
    // The description the response shows for its first reject after decoding claim.
    QString firstDescription(const QString& claim) {
        clsClaimResponse response;
        EXPECT_TRUE(decode(response, claim));
        return response.colReject()->Count() > 0 ? response.colReject()->Item(1)->Description
                                                 : QString();
    }

    static QList<test::RejectRow> renamedRows() {
        return {{"75", "Prior authorisation needed (new wording)"}};
    }

    const QString rejected = test::notated("<STX>32000<GS>R0175");
};

TEST_F(RejectTableTest, KeptRowsServeLaterDecodingsWithoutAStatement) {
    EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    // Any statement on the lookup connection would now fail and be reported.
    mdlMain::LookupConnection->failNextStatement(err::StatementError);
    EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    EXPECT_EQ(firstDescription(sample(QStringLiteral("51-rejected"))),
              "Prior Authorization Required");
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_F(RejectTableTest, RowsAreReadAgainOnceTheLookupConnectionIsClosedOrReplaced) {
    EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    writeLookup(renamedRows());
    EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    mdlMain::LookupConnection->Close();
    EXPECT_EQ(firstDescription(rejected), "Prior authorisation needed (new wording)");
    writeLookup(test::testRejectRows());
    // Closed and opened again by the host between two decodings.
    mdlMain::LookupConnection->Close();
    mdlMain::LookupConnection->Open();
    EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    writeLookup(renamedRows());
    mdlMain::LookupConnection.reset();
    EXPECT_EQ(firstDescription(rejected), "Prior authorisation needed (new wording)");
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_F(RejectTableTest, AnEmptyOrFailedReadIsNotKept) {
    for (const bool withTable : {true, false}) {
        SCOPED_TRACE(withTable ? "empty table" : "no table");
        mdlMain::LookupConnection.reset();
        writeLookup({}, withTable);
        user->answerMsgBox(Answer::OK);
        clsClaimResponse response;
        EXPECT_FALSE(decode(response, rejected));
        writeLookup(test::testRejectRows());
        EXPECT_EQ(firstDescription(rejected), "Prior Authorization Required");
    }
    EXPECT_EQ(user->callsOf(Kind::MsgBox).size(), 2);
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, "clsClaimResponse:BuildResponse");
}

// Only letters fold: the characters just before and after A to Z keep their own code.
TEST_F(RejectTableTest, CodesCompareWithoutLetterCaseEvenBeyondASCII) {
    writeLookup({{QString::fromLatin1("\xC9z"), "accented"}, {"`a", "grave"}, {"a{", "brace"}});
    const struct {
        const char* code;
        const char* description;
    } cases[] = {
        {"\xE9Z", "accented"},
        {"\xC9z", "accented"},
        {"`A", "grave"},
        {"@A", ""},
        {"A{", "brace"},
        {"a[", ""},
        {"EZ", ""},
    };
    for (const auto& c : cases) {
        const QString claim = test::notated("<STX>32000<GS>R01") + QString::fromLatin1(c.code);
        EXPECT_EQ(firstDescription(claim), QString::fromLatin1(c.description)) << c.code;
    }
}

}  // namespace
}  // namespace tvrx
