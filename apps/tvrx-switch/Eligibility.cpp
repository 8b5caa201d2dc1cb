#include "Eligibility.h"

#include "claims/ClaimReader.h"
#include "claims/Layouts.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <QDate>

#include <algorithm>
#include <optional>
#include <variant>

namespace tvrx::sw {

namespace {

constexpr QChar kStart(mdlMain::kStartOfText);
constexpr QChar kEnd(mdlMain::kEndOfText);
constexpr QChar kField(mdlMain::kFieldSeparator);
constexpr QChar kGroup(mdlMain::kGroupSeparator);
constexpr QChar kSegment(mdlMain::kSegmentSeparator);

const QLatin1StringView kEligibilityCode("E1");
// Byte 2, a BIN of six characters and the version stand before the transaction code.
constexpr qsizetype kCodeAt = 9;
// The message field holds this much of the plan list; the additional message the rest.
constexpr qsizetype kMessageWidth = 200;
constexpr qsizetype kPharmacyWidth = 15;
const QLatin1StringView kMedicareLabel("MEDICARE ELIG");
const QLatin1StringView kHelpDeskQualifier("03");

// The reject codes of an eligibility answer.
const QLatin1StringView kNoTransmission("94");
const QLatin1StringView kUnknownBin("01");
const QLatin1StringView kUnknownPcn("04");
const QLatin1StringView kNoCard("52");
const QLatin1StringView kNoPersonCode("53");
const QLatin1StringView kWrongBirthDate("09");
const QLatin1StringView kNotCovered("65");

// What the payer reads of a request.
struct Inquiry {
    QString bin;
    QString pcn;
    QString pharmacy;
    QString day;
    QString card;
    int personCode = 0;
    QString dateOfBirth;
};

QString headItem(const claims::Reading& reading, QLatin1StringView name) {
    for (const claims::ReadField& field : reading.fields) {
        if (field.segment.isEmpty() && field.code.isEmpty() && field.name == name) {
            return field.value.trimmed();
        }
    }
    return {};
}

QString segmentField(const claims::Reading& reading, const char16_t* code, const char16_t* in) {
    const claims::ReadField* field = reading.find(code, in);
    return field != nullptr ? field->value.trimmed() : QString();
}

std::optional<Inquiry> readInquiry(QString text) {
    while (text.endsWith(u'\n') || text.endsWith(u'\r')) text.chop(1);
    const claims::Reading reading = claims::readLayout(claims::eligibilityLayout(), text);
    if (!reading.problems.isEmpty()) return std::nullopt;
    Inquiry inquiry;
    inquiry.bin = headItem(reading, QLatin1StringView("Bank identification number"));
    inquiry.pcn = headItem(reading, QLatin1StringView("Processor control number"));
    inquiry.pharmacy = headItem(reading, QLatin1StringView("Service provider ID"));
    inquiry.day = headItem(reading, QLatin1StringView("Date of service"));
    inquiry.card = segmentField(reading, u"C2", u"AM04");
    inquiry.personCode = static_cast<int>(conv::Val(segmentField(reading, u"C3", u"AM04")));
    inquiry.dateOfBirth = segmentField(reading, u"C4", u"AM01");
    return inquiry;
}

// A day of coverage in YYYYMMDD compares as text.
bool coversOn(const Member& member, const QString& day) {
    return member.covered && (member.coveredFrom.isEmpty() || member.coveredFrom <= day) &&
           (member.coveredThrough.isEmpty() || day <= member.coveredThrough);
}

struct Coverage {
    const Plan* plan;
    const Member* member;
};

// The member of the plan the request names, or the codes that say why there is none.
std::variant<Coverage, QStringList> askedMember(const Payers& payers, const Inquiry& inquiry) {
    const auto plan = std::find_if(payers.plans.begin(), payers.plans.end(), [&](const Plan& p) {
        return p.bin == inquiry.bin && p.pcn == inquiry.pcn;
    });
    if (plan == payers.plans.end()) {
        const bool binKnown = std::any_of(payers.plans.begin(), payers.plans.end(),
                                          [&](const Plan& p) { return p.bin == inquiry.bin; });
        return QStringList{QString(binKnown ? kUnknownPcn : kUnknownBin)};
    }
    QList<const Member*> cards;
    for (const Member& member : plan->members) {
        if (member.cardholderId == inquiry.card) cards.append(&member);
    }
    if (cards.isEmpty()) return QStringList{QString(kNoCard)};
    const auto person = std::find_if(cards.begin(), cards.end(), [&](const Member* m) {
        return m->personCode == inquiry.personCode;
    });
    QStringList codes;
    if (person == cards.end()) codes.append(kNoPersonCode);
    const Member* member = person == cards.end() ? cards.front() : *person;
    if (member->dateOfBirth != inquiry.dateOfBirth) codes.append(kWrongBirthDate);
    if (codes.isEmpty() && !coversOn(*member, inquiry.day)) codes.append(kNotCovered);
    if (!codes.isEmpty()) return codes;
    return Coverage{&*plan, member};
}

// Every plan that covers the same person (name and date of birth; a member without a name
// is only itself) on the day, in the members' payer order, then as the payer file lists
// them.
QList<Coverage> coveringPlans(const Payers& payers, const Member& asked, const QString& day) {
    QList<Coverage> found;
    for (const Plan& plan : payers.plans) {
        for (const Member& member : plan.members) {
            const bool samePerson =
                &member == &asked || (!asked.name.isEmpty() && member.name == asked.name &&
                                      member.dateOfBirth == asked.dateOfBirth);
            if (samePerson && coversOn(member, day)) {
                found.append({&plan, &member});
            }
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Coverage& a, const Coverage& b) {
        return a.member->payerOrder < b.member->payerOrder;
    });
    return found;
}

// One plan as a list: a label, then BIN, PCN, group, member ID, person code and the plan's
// telephone, each with its label before a ":". A Medicare plan named first carries one
// entry more behind its label, which names it as such; the pharmacy's report passes over it.
QString planList(const Coverage& coverage, bool primary) {
    const Plan& plan = *coverage.plan;
    const bool medicare = primary && plan.medicare;
    const QString label =
        primary ? QStringLiteral("PRIMARY COVERAGE") : QStringLiteral("SECONDARY COVERAGE");
    QStringList entries{medicare ? QString(kMedicareLabel) + u' ' + label : label};
    if (medicare) entries.append(QStringLiteral("PLAN:") + plan.name);
    entries.append(QStringLiteral("BIN:") + plan.bin);
    entries.append(QStringLiteral("PCN:") + plan.pcn);
    entries.append(QStringLiteral("GROUP:") + plan.group.value_or(QString()));
    entries.append(QStringLiteral("ID:") + coverage.member->cardholderId);
    entries.append(QStringLiteral("PC:") +
                   QStringLiteral("%1").arg(coverage.member->personCode, 2, 10, QLatin1Char('0')));
    entries.append(QStringLiteral("PHONE:") + plan.helpDesk);
    return entries.join(u';');
}

// The primary plan's list, "&", and the secondary's when there is one.
QString planMessage(const QList<Coverage>& plans) {
    QString message = planList(plans.front(), true) + u'&';
    if (plans.size() > 1) message += planList(plans.at(1), false);
    return message;
}

class Response {
public:
    Response(const Inquiry& inquiry, bool headerRejected) {
        text_ = QString(kStart) + QLatin1StringView("51") + kEligibilityCode + u'1' +
                (headerRejected ? u'R' : u'A') +
                inquiry.pharmacy.leftJustified(kPharmacyWidth, u' ', true) +
                inquiry.day.leftJustified(8, u' ', true) + kGroup;
    }
    void open(const char* code) {
        text_ += kSegment;
        field(u"AM", QString::fromLatin1(code));
    }
    void field(QStringView code, const QString& value) {
        text_ += kField;
        text_ += code;
        text_ += value;
    }
    QByteArray bytes() const { return (text_ + kEnd).toLatin1(); }

private:
    QString text_;
};

Switch::Reply approved(const Inquiry& inquiry, const QList<Coverage>& plans) {
    const QString message = planMessage(plans);
    Response response(inquiry, false);
    response.open("20");
    response.field(u"F4", message.left(kMessageWidth));
    response.open("21");
    response.field(u"AN", QStringLiteral("A"));
    response.field(u"FQ", message.mid(kMessageWidth));
    response.field(u"8F", plans.front().plan->helpDesk);
    response.field(u"7F", kHelpDeskQualifier);
    return {response.bytes(), QStringLiteral("51 eligibility: A, %1 plan(s)").arg(plans.size())};
}

Switch::Reply rejected(const Inquiry& inquiry, const QStringList& codes, const QString& helpDesk) {
    const bool header = codes.contains(kUnknownBin) || codes.contains(kUnknownPcn) ||
                        codes.contains(kNoTransmission);
    Response response(inquiry, header);
    response.open("21");
    response.field(u"AN", QStringLiteral("R"));
    response.field(u"FA", QString::number(codes.size()));
    for (const QString& code : codes) response.field(u"FB", code);
    response.field(u"FQ", QStringLiteral("ELIGIBILITY NOT CONFIRMED"));
    response.field(u"8F", helpDesk);
    response.field(u"7F", kHelpDeskQualifier);
    return {response.bytes(), QStringLiteral("51 eligibility: R ") + codes.join(u' ')};
}

QString helpDeskOf(const Payers& payers, const Inquiry& inquiry) {
    for (const Plan& plan : payers.plans) {
        if (plan.bin == inquiry.bin) return plan.helpDesk;
    }
    return {};
}

}  // namespace

bool isEligibilityRequest(const QByteArray& request) {
    return request.startsWith(char(mdlMain::kStartOfText)) &&
           QLatin1StringView(request.mid(kCodeAt, kEligibilityCode.size())) == kEligibilityCode;
}

Switch::Reply answerEligibility(const QByteArray& request, const Payers& payers) {
    const std::optional<Inquiry> inquiry = readInquiry(QString::fromLatin1(request));
    if (!inquiry) return rejected(Inquiry{}, {QString(kNoTransmission)}, {});
    const auto asked = askedMember(payers, *inquiry);
    if (const auto* codes = std::get_if<QStringList>(&asked)) {
        return rejected(*inquiry, *codes, helpDeskOf(payers, *inquiry));
    }
    const Coverage& coverage = std::get<Coverage>(asked);
    return approved(*inquiry, coveringPlans(payers, *coverage.member, inquiry->day));
}

}  // namespace tvrx::sw
