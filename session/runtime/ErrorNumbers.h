#pragma once

// Failure numbers as the host platform gave them. Several operations branch on them
// (a lost link shows the timed-out box, a time-out the "Connection Failure" box), so
// they are part of the library's behaviour, not an implementation detail.
namespace tvrx::err {

inline constexpr long InvalidProcedureCall = 5;
inline constexpr long Overflow = 6;
inline constexpr long OutOfMemory = 7;
inline constexpr long SubscriptOutOfRange = 9;
inline constexpr long DivisionByZero = 11;
inline constexpr long TypeMismatch = 13;
inline constexpr long InternalError = 51;
inline constexpr long BadFileNameOrNumber = 52;
inline constexpr long FileNotFound = 53;
inline constexpr long PathFileAccessError = 75;
inline constexpr long PathNotFound = 76;
inline constexpr long ObjectVariableNotSet = 91;
inline constexpr long InvalidUseOfNull = 94;
inline constexpr long CannotCreateObject = 429;
inline constexpr long DuplicateKey = 457;
inline constexpr long NoCurrentRecord = 3021;
inline constexpr long NotUpdatable = 3251;
inline constexpr long ItemNotFound = 3265;
inline constexpr long ObjectClosed = 3704;
inline constexpr long ObjectOpen = 3705;
inline constexpr long ConnectionUnusable = 3709;

// The database layer's numbers, in the signed form in which they reach a handler.
inline constexpr long LostLink = -2147467259;            // 0x80004005
inline constexpr long StatementError = -2147217900;      // 0x80040E14
inline constexpr long TimedOut = -2147217846;            // 0x80040E4A
inline constexpr long ConstraintViolated = -2147217873;  // 0x80040E2F

}  // namespace tvrx::err
