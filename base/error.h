// Errors as automation clients know them: a number, a text for the user, and for the database its own state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace zuvi {

/// Run-time error numbers of the automation world; their texts are given by `DescriptionOf`.
enum class ErrorNumber : std::int32_t {
  InvalidCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  OutOfStack = 28,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  CannotCreateObject = 429,
  NoSuchMember = 438,
  AutomationFailure = 440,
  WrongArgumentCount = 450,
};

/// The standard English text of an error number, e.g. "Type mismatch".
std::string DescriptionOf(ErrorNumber number);

/// Any failure of a host call, a conversion or the database. `what()` is the description shown to the user.
class HostError : public std::runtime_error {
 public:
  explicit HostError(ErrorNumber number) : std::runtime_error(DescriptionOf(number)), number_(number) {}
  explicit HostError(const std::string& description, ErrorNumber number = ErrorNumber::AutomationFailure,
                     std::int32_t native_code = 0, std::string sql_state = {})
      : std::runtime_error(description),
        number_(number),
        native_code_(native_code),
        state_(std::move(sql_state)) {}

  ErrorNumber Number() const { return number_; }
  /// The engine's or the system's own code (database error, HRESULT); 0 when there is none.
  std::int32_t NativeCode() const { return native_code_; }
  /// SQLSTATE of a database error, five characters; empty otherwise.
  const std::string& SqlState() const { return state_; }

 private:
  ErrorNumber number_;
  std::int32_t native_code_ = 0;
  std::string state_;
};

/// The stack is nearly used up. A type of its own, because it has to end the whole chain of nested calls.
class StackSpent final : public HostError {
 public:
  StackSpent() : HostError(ErrorNumber::OutOfStack) {}
};

/// An argument that does not convert to what its parameter needs; `Index` counts from 0 in declaration order.
class ArgumentError final : public HostError {
 public:
  ArgumentError(const HostError& error, std::size_t index) : HostError(error), index_(index) {}
  std::size_t Index() const { return index_; }

 private:
  std::size_t index_;
};

/// The description of the exception being handled, for `catch (...)`.
std::string CurrentDescription() noexcept;

}  // namespace zuvi
