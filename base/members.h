// The table of members that a class publishes: name -> getter, setter or method, with the argument
// conversions done once, from the C++ signature. Example:
//
//   const MemberTable* Reloj::Members() const {
//     static const MemberTable table = MemberTable::Of<Reloj>()
//         .Property<&Reloj::Hora, &Reloj::SetHora>("Hora")
//         .Method<&Reloj::Avanza>("Avanza", {"minutos"});
//     return &table;
//   }
//
// An argument of type `T&` (not const) is in/out: it is converted before the call and written back after it.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "base/object.h"

namespace zuvi {

/// How one C++ type is taken out of a Value and put into one. Specialise it for further types (service
/// pointers).
template <class T>
struct Conversion;
template <>
struct Conversion<Value> {
  static Value From(const Value& v) { return v; }
};
template <>
struct Conversion<std::string> {
  static std::string From(const Value& v) { return ToText(v); }
};
template <>
struct Conversion<std::int32_t> {
  static std::int32_t From(const Value& v) { return ToInt32(v); }
};
template <>
struct Conversion<std::int16_t> {
  static std::int16_t From(const Value& v) { return ToInt16(v); }
};
template <>
struct Conversion<double> {
  static double From(const Value& v) { return ToNumber(v); }
};
template <>
struct Conversion<bool> {
  static bool From(const Value& v) { return ToBool(v); }
};
template <>
struct Conversion<Date> {
  static Date From(const Value& v) { return ToDate(v); }
};
template <>
struct Conversion<ObjectPtr> {
  // Empty stands for an argument left out, which for an object is Nothing.
  static ObjectPtr From(const Value& v) { return v.IsEmpty() ? nullptr : ToObject(v); }
};

namespace detail {

/// A pointer to a method of a class derived from Object; its type is known to the function that calls it.
using AnyMethod = std::array<std::byte, sizeof(void (Object::*)())>;

/// One argument converted; a failure tells which one it was.
template <class T>
[[gnu::noinline]] T ConvertArgument(std::span<Value> args, std::size_t index) {
  static const Value kMissing;
  try {
    return Conversion<T>::From(index < args.size() ? args[index] : kMissing);
  } catch (const HostError& error) {
    throw ArgumentError(error, index);
  }
}

/// What the signature of a method comes to.
template <class Method, class R, class... A>
struct SignatureOf {
  using Erased = Method;
  static constexpr std::size_t kArguments = sizeof...(A);
  static constexpr ByRef kInOut = [] {
    ByRef mask = 0, bit = 1;
    ((mask |= std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>> ? bit : 0,
      bit <<= 1),
     ...);
    return mask;
  }();

  /// Calls a method of this signature with the arguments converted, missing ones as Empty, and writes the
  /// in/out ones back.
  static Value Call(Object& target, const AnyMethod& method, std::span<Value> args) {
    return CallWith(target, std::bit_cast<Method>(method), args, std::index_sequence_for<A...>());
  }

 private:
  template <std::size_t... I>
  static Value CallWith(Object& target, Method method, std::span<Value> args, std::index_sequence<I...>) {
    std::tuple<std::remove_cvref_t<A>...> in{ConvertArgument<std::remove_cvref_t<A>>(args, I)...};
    Value result;
    if constexpr (std::is_void_v<R>)
      (target.*method)(std::get<I>(in)...);
    else
      result = Value((target.*method)(std::get<I>(in)...));
    if constexpr (kInOut != 0)
      ((kInOut >> I & 1u && I < args.size() ? void(args[I] = Value(std::get<I>(in))) : void()), ...);
    return result;
  }
};

/// The signature of a method, the same for all classes: what is compiled for it is compiled once.
template <class Method>
struct Signature;
template <class R, class C, class... A>
struct Signature<R (C::*)(A...)> : SignatureOf<R (Object::*)(A...), R, A...> {
  using Own = R (C::*)(A...);
};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const> : SignatureOf<R (Object::*)(A...) const, R, A...> {
  using Own = R (C::*)(A...) const;
};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...) const> {};

}  // namespace detail

