#include "records/clsINSURANCE.h"

#include "records/PlanFixture.h"
#include "records/ScriptedPlanLookup.h"
#include "session/data/ColumnTable.h"
#include "session/runtime/ErrorNumbers.h"

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

class InsuranceTest : public test::PlanFixture {};

// Every member is written as it is held and read back: currency to four places, a zip code
// without its NUL padding, and a switch as 1, as its bit-like column keeps it.
TEST_P(InsuranceTest, UpdateThenGetDataGivesBackEveryMember) {
    const qint16 key = static_cast<qint16>(Procedures::newKey(*db, "NewInsurance"));
    const std::vector<test::ColumnCase> cases{
        {"Zip", test::nulPadded("73072"), "73072", "73072"},
        {"Notes", "line one\r\nline two"},
        {"Fee", 1.23456, 1.2346, 1.2346},
    };
    clsINSURANCE written;
    test::expectEveryColumnWrittenAndRead(*db, insuranceColumns(), &clsINSURANCE::InsID, key,
                                          {.trueStored = 1}, cases, written);
}

// A currency member holds four places, half to even, from the moment it is assigned.
TEST(InsuranceCurrency, CurrencyMembersRoundAsTheyAreAssigned) {
    for (auto member : {&clsINSURANCE::Fee, &clsINSURANCE::Copay, &clsINSURANCE::GenericFee,
                        &clsINSURANCE::GenericCopay}) {
        clsINSURANCE plan;
        plan.*member = 1.23455;
        EXPECT_EQ(static_cast<double>(plan.*member), 1.2346);
    }
}

TEST_P(InsuranceTest, NullsReadAsDefaultsAndANegativeNumberIsOneReport) {
    const qint16 key = addPlan(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("N"));
    db->Execute(QStringLiteral("UPDATE INSURANCE SET Fee = NULL, DaysSupply = NULL, OnLine = NULL, "
                               "Copay = -2.5, Name = NULL WHERE InsID = ?"),
                {key});
    clsINSURANCE plan;
    plan.Fee = 9;
    plan.DaysSupply = true;
    plan.Copay = 7;
    plan.InsID = key;
    EXPECT_TRUE(plan.GetData());
    EXPECT_EQ(takeReports(),
              QStringList{test::reportOf("clsINSURANCE:GetData", err::TypeMismatch)});
    EXPECT_EQ(plan.Copay, 7) << "the failed column keeps its value";
    EXPECT_EQ(plan.Fee, 0);
    EXPECT_FALSE(plan.DaysSupply);
    EXPECT_FALSE(plan.OnLine);
    EXPECT_EQ(plan.Name, "");
    EXPECT_EQ(plan.Form, "32") << "the columns after the bad one are read";

    plan.InsID = 999;
    EXPECT_FALSE(plan.GetData());
    EXPECT_EQ(plan.InsID, 0);
}

TEST_P(InsuranceTest, DeleteKeepsTheRowAndUpdateLeavesItDeleted) {
    const qint16 key = addPlan(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("N"));
    clsINSURANCE plan;
    plan.InsID = key;
    plan.Delete();
    EXPECT_EQ(column("Deleted", key).toInt(), 1);
    ASSERT_TRUE(plan.GetData());
    plan.Name = QStringLiteral("Renamed");
    plan.Update();
    EXPECT_EQ(column("Name", key).toString(), "Renamed");
    EXPECT_EQ(column("Deleted", key).toInt(), 1);
}

TEST_P(InsuranceTest, FindByBinAndPcnFindsValuesAsTyped) {
    const qint16 quoted =
        addPlan(QStringLiteral("610011"), QStringLiteral("O'NEIL"), QStringLiteral("Quoted"));
    const qint16 deleted =
        addPlan(QStringLiteral("610099"), QStringLiteral("GONE"), QStringLiteral("Deleted"), 1);
    const struct {
        const char* bin;
        const char* pcn;
        qint16 found;  // 0: none
    } cases[] = {
        {"610011", "O'NEIL", quoted},
        {"610011", "o'neil  ", quoted},
        {" 610011", "O'NEIL", 0},
        {"610099", "GONE", deleted},
        {"610011", "", 0},
    };
    for (const auto& c : cases) {
        clsINSURANCE plan;
        const bool result =
            plan.FindByBinAndPcn(QString::fromLatin1(c.bin), QString::fromLatin1(c.pcn));
        EXPECT_EQ(result, c.found != 0) << c.bin << "/" << c.pcn;
        EXPECT_EQ(plan.InsID, c.found) << c.bin << "/" << c.pcn;
    }
}

