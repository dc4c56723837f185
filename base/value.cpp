#include "base/value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/object.h"
#include "base/text.h"

namespace zuvi {
namespace {

template <class Integer>
Integer RoundTo(double number) {
  // nearbyint follows the rounding mode, which is half to even unless somebody changed it.
  const double rounded = std::nearbyint(number);
  if (!(rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Integer>::max())))
    throw HostError(ErrorNumber::Overflow);
  return static_cast<Integer>(rounded);
}

/// Of a number out of range, whether it is too near to 0 rather than too far from it.
bool TooSmall(std::string_view digits) {
  if (digits.starts_with('-')) digits.remove_prefix(1);
  const auto exponent = digits.find_first_of("eE");
  if (exponent != std::string_view::npos) return digits.substr(exponent + 1).starts_with('-');
  return digits.starts_with('0') || digits.starts_with('.');
}

}  // namespace

Value PlainValue(const Value& value) {
  if (!value.IsObject()) return value;
  const ObjectPtr object = ToObject(value);
  if (!object) throw HostError(ErrorNumber::ObjectNotSet);
  Value plain = object->Default();
  // An object whose default is again an object has no plain value; following it could go round for ever.
  if (plain.IsObject()) throw HostError(ErrorNumber::TypeMismatch);
  return plain;
}

std::int16_t RoundToInt16(double number) { return RoundTo<std::int16_t>(number); }
std::int32_t RoundToInt32(double number) { return RoundTo<std::int32_t>(number); }

double ToNumber(const Value& value) {
  return std::visit(
      Overloaded{
          [](Empty) { return 0.0; }, [](Null) -> double { throw HostError(ErrorNumber::InvalidUseOfNull); },
          [](std::int16_t n) { return static_cast<double>(n); },
          [](std::int32_t n) { return static_cast<double>(n); }, [](double n) { return n; },
          [](const std::string& s) { return ParseNumber(s); }, [](const Date& f) { return f.Serial(); },
          [](bool b) { return b ? -1.0 : 0.0; }, [](const ObjectPtr& o) { return ToNumber(PlainValue(o)); }},
      value.Get());
}

double NumberOrZero(const Value& value) noexcept {
  try {
    return value.IsNull() ? 0 : ToNumber(value);
  } catch (...) {
    return 0;
  }
}

std::int32_t ToInt32(const Value& value) {
  if (const auto* n = std::get_if<std::int32_t>(&value.Get())) return *n;
  return RoundToInt32(ToNumber(value));
}

std::int16_t ToInt16(const Value& value) {
  if (const auto* n = std::get_if<std::int16_t>(&value.Get())) return *n;
  return RoundToInt16(ToNumber(value));
}

bool ToBool(const Value& value) {
  if (const auto* b = std::get_if<bool>(&value.Get())) return *b;
  if (const auto* s = std::get_if<std::string>(&value.Get())) {
    if (EqualsIgnoringCase(*s, "True")) return true;
    if (EqualsIgnoringCase(*s, "False")) return false;
  }
  return ToNumber(value) != 0;
}

Date ToDate(const Value& value) {
  if (const auto* f = std::get_if<Date>(&value.Get())) return *f;
  if (const auto* s = std::get_if<std::string>(&value.Get())) return Date::FromText(Trim(*s));
  return Date::FromSerial(ToNumber(value));
}

std::string ToText(const Value& value) {
  return std::visit(
      Overloaded{[](Empty) { return std::string(); },
                 [](Null) -> std::string { throw HostError(ErrorNumber::InvalidUseOfNull); },
                 [](std::int16_t n) { return Decimal(n); }, [](std::int32_t n) { return Decimal(n); },
                 [](double n) { return NumberText(n); }, [](const std::string& s) { return s; },
                 [](const Date& f) { return f.Texto(); },
                 [](bool b) { return std::string(b ? "True" : "False"); },
                 [](const ObjectPtr& o) { return ToText(PlainValue(o)); }},
      value.Get());
}

ObjectPtr ToObject(const Value& value) {
  if (const auto* o = std::get_if<ObjectPtr>(&value.Get())) return *o;
  throw HostError(ErrorNumber::TypeMismatch);
}

std::string Decimal(std::int32_t number) { return std::to_string(number); }

std::string NumberText(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number < 0 ? "-Inf" : "Inf";
  // Quantities and amounts have few decimals: written as a whole number of millionths they take a fraction of
  // the time. If the quotient gives the number back, these are its first fifteen digits as well.
  const double millionths = std::nearbyint(std::abs(number) * 1e6);
  if ((millionths == 0 || millionths >= 100) && millionths < 1e15 && millionths / 1e6 == std::abs(number)) {
    const std::int64_t whole = static_cast<std::int64_t>(millionths) / 1'000'000;
    std::int64_t decimals = static_cast<std::int64_t>(millionths) % 1'000'000;
    std::string text = (number < 0 ? "-" : "") + std::to_string(whole);
    if (decimals > 0) {
      text += '.';
      for (std::int64_t unit = 100'000; decimals > 0; unit /= 10) {
        text += static_cast<char>('0' + decimals / unit);
        decimals %= unit;
      }
    }
    return text;
  }
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, 15).ptr;
  std::string text(buffer, end);
  const auto exponent = text.find('e');
  if (exponent != std::string::npos) text[exponent] = 'E';
  return text;
}

std::string GroupedAmount(double amount) {
  if (!std::isfinite(amount)) return NumberText(amount);
  constexpr int kSignificant = 15, kDecimals = 2;
  // d.dddE±x with the digits that texts of numbers have, so that 1.005 is the half it looks like.
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::abs(amount),
                                 std::chars_format::scientific, kSignificant - 1)
                       .ptr;
  const std::string_view written(buffer, static_cast<std::size_t>(end - buffer));
  int exponent = std::stoi(std::string(written.substr(written.find('e') + 1)));
  std::string digits = "0";  // room for a carry
  digits += written.substr(0, 1);
  digits += written.substr(2, kSignificant - 1);
  ++exponent;
  if (exponent < 0) {
    digits.insert(0, static_cast<std::size_t>(-exponent), '0');
    exponent = 0;
  }
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  const std::size_t kept = whole + kDecimals;
  if (digits.size() <= kept) digits.append(kept + 1 - digits.size(), '0');
  if (digits[kept] >= '5') {
    std::size_t at = kept;
    while (digits[--at] == '9') digits[at] = '0';
    ++digits[at];
  }
  digits.resize(kept);
  const std::size_t leading = std::min(digits.find_first_not_of('0'), whole - 1);
  std::string text = amount < 0 && digits.find_first_not_of('0') != std::string::npos ? "-" : "";
  for (std::size_t i = leading; i < kept; ++i) {
    if (i == whole) text += '.';
    if (i > leading && i < whole && (whole - i) % 3 == 0) text += ',';
    text += digits[i];
  }
  return text;
}

double ParseNumber(std::string_view text) {
  std::string_view digits = Trim(text);
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = end == digits.data() + digits.size();
  if (error == std::errc::result_out_of_range && whole) {
    if (TooSmall(digits)) return 0;
    throw HostError(ErrorNumber::Overflow);
  }
  if (error != std::errc{} || !whole || !std::isfinite(number)) throw HostError(ErrorNumber::TypeMismatch);
  return number;
}

}  // namespace zuvi