/// A method that can be called with values.
class BoundMethod {
 public:
  BoundMethod() = default;
  /// `method` belongs to a class derived from Object, and is called on objects of that class alone.
  template <class Method>
  static BoundMethod Of(Method method) {
    using S = detail::Signature<Method>;
    BoundMethod bound;
    bound.method_ = std::bit_cast<detail::AnyMethod>(
        static_cast<typename S::Erased>(static_cast<typename S::Own>(method)));
    bound.call_ = &S::Call;
    bound.arguments_ = S::kArguments;
    bound.in_out_ = S::kInOut;
    return bound;
  }

  explicit operator bool() const { return call_ != nullptr; }
  std::size_t Arguments() const { return arguments_; }
  ByRef InOut() const { return in_out_; }
  Value operator()(Object& target, std::span<Value> args) const { return call_(target, method_, args); }

 private:
  detail::AnyMethod method_{};
  Value (*call_)(Object&, const detail::AnyMethod&, std::span<Value>) = nullptr;
  std::size_t arguments_ = 0;
  ByRef in_out_ = 0;
};

/// What of a member its caller has to know; `in_out` tells the arguments that are written back.
struct Member {
  std::string_view name;
  MemberId id = 0;
  std::vector<std::string_view> params;
  std::size_t min_args = 0;
  ByRef in_out = 0;
  bool property = false;
  BoundMethod read, write;
};

template <class T>
class MemberTableBuilder;

/// Published members of one class, in order; ids count from 1 unless given.
class MemberTable {
 public:
  using Params = std::initializer_list<std::string_view>;

  template <class T>
  static MemberTableBuilder<T> Of() {
    return {};
  }
  const Member* ByName(std::string_view name) const;
  const Member* ById(MemberId id) const;
  const std::vector<Member>& All() const { return members_; }

  /// Throws std::logic_error when the parameters are not as many as the signatures have.
  void AddMethod(std::string_view name, const BoundMethod& method, Params params, std::size_t optional);
  void AddProperty(std::string_view name, const BoundMethod& getter, const BoundMethod& setter,
                   Params params);
  void MakeLastDefault() { members_.back().id = kDefaultMember; }

 private:
  Member& Add(std::string_view name, const BoundMethod& read, Params params);
  std::vector<Member> members_;
  std::unordered_map<std::string, std::size_t> by_name_;
};

/// Fills a table for class T. Names must outlive the table (literals).
template <class T>
class MemberTableBuilder {
 public:
  using Params = MemberTable::Params;

  MemberTableBuilder() = default;
  /// Goes on with a table that has members already.
  explicit MemberTableBuilder(MemberTable&& table) : table_(std::move(table)) {}

  /// A method with its parameter names; the last `optional` ones may be left out (they arrive as Empty's
  /// conversion).
  template <auto method>
  MemberTableBuilder&& Method(std::string_view name, Params params = {}, std::size_t optional = 0) && {
    table_.AddMethod(name, Bound<method>(), params, optional);
    return std::move(*this);
  }
  template <auto getter>
  MemberTableBuilder&& Property(std::string_view name, Params params = {}) && {
    table_.AddProperty(name, Bound<getter>(), {}, params);
    return std::move(*this);
  }
  template <auto getter, auto setter>
  MemberTableBuilder&& Property(std::string_view name, Params params = {}) && {
    table_.AddProperty(name, Bound<getter>(), Bound<setter>(), params);
    return std::move(*this);
  }
  /// Makes the member added last the default one (id 0).
  MemberTableBuilder&& AsDefault() && {
    table_.MakeLastDefault();
    return std::move(*this);
  }
  operator MemberTable() && { return std::move(table_); }  // NOLINT: ends the chain

 private:
  /// A method of T or a base of it.
  template <auto method>
  static BoundMethod Bound() {
    return BoundMethod::Of(method);
  }

  MemberTable table_;
};

}  // namespace zuvi
