#pragma once

#include "responses/ResponseValues.h"

#include <QLatin1StringView>
#include <QString>
#include <QtGlobal>

#include <array>

// Where a payer's response keeps each value, and the words the decoding gives them. All
// positions are 1-based character positions in the response text.
namespace tvrx::response {

// A stretch of the response text: its first position and its length.
struct Span {
    qsizetype position;
    qsizetype length;
};

// ---- Every response ----------------------------------------------------------------

// A response text opens with one of these bytes.
inline constexpr char16_t kStartByte = 2;
inline constexpr char16_t kAlternativeStartByte = 224;
inline constexpr Span kVersion{2, 2};
inline constexpr Span kTransactionCode{4, 2};
// "R" here: the payer rejected the whole transmission (in a fixed-format reversal, the
// reversal's own status).
inline constexpr Span kHeaderStatus{6, 1};
inline constexpr QLatin1StringView kHeaderRejected("R");

inline constexpr QLatin1StringView kVersion51("51");
// Version "40" responses are shorter: a shorter message and no DUR block.
inline constexpr QLatin1StringView kVersion40("40");
inline constexpr QLatin1StringView kReversalCode51("B2");
inline constexpr QLatin1StringView kReversalCodeFixed("11");

// The reject code by which a payer says it has already paid this claim.
inline constexpr QLatin1StringView kDuplicateReject("83");
// Descriptions of rejects are cut to this length (not in fixed-format reversals).
inline constexpr qsizetype kDescriptionLength = 50;

// The table of reject codes in the lookup database.
inline constexpr QLatin1StringView kRejectQuery("Select * From Reject");
inline constexpr QLatin1StringView kRejectCodeColumn("Code");
inline constexpr QLatin1StringView kRejectDescriptionColumn("Description");

// ---- Status letters and the words they become ---------------------------------------

inline constexpr QLatin1StringView kStatusPaid("P");
inline constexpr QLatin1StringView kStatusDuplicate("D");
inline constexpr QLatin1StringView kStatusCaptured("C");
inline constexpr QLatin1StringView kStatusRejected("R");
inline constexpr QLatin1StringView kStatusAccepted("A");

inline constexpr QLatin1StringView kWordPaid("PAID");
inline constexpr QLatin1StringView kWordDuplicate("DUPLICATE");
inline constexpr QLatin1StringView kWordCaptured("CAPTURED");
inline constexpr QLatin1StringView kWordRejected("REJECTED");
inline constexpr QLatin1StringView kWordSuccess("SUCCESS");
inline constexpr QLatin1StringView kReferenceReversed("REVERSED");
inline constexpr QLatin1StringView kReferenceReversalRejected("REVERSAL REJECTED");

// The paid statuses: the payer pays (or has paid, or holds) the claim.
struct PaidWord {
    QLatin1StringView status;
    QLatin1StringView word;
};
inline constexpr std::array kPaidWords{
    PaidWord{kStatusPaid, kWordPaid},
    PaidWord{kStatusCaptured, kWordCaptured},
    PaidWord{kStatusDuplicate, kWordDuplicate},
};

// ---- Boxes of the common start ------------------------------------------------------

inline constexpr QLatin1StringView kBoxLookupFailed("Failed to connect to lookup database");
inline constexpr QLatin1StringView kBoxNoRejectCodes(
    "No Reject Codes Found. Contact technical support");
inline constexpr QLatin1StringView kBoxClaimNotSet(
    "Claim property for Response Object was not set");
inline constexpr QLatin1StringView kBoxBadStartBefore(
    "Did not get start of of claim response. Character value is ");
inline constexpr QLatin1StringView kBoxBadStartAfter("and it should be either 224 or &H2");
inline constexpr QLatin1StringView kLineBreak("\r\n");

// ---- Fixed-format claim (versions "32", "40" and others) -----------------------------

inline constexpr Span kFixedStatus{8, 1};
// Paid and duplicate claims: five over-punched amounts, then the reference and messages.
struct FixedAmount {
    Span span;
    double ResponseValues::*amount;
};
inline constexpr std::array kFixedAmounts{
    FixedAmount{{9, 6}, &ResponseValues::Copay},
    FixedAmount{{15, 6}, &ResponseValues::Cost},
    FixedAmount{{21, 6}, &ResponseValues::Fee},
    FixedAmount{{27, 6}, &ResponseValues::SalesTax},
    FixedAmount{{33, 6}, &ResponseValues::TotalPaid},
};
inline constexpr Span kFixedReference{39, 14};
inline constexpr Span kFixedMessage{53, 42};
inline constexpr Span kFixedMessage40{53, 40};
inline constexpr Span kFixedMessageTwo{351, 42};
inline constexpr Span kFixedPaidDur{188, 160};
// Captured claims.
inline constexpr Span kCapturedReference40{9, 14};
inline constexpr Span kCapturedDur{105, 160};
// In a captured "40" response the messages follow position 105 when the text is longer
// than this; they are cut after the second full stop.
inline constexpr qsizetype kCapturedMessagesAfter = 100;
inline constexpr qsizetype kCapturedTailPosition = 106;
inline constexpr qsizetype kCapturedTailShorterBy = 102;
inline constexpr QLatin1StringView kFullStop(".");
// Rejected claims: the count, then the codes two by two from position 11.
inline constexpr Span kRejectCount{9, 2};
inline constexpr qsizetype kRejectCodesFrom = 9;
inline constexpr qsizetype kRejectCodeLength = 2;
inline constexpr Span kRejectMessage{51, 42};
inline constexpr Span kRejectReference{51, 20};
inline constexpr Span kRejectDur{96, 160};
inline constexpr qsizetype kRejectMessageTwoPosition40 = 96;
inline constexpr qsizetype kRejectMessageTwoShorterBy40 = 88;

// ---- Fixed-format reversal ----------------------------------------------------------

inline constexpr Span kReversalStatus{6, 1};
inline constexpr Span kReversalMessage{29, 73};
inline constexpr Span kReversalRejectCount{7, 2};
inline constexpr qsizetype kReversalRejectCodesFrom = 7;

// ---- Format "51" --------------------------------------------------------------------

// Field codes; each field is the field separator, the code and the value.
inline constexpr QLatin1StringView kFieldMessage("F4");
inline constexpr QLatin1StringView kFieldAdditionalMessage("FQ");
inline constexpr QLatin1StringView kFieldPhone("8F");
inline constexpr QLatin1StringView kFieldPrescriptionRef("D2");
inline constexpr QLatin1StringView kFieldPreferredProductCount("9F");
inline constexpr QLatin1StringView kFieldPreferredProductID("AR");
inline constexpr QLatin1StringView kFieldStatus("AN");
inline constexpr QLatin1StringView kFieldRejectCount("FA");
inline constexpr QLatin1StringView kFieldRejectCode("FB");
// The DUR segment: segment separator, then field separator and "AM24" (the code the segment
// is searched by). What the search returns starts three characters into that code, so those
// three are dropped.
inline constexpr QLatin1StringView kDurSegmentCode(
    "\x1c"
    "AM24");
inline constexpr qsizetype kDurSegmentSkip = 3;
inline constexpr QLatin1StringView kPhonePrefix(" PHONE:");

// A value starts this many characters after its field separator.
inline constexpr qsizetype kValueOffset = 3;
inline constexpr qsizetype kRejectCount51Length = 2;

// The paid fields of a "51" claim, in the order they are read, and where each goes.
enum class Decoding { Text, OverPunch, Number };
struct PaidField {
    QLatin1StringView code;
    Decoding decoding;
    QString ResponseValues::*text = nullptr;
    double ResponseValues::*amount = nullptr;
};
inline constexpr std::array kPaidFields51{
    PaidField{QLatin1StringView("FO"), Decoding::Text, &ResponseValues::PlanID},
    PaidField{QLatin1StringView("F3"), Decoding::Text, &ResponseValues::Reference},
    PaidField{QLatin1StringView("F5"), Decoding::OverPunch, nullptr, &ResponseValues::Copay},
    PaidField{QLatin1StringView("F6"), Decoding::OverPunch, nullptr, &ResponseValues::Cost},
    PaidField{QLatin1StringView("F7"), Decoding::OverPunch, nullptr, &ResponseValues::Fee},
    PaidField{QLatin1StringView("FL"), Decoding::OverPunch, nullptr, &ResponseValues::IncentiveFee},
    PaidField{QLatin1StringView("AV"), Decoding::Text, &ResponseValues::TaxExemptIndicator},
    PaidField{QLatin1StringView("J2"), Decoding::Number, nullptr,
              &ResponseValues::OtherAmountCount},
    PaidField{QLatin1StringView("J3"), Decoding::Text, &ResponseValues::OtherAmountQualifier},
    PaidField{QLatin1StringView("J4"), Decoding::OverPunch, nullptr,
              &ResponseValues::OtherAmountPaid},
    PaidField{QLatin1StringView("F9"), Decoding::OverPunch, nullptr, &ResponseValues::TotalPaid},
    PaidField{QLatin1StringView("FM"), Decoding::Text, &ResponseValues::BasisOfReimbursement},
    PaidField{QLatin1StringView("AX"), Decoding::OverPunch, nullptr, &ResponseValues::SalesTax},
    PaidField{QLatin1StringView("HE"), Decoding::OverPunch, nullptr,
              &ResponseValues::PercetSalesTaxSub},
    PaidField{QLatin1StringView("FI"), Decoding::OverPunch, nullptr, &ResponseValues::Coinsurance},
};

// ---- DUR findings -------------------------------------------------------------------

// The coded DUR fields are turned into words through one table of five slots, loaded with
// the list of the field about to be read. A list fills only its own slots: what another
// list left in the others stays there.
inline constexpr int kDurSlots = 5;
struct DurList {
    QLatin1StringView prefix;
    std::array<QLatin1StringView, kDurSlots> words;
    int length;  // how many slots the list fills
    // Codes beyond the list are ignored; for the other lists every code above 0 reads a
    // slot, and one beyond the fifth does not exist.
    bool ignoresOtherCodes;
};
inline constexpr DurList kSeverityList{
    QLatin1StringView("SEVERITY = "),
    {QLatin1StringView("MAJOR"), QLatin1StringView("MODERATE"), QLatin1StringView("MINOR")},
    3,
    false};
inline constexpr DurList kWhereFilledList{
    QLatin1StringView("FILLED PREVIOUSLY AT "),
    {QLatin1StringView("YOUR PHARMACY"), QLatin1StringView("OTHER PHARMACY IN SAME CHAIN"),
     QLatin1StringView("OTHER PHARMACY")},
    3,
    false};
inline constexpr DurList kDatabaseList{
    QLatin1StringView("DATABASE = "),
    {QLatin1StringView("FIRST DATA BANK"), QLatin1StringView("MEDI-SPAN"),
     QLatin1StringView("REDBOOK"), QLatin1StringView("PROCESSOR DEVELOPED"),
     QLatin1StringView("OTHER")},
    5,
    true};
inline constexpr DurList kPrescriberList{
    QLatin1StringView("PRESCRIBER = "),
    {QLatin1StringView("SAME PRESCRIBER"), QLatin1StringView("OTHER PRESCRIBER")},
    2,
    true};

inline constexpr QLatin1StringView kLastFillDatePhrase("FILLED LAST ");
inline constexpr QLatin1StringView kLastFillQtyPhrase("LAST FILL QUANTITY ");
inline constexpr QLatin1StringView kMessagePhrase("DUR MESSAGE ");
// A free text of "0" is no message.
inline constexpr QLatin1StringView kNoMessage("0");

// The fields of a finding. Fixed formats keep three records of 53 characters in a block,
// then one character; format "51" keeps repeating groups of coded fields.
enum class DurField { Reason, Severity, WhereFilled, Date, Quantity, Database, Prescriber, Text };
struct DurFieldPlace {
    Span fixed;  // offset within a fixed-format record, from 1
    QLatin1StringView code51;
};
inline constexpr std::array<DurFieldPlace, 8> kDurFields{
    DurFieldPlace{{1, 2}, QLatin1StringView("E4")},
    DurFieldPlace{{3, 1}, QLatin1StringView("FS")},
    DurFieldPlace{{4, 1}, QLatin1StringView("FT")},
    DurFieldPlace{{5, 8}, QLatin1StringView("FU")},
    DurFieldPlace{{13, 5}, QLatin1StringView("FV")},
    DurFieldPlace{{18, 1}, QLatin1StringView("FW")},
    DurFieldPlace{{19, 1}, QLatin1StringView("FX")},
    DurFieldPlace{{20, 30}, QLatin1StringView("FY")},
};
constexpr const DurFieldPlace& placeOf(DurField field) {
    return kDurFields[static_cast<std::size_t>(field)];
}

inline constexpr int kFixedDurRecords = 3;
inline constexpr qsizetype kFixedDurRecordLength = 53;
// Position 160 of the block: "2" asks the pharmacist to call the processor.
inline constexpr Span kDurExtraCode{160, 1};
inline constexpr double kDurExtraCallProcessor = 2;
inline constexpr QLatin1StringView kDurExtraText("CALL PROCESSOR FOR FURTHER INFORMATION");

// Format "51": each group is opened by a counter field ("J6", else "7E") whose value is
// the group's number.
inline constexpr std::array kDurCounterCodes{QLatin1StringView("J6"), QLatin1StringView("7E")};
inline constexpr QLatin1StringView kDurGroupClose(":");

}  // namespace tvrx::response