// Moves the plans' key counter so that the next new key is 40,001.
void keysPast32767(DbConnection& db) {
    if (db.backend() == Backend::PostgreSQL) {
        db.Scalar(
            QStringLiteral("SELECT setval(pg_get_serial_sequence('insurance', 'insid'), "
                           "40000)"));
    } else {
        db.Execute(QStringLiteral("INSERT INTO INSURANCE (InsID) VALUES (40000)"));
    }
}

TEST_P(InsuranceTest, AKeyAbove32767OverflowsTheSixteenBitMember) {
    keysPast32767(*db);
    clsINSURANCE plan;
    user->answerMsgBox(Answer::No);
    bool foundExisting = false;
    EXPECT_EQ(plan.Insert(QStringLiteral("4512345"), foundExisting), 0);
    EXPECT_EQ(takeReports(), QStringList{test::reportOf("clsINSURANCE:Insert", err::Overflow)});
    EXPECT_TRUE(column("ID", 40001).isNull()) << "the new row stays empty";

    db->Execute(
        QStringLiteral("UPDATE INSURANCE SET BIN = 'B', ProcNumb = 'P' WHERE InsID = 40001"));
    plan.InsID = 0;
    EXPECT_FALSE(plan.FindByBinAndPcn(QStringLiteral("B"), QStringLiteral("P")));
    EXPECT_EQ(takeReports(),
              QStringList{test::reportOf("clsINSURANCE:FindByBinAndPcn", err::Overflow)});
}

// Answers for: use the lookup, the method, the search text, (for a search that finds
// plans) the pick, and the box that says nothing was found.
void lookupScript(ScriptedUserInteraction& user, int method, const QString& text,
                  std::optional<int> pick = std::nullopt, const QString& box = {}) {
    user.answerMsgBox(Answer::Yes);
    user.answerChoose(method);
    if (method != 4) user.answerInputBox(text);
    if (box.isEmpty() && method != 3 && !text.trimmed().isEmpty()) user.answerPickRow(pick);
    if (!box.isEmpty()) user.answerMsgBox(Answer::OK);
}

// Without the lookup a new plan holds the pharmacy's defaults; a plan the object held
// already is read and returned when the lookup is cancelled.
TEST_P(InsuranceTest, InsertWithoutTheLookupMakesAPlanOfDefaults) {
    user->answerMsgBox(Answer::No);
    bool foundExisting = false;
    clsINSURANCE plan;
    const qint32 key = plan.Insert(QStringLiteral("4512345"), foundExisting);
    ASSERT_GT(key, 0);
    EXPECT_FALSE(foundExisting);
    const auto asked = user->calls().at(0);
    EXPECT_EQ(asked.text(), "Would you like to use the Insurance lookup feature?");
    EXPECT_EQ(asked.title(), "Tessivar");

    clsINSURANCE read;
    read.InsID = static_cast<qint16>(key);
    ASSERT_TRUE(read.GetData());
    EXPECT_EQ(read.ClaimFields, "CA,CB,CM,CN,CO,CP,CQ,CX,DR,EJ,EA,EB,EW1");
    EXPECT_EQ(read.ID, "4512345");
    EXPECT_EQ(read.Fee, 5);
    EXPECT_EQ(read.Form, "51");
    EXPECT_EQ(read.Basis, "01");
    EXPECT_EQ(read.IDQualifier, "07");
    EXPECT_EQ(read.DoctorID, "DEA");
    EXPECT_EQ(read.OnLineLimit, 1);
    EXPECT_TRUE(read.DaysSupply && read.UandC && read.OnLine && read.Internet);
    EXPECT_FALSE(read.PatCopay);
    clsINSURANCE found;
    EXPECT_TRUE(found.FindByBinAndPcn(QString(), QString())) << "the BIN and processor are empty";
    EXPECT_EQ(found.InsID, key);

    db->Execute(QStringLiteral("UPDATE INSURANCE SET Name = 'Held'"));
    lookupScript(*user, 4, {});
    plan.InsID = static_cast<qint16>(key);
    EXPECT_EQ(plan.Insert(QStringLiteral("4512345"), foundExisting), key);
    EXPECT_EQ(plan.Name, "Held");
}

