#include "claims/ClaimReader.h"
#include "claims/Layouts.h"
#include "session/runtime/Frame.h"
#include "support/DataRows.h"
#include "support/Notation.h"
#include "support/SessionFixture.h"

#include <array>
#include <cmath>
#include <map>

namespace tvrx::claims {
namespace {

class ClaimLayoutTest : public test::SessionFixture {};

// Each encoding against texts worked out apart from the engine (tests/data/claim-encodings.tsv).
TEST_F(ClaimLayoutTest, EncodingsWriteWhatTheRulesGive) {
    const std::map<QString, Encoding> encodings{{"Digits", Encoding::Digits},
                                                {"Punched", Encoding::Punched},
                                                {"Fill", Encoding::Fill},
                                                {"Text", Encoding::Text},
                                                {"Day", Encoding::Day}};
    for (const test::DataRow& row : test::dataRows(QStringLiteral("claim-encodings.tsv"))) {
        SCOPED_TRACE(row.where);
        const Encoding encoding = encodings.at(row.cells.at(0));
        const std::array fields{field::of("XX", "", Value::Qty, encoding,
                                          static_cast<qint16>(row.cells.at(1).toInt()))};
        const std::array parts{claims::fields(fields)};
        Values values;
        values[Value::Qty].number = row.cells.at(2).toDouble();
        values[Value::Qty].text = test::notated(row.cells.at(2));
        values[Value::Qty].date = QDateTime(QDate::fromString(row.cells.at(2), Qt::ISODate), {});
        QString written;
        Frame frame("test:encoding");
        writeLayout(written, Layout{QLatin1StringView("test"), parts}, values, frame,
                    FailurePolicy::LeaveOut);
        EXPECT_EQ(toNotation(written),
                  toNotation(u'\x1c' + QStringLiteral("XX") + test::notated(row.cells.at(3))));
    }
    EXPECT_TRUE(reporter->reports().isEmpty());
}

// Values that fit every field they stand in: texts as short as the narrowest field, one
// digit for numbers, an amount and a date that read back exactly.
Values fittingValues(const Layout& layout) {
    std::map<quint8, qint16> narrowest;
    for (const Part& part : layout.parts) {
        if (part.list != List::None) continue;
        for (const Field& field : part.fields) {
            if (field.source == kNoSource || field.width == kNoWidth) continue;
            auto [at, added] = narrowest.emplace(field.source, field.width);
            if (!added) at->second = std::min(at->second, field.width);
        }
    }
    Values values;
    for (std::size_t i = 0; i < kValueCount; ++i) {
        Slot& slot = values[static_cast<Value>(i)];
        const auto width = narrowest.count(static_cast<quint8>(i)) != 0
                               ? narrowest.at(static_cast<quint8>(i))
                               : qint16(4);
        slot.text = QString(width, QChar(u'A' + static_cast<char16_t>(i % 26)));
        slot.number = static_cast<double>(i % 9 + 1);
        slot.date = QDateTime(QDate(2026, 3, 7), {});
    }
    values[Value::ClaimCost].number = 12.34;
    values[Value::OtherPaidAmount].number = -4.25;
    for (std::size_t flag = 0; flag < kFlagCount; ++flag)
        values.setFlag(static_cast<Flag>(flag), true);
    values[Value::ClaimFields].text = QStringLiteral("CF,CM,CQ,CX,CA,DR,DY,DZ,EJ,EA,EB,2E,AM13");
    for (const List list : {List::Modifiers, List::Ingredients, List::Diagnoses}) {
        for (int item = 0; item < 2; ++item) {
            ItemSlots itemSlots;
            for (std::size_t i = 0; i < kItemValueCount; ++i) {
                itemSlots[i].text = QStringLiteral("I%1").arg(item);
                itemSlots[i].number = item + 1;
            }
            values.items(list).push_back(itemSlots);
        }
    }
    return values;
}

QVariant expectedDecoding(const Field& field, const Slot& slot) {
    switch (field.encoding) {
        case Encoding::None:
            return QString(field.constant);
        case Encoding::Text:
        case Encoding::Fill:
            return slot.text;
        case Encoding::Digits:
        case Encoding::Punched:
            return slot.number;
        case Encoding::Day:
            return slot.date.date();
    }
    return {};
}

// Written with every flag and switch on and two items in each list, every field the layout
// writes reads back, in order, under its code and name, with the value it was given.
TEST_F(ClaimLayoutTest, EveryLayoutReadsBackWhatItWrote) {
    std::vector<const Layout*> all;
    for (const auto kinds : {headerLayouts(), claimLayouts(), reversalLayouts()}) {
        all.insert(all.end(), kinds.begin(), kinds.end());
    }
    for (const Layout* layout : all) {
        SCOPED_TRACE(QString(layout->name).toStdString());
        const Values values = fittingValues(*layout);
        QString text;
        Frame frame("test:roundTrip");
        ASSERT_TRUE(writeLayout(text, *layout, values, frame, FailurePolicy::LeaveOut));
        const Reading reading = readLayout(*layout, text);
        EXPECT_EQ(reading.problems, QStringList());

        QList<ReadField> fields = reading.fields;
        fields.removeIf([](const ReadField& read) { return read.code == QLatin1String("AM"); });
        qsizetype next = 0;
        for (const Part& part : layout->parts) {
            const auto items =
                part.list == List::None ? std::size_t{1} : values.items(part.list).size();
            for (std::size_t item = 0; item < items; ++item) {
                for (const Field& field : part.fields) {
                    if (field.condition.kind == Condition::Kind::NotFlag) continue;
                    ASSERT_LT(next, fields.size()) << field.name.data();
                    const ReadField& read = fields.at(next++);
                    const Slot& slot = part.list == List::None
                                           ? values[static_cast<Value>(
                                                 field.source == kNoSource ? 0 : field.source)]
                                           : values.items(part.list).at(item).at(
                                                 field.source == kNoSource ? 0 : field.source);
                    EXPECT_EQ(read.code, QString(field.code));
                    EXPECT_EQ(read.name, QString(field.name));
                    const QVariant expected = expectedDecoding(field, slot);
                    if (expected.typeId() == QMetaType::Double) {
                        EXPECT_NEAR(read.decoded.toDouble(), expected.toDouble(), 1e-9)
                            << field.name.data();
                    } else {
                        EXPECT_EQ(read.decoded, expected) << field.name.data();
                    }
                }
            }
        }
        EXPECT_EQ(next, fields.size());
    }
}

// A picture is never cut, so a head can come out longer than its nominal widths: the
// reader says so and leaves the head whole, and still reads the fields after it.
TEST_F(ClaimLayoutTest, AHeadOfAnotherLengthIsReportedNotCut) {
    Values values = fittingValues(headerLayout(QStringLiteral("3B")));
    values[Value::PrescriptionCount].number = 100;
    QString text;
    Frame frame("test:longHead");
    writeLayout(text, headerLayout(QStringLiteral("3B")), values, frame, FailurePolicy::LeaveOut);
    const Reading reading = readLayout(headerLayout(QStringLiteral("3B")), text);
    ASSERT_EQ(reading.problems.size(), 1);
    EXPECT_TRUE(reading.problems.at(0).contains(QLatin1String("88 characters")));
    ASSERT_FALSE(reading.fields.isEmpty());
    EXPECT_EQ(reading.fields.at(0).name, QStringLiteral("Header"));
    ASSERT_NE(reading.find(u"CB"), nullptr);
    EXPECT_EQ(reading.find(u"CB")->name, QStringLiteral("Patient last name"));
}

}  // namespace
}  // namespace tvrx::claims
