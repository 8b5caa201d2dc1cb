#include "session/runtime/Failure.h"

#include "session/runtime/ErrorNumbers.h"

#include <array>
#include <utility>

namespace tvrx {

namespace {

struct NumberText {
    long number;
    const char* text;
};

constexpr std::array kStandardTexts{
    NumberText{err::InvalidProcedureCall, "Invalid procedure call or argument"},
    NumberText{err::Overflow, "Overflow"},
    NumberText{err::OutOfMemory, "Out of memory"},
    NumberText{err::SubscriptOutOfRange, "Subscript out of range"},
    NumberText{err::DivisionByZero, "Division by zero"},
    NumberText{err::TypeMismatch, "Type mismatch"},
    NumberText{err::InternalError, "Internal error"},
    NumberText{err::BadFileNameOrNumber, "Bad file name or number"},
    NumberText{err::FileNotFound, "File not found"},
    NumberText{err::PathFileAccessError, "Path/File access error"},
    NumberText{err::PathNotFound, "Path not found"},
    NumberText{err::ObjectVariableNotSet, "Object variable or With block variable not set"},
    NumberText{err::InvalidUseOfNull, "Invalid use of Null"},
    NumberText{err::CannotCreateObject, "ActiveX component can't create object"},
    NumberText{err::DuplicateKey,
               "This key is already associated with an element of this collection"},
    NumberText{err::NoCurrentRecord,
               "Either BOF or EOF is True, or the current record has been deleted. Requested "
               "operation requires a current record."},
    NumberText{err::NotUpdatable,
               "Current Recordset does not support updating. This may be a limitation of the "
               "provider, or of the selected locktype."},
    NumberText{err::ItemNotFound,
               "Item cannot be found in the collection corresponding to the requested name or "
               "ordinal."},
    NumberText{err::ObjectClosed, "Operation is not allowed when the object is closed."},
    NumberText{err::ObjectOpen, "Operation is not allowed when the object is open."},
    NumberText{err::ConnectionUnusable,
               "The connection cannot be used to perform this operation. It is either closed or "
               "invalid in this context."},
    NumberText{err::LostLink, "Unspecified error"},
    NumberText{err::TimedOut, "Query timeout expired"},
};

constexpr const char* kLibrarySource = "TVRX1";

}  // namespace

Failure::Failure(long number, QString description, QString source, qint32 line)
    : number_(number),
      description_(description.isEmpty() ? standardDescription(number) : std::move(description)),
      source_(source.isEmpty() ? QString::fromLatin1(kLibrarySource) : std::move(source)),
      line_(line),
      what_(QStringLiteral("%1 (%2)").arg(description_).arg(number_).toStdString()) {}

QString Failure::standardDescription(long number) {
    for (const auto& entry : kStandardTexts) {
        if (entry.number == number) return QString::fromLatin1(entry.text);
    }
    return QStringLiteral("Application-defined or object-defined error");
}

void fail(long number) {
    throw Failure(number);
}

void fail(long number, const QString& description, const QString& source) {
    throw Failure(number, description, source);
}

}  // namespace tvrx