// Each kind of search fills a new plan from the directory's row it finds; a search that
// finds nothing, is declined or cancelled creates nothing.
TEST_P(InsuranceTest, InsertFillsANewPlanFromEachKindOfSearch) {
    const struct {
        const char* what;
        int method;
        QString text;
        std::optional<int> pick = std::nullopt;
        QString box = {};  // the information box shown, if any
        QString name = {}, bin = {}, procNumb = {}, insCode = {}, form = {};  // no name: no plan
        qint16 limit = 0;
    } cases[] = {
        {"by name", 1, "acme", 0, "", "ACME HEALTH PLAN", "610011", "ACME RX", "ABC07", "3A", 4},
        {"by BIN", 2, "  6102 ", 0, "", "BLUE RIVER PHARMACY", "610222", "PCN1234567", "BLUERIVE07",
         "51", 1},
        {"by name, second of two", 1, "plan", 1, "", "CEDAR CARE 50% PLAN", "610333", "", "CEDAR07",
         "51", 3},
        {"BIN and PCN with blanks", 3, " 610011 , ACME RX ", std::nullopt, "", "ACME HEALTH PLAN",
         "610011", "ACME RX", "ABC07", "3A", 4},
        {"no comma", 3, "610011 ACME RX", std::nullopt,
         "BIN and PCN not entered in proper format. Enter in the format: 'BIN,PCN'"},
        {"not in the directory", 3, "999999, NOPE"},
        {"pick declined", 1, "acme"},
        {"no name matches", 1, "zzz", std::nullopt,
         "No plan in the plan directory matches \"zzz\"."},
        {"percent taken literally", 1, "R%P", std::nullopt,
         "No plan in the plan directory matches \"R%P\"."},
        {"cancelled", 4, ""},
        {"blank BIN", 2, "   "},
    };
    clock->set(QDateTime(QDate(2026, 7, 9), QTime(10, 0)));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const qsizetype boxesBefore = user->callsOf(Kind::MsgBox).size();
        lookupScript(*user, c.method, c.text, c.pick, c.box);
        clsINSURANCE plan;
        bool foundExisting = false;
        const qint32 key = plan.Insert(QStringLiteral("4512345"), foundExisting);
        EXPECT_FALSE(foundExisting);
        const auto boxes = user->callsOf(Kind::MsgBox);
        EXPECT_EQ(boxes.size() > boxesBefore + 1 ? boxes.last().text() : QString(), c.box);
        if (c.method == 3 && !c.box.isEmpty()) {
            EXPECT_EQ(boxes.last().title(), "Tessivar");
        }
        EXPECT_EQ(planCount(), c.name.isEmpty() ? 0 : 1);
        if (c.name.isEmpty()) {
            EXPECT_EQ(key, 0);
            continue;
        }
        clsINSURANCE read;
        read.InsID = static_cast<qint16>(key);
        ASSERT_TRUE(read.GetData());
        EXPECT_EQ(read.BIN, c.bin);
        EXPECT_EQ(read.ProcNumb, c.procNumb);
        EXPECT_EQ(read.InsCode, c.insCode);
        EXPECT_EQ(read.Form, c.form);
        EXPECT_EQ(read.Name, c.name);
        EXPECT_EQ(read.OnLineLimit, c.limit);
        EXPECT_EQ(read.ID, "4512345");
        if (c.method == 3) {
            EXPECT_EQ(read.Notes,
                      "CARRIER: , STATUS: ACTIVE, PBM: NONE, VERSION: D.0\r\n"
                      "STATES: TX, MAX SCRIPTS: 4, REF SHEET: ACMESHT");
        }
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
    }
    const auto inputs = user->callsOf(Kind::InputBox);
    EXPECT_EQ(inputs.at(0).text(), "Enter all or part of insurance plan name. ");
    EXPECT_EQ(inputs.at(1).text(), "Enter all or part of insurance BIN Number. ");
    EXPECT_EQ(inputs.at(3).text(),
              "Enter BIN number and Processor Control Number separated by "
              "a comma. (ie BIN, PCN)");
    EXPECT_EQ(inputs.at(0).title(), "SEARCH FOR INSURANCE");
    const auto choice = user->callsOf(Kind::Choose).at(0);
    EXPECT_EQ(
        choice.args.mid(0, 5),
        (QStringList{"&Plan Name, &BIN, BIN &And Processor, &Cancel", "4", "1",
                     "Choose Lookup Method", "Choose your method of insurance lookup below."}));
}

