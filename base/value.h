// base/: values, dates, numbers, texts, errors and members by name, with no knowledge of the domain. Here:
// the tagged value that crosses every boundary of the module, and its conversions by automation's rules:
// round half to even, overflow is an error, Null where a number or a text is needed is an error, booleans are
// -1/0. None of them depends on the locale: the decimal mark is always a point.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/date.h"
#include "base/error.h"

namespace zuvi {

class Object;
using ObjectPtr = std::shared_ptr<Object>;

struct Empty {
  friend bool operator==(Empty, Empty) = default;
};
struct Null {
  friend bool operator==(Null, Null) = default;
};

/// A type tag and a value. A default value is Empty; a null object pointer is the reference Nothing.
class Value {
 public:
  using Data =
      std::variant<Empty, Null, std::int16_t, std::int32_t, double, std::string, Date, bool, ObjectPtr>;

  Value() = default;
  // By assignment: a copy constructor of this variant that runs out of memory would, with libstdc++ 12,
  // destroy a value that was never made.
  Value(const Value& other) : Value() { data_ = other.data_; }
  Value(Value&&) noexcept = default;
  Value& operator=(const Value&) = default;
  Value& operator=(Value&&) noexcept = default;
  ~Value() = default;
  Value(Empty) {}                                       // NOLINT: a value is made of what it holds
  Value(Null n) : data_(n) {}                           // NOLINT
  Value(std::int16_t n) : data_(n) {}                   // NOLINT
  Value(std::int32_t n) : data_(n) {}                   // NOLINT
  Value(double n) : data_(n) {}                         // NOLINT
  Value(std::string s) : data_(std::move(s)) {}         // NOLINT
  Value(std::string_view s) : data_(std::string(s)) {}  // NOLINT
  Value(const char* s) : data_(std::string(s)) {}       // NOLINT
  Value(Date f) : data_(f) {}                           // NOLINT
  Value(bool b) : data_(b) {}                           // NOLINT
  Value(ObjectPtr o) : data_(std::move(o)) {}           // NOLINT
  template <class T>
  requires std::is_base_of_v<Object, T> &&(!std::is_same_v<T, Object>)Value(std::shared_ptr<T> o)
      : data_(ObjectPtr(std::move(o))) {}  // NOLINT

  bool IsEmpty() const { return std::holds_alternative<Empty>(data_); }
  bool IsNull() const { return std::holds_alternative<Null>(data_); }
  bool IsObject() const { return std::holds_alternative<ObjectPtr>(data_); }
  const Data& Get() const { return data_; }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  Data data_;
};

/// A visitor of `Value::Get()` made of one function per type.
template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

/// The value itself or, of an object, its default value. Throws HostError: ObjectNotSet for Nothing,
/// TypeMismatch where the default is an object again, or what the object throws.
Value PlainValue(const Value& value);

/// Round half to even. Throws HostError (Overflow) outside the range or for NaN.
std::int16_t RoundToInt16(double number);
std::int32_t RoundToInt32(double number);

/// Conversions. All throw HostError: TypeMismatch for a text that is no number or a value of another kind,
/// InvalidUseOfNull for Null, Overflow out of range. Empty is 0, "" or false. An object gives its default
/// value.
double ToNumber(const Value& value);
/// The same where a missing or unreadable number is not worth an error: 0.
double NumberOrZero(const Value& value) noexcept;
std::int32_t ToInt32(const Value& value);
std::int16_t ToInt16(const Value& value);
bool ToBool(const Value& value);
Date ToDate(const Value& value);
/// Numbers with up to 15 significant digits and a decimal point; booleans "True"/"False"; dates as
/// `Date::Texto`.
std::string ToText(const Value& value);
/// The object of a reference; null for Nothing. Throws TypeMismatch for anything else (Empty included).
ObjectPtr ToObject(const Value& value);

/// A whole number in decimal, as it is appended to a statement.
std::string Decimal(std::int32_t number);
/// A real number as text, by the same rule as `ToText`.
std::string NumberText(double number);
/// An amount with two decimals, halves rounded away from zero, and a comma between groups of three digits:
/// "-1,234.50". What is not finite is written as `NumberText` does.
std::string GroupedAmount(double amount);
/// A number out of a text with a decimal point; blanks around it are allowed. Throws TypeMismatch or
/// Overflow.
double ParseNumber(std::string_view text);

}  // namespace zuvi