TEST_P(InsuranceTest, InsertMeetsThePlanThatIsThereAlready) {
    const struct {
        const char* what;
        int deleted;
        Answer answer;
        bool newRow;
        bool sameKey;  // the result is the existing plan's key
        bool foundExisting;
        int deletedAfter;
    } cases[] = {
        {"active, go to it", 0, Answer::No, false, true, true, 0},
        {"active, create anyway", 0, Answer::Yes, true, false, false, 0},
        {"deleted, undelete", 1, Answer::Yes, false, true, true, 0},
        {"deleted, leave it", 1, Answer::No, false, false, false, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const qint16 existing = addPlan(QStringLiteral("610011"), QStringLiteral("ACME RX"),
                                        QStringLiteral("Old Acme"), c.deleted);
        const qlonglong before = planCount();
        lookupScript(*user, 3, QStringLiteral("610011,ACME RX"));
        user->answerMsgBox(c.answer);
        clsINSURANCE plan;
        bool foundExisting = false;
        const qint32 key = plan.Insert(QStringLiteral("4512345"), foundExisting);
        EXPECT_EQ(planCount(), before + (c.newRow ? 1 : 0));
        EXPECT_EQ(key == existing, c.sameKey);
        EXPECT_EQ(key == 0, !c.newRow && !c.sameKey);
        EXPECT_EQ(foundExisting, c.foundExisting);
        EXPECT_EQ(column("Deleted", existing).toInt(), c.deletedAfter);
        const QString expectedName =
            c.deleted != 0 && c.answer == Answer::Yes ? "ACME HEALTH PLAN" : "Old Acme";
        EXPECT_EQ(column("Name", existing).toString(), expectedName);
        if (key == existing) {
            EXPECT_EQ(plan.Name, expectedName);
        }

        const auto box = user->callsOf(Kind::MsgBox).last();
        const QString start = QStringLiteral(
            "The Insurance company you looked up with the BIN, 610011, and the Processor, ACME "
            "RX, \r\nexists in Tessivar already with an Insurance Code of OLD610011 and a Name "
            "ofOld Acme");
        const QString end = c.deleted != 0
                                ? QStringLiteral(
                                      " but has been marked as DELETED.Would you like to "
                                      "UNDELETE this insurance? ")
                                : QStringLiteral(
                                      ". Click NO to cancel this lookup and go directly to "
                                      "the existing insurance or click YES to create anyway.");
        EXPECT_EQ(box.text(), start + end);
        EXPECT_EQ(box.args.mid(1), (QStringList{"4", iconName(Icon::Information), "2",
                                                "TV Prescription Processing DLL"}));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        user->clear();
    }
}

TEST_P(InsuranceTest, InsertFromLookupAsksOnlyAboutADeletedPlan) {
    const qint16 active =
        addPlan(QStringLiteral("610011"), QStringLiteral("ACME RX"), QStringLiteral("Old Acme"));
    // The check for a plan there already looks for the directory's processor number before
    // it is cut to ten characters.
    const qint16 gone = addPlan(QStringLiteral("610222"), QStringLiteral("PCN12345678X"),
                                QStringLiteral("Old River"), 1);
    const struct {
        const char* what;
        QString bin, pcn;
        std::optional<Answer> answer;
        qint32 result;  // -1: a new key
        int newRows;
    } cases[] = {
        {"active plan", "610011", "ACME RX", std::nullopt, active, 0},
        {"not in the directory", "999999", "NOPE", std::nullopt, 0, 0},
        {"deleted, left deleted", "610222", "PCN12345678X", Answer::No, 0, 0},
        {"deleted, brought back", "610222", "PCN12345678X", Answer::Yes, gone, 0},
        {"new", "610333", "", std::nullopt, -1, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        if (c.answer) user->answerMsgBox(*c.answer);
        const qlonglong before = planCount();
        clsINSURANCE plan;
        const qint32 key = plan.InsertFromLookup(QStringLiteral("4512345"), c.bin, c.pcn);
        EXPECT_EQ(planCount(), before + c.newRows);
        if (c.result >= 0) {
            EXPECT_EQ(key, c.result);
        }
        if (c.result == -1) {
            EXPECT_GT(key, gone);
        }
        if (key == active) {
            EXPECT_EQ(plan.Name, "") << "the object keeps the defaults";
        }
        EXPECT_EQ(user->callsOf(Kind::MsgBox).size(), c.answer ? 1 : 0);
        user->clear();
    }
    EXPECT_EQ(column("Deleted", gone).toInt(), 0);
    EXPECT_EQ(column("Name", gone).toString(), "BLUE RIVER PHARMACY");
    EXPECT_EQ(column("ProcNumb", gone).toString(), "PCN1234567");
    EXPECT_EQ(column("ClaimFields", gone).toString(), "");
}

// A directory the host set answers each lookup with an object of its own; the script sees
// the searches and the processor number the lookup cut to ten characters and wrote back.
TEST_P(InsuranceTest, TheHostsDirectoryAnswersEachLookupWithAnObjectOfItsOwn) {
    auto script = std::make_shared<PlanLookupScript>();
    mdlMain::PlanLookups.set(script->factory());
    PlanEntry hostPlan;
    hostPlan.BIN = QStringLiteral("777001");
    hostPlan.ProcessorNumber = QStringLiteral("HOSTPCN12345");
    hostPlan.PlanName = QStringLiteral("HOST PLAN");
    hostPlan.ShortName = QStringLiteral("HOST");
    hostPlan.Version = QStringLiteral("51");
    hostPlan.MaxScripts = 2;
    script->answer(hostPlan);
    script->answer(std::nullopt);

    lookupScript(*user, 3, QStringLiteral("777001,HOSTPCN12345"));
    clsINSURANCE plan;
    bool foundExisting = false;
    const qint32 key = plan.Insert(QStringLiteral("4512345"), foundExisting);
    ASSERT_GT(key, 0);
    EXPECT_EQ(column("ProcNumb", key).toString(), "HOSTPCN123");
    EXPECT_EQ(column("Name", key).toString(), "HOST PLAN");
    EXPECT_EQ(plan.InsertFromLookup(QStringLiteral("4512345"), "1", "2"), 0);

    ASSERT_EQ(script->made().size(), 2);
    EXPECT_EQ(script->made()[0].searches,
              QStringList{"SearchBinAndProcessor(777001, HOSTPCN12345)"});
    EXPECT_EQ(script->made()[0].releasedProcessorNumber, "HOSTPCN123");
    EXPECT_EQ(script->made()[1].searches, QStringList{"SearchBinAndProcessor(1, 2)"});
    EXPECT_EQ(script->made()[1].releasedProcessorNumber, "");
    EXPECT_EQ(planCount(), 1);
}

TVRX_BACKENDS(InsuranceTest);

}  // namespace
}  // namespace tvrx
