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

#include <cstdint>
#include <functional>
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
  static std::string From(const Value& v) { return ATexto(v); }
};
template <>
struct Conversion<std::int32_t> {
  static std::int32_t From(const Value& v) { return AEntero32(v); }
};
template <>
struct Conversion<std::int16_t> {
  static std::int16_t From(const Value& v) { return AEntero16(v); }
};
template <>
struct Conversion<double> {
  static double From(const Value& v) { return ANumero(v); }
};
template <>
struct Conversion<bool> {
  static bool From(const Value& v) { return ABooleano(v); }
};
template <>
struct Conversion<Fecha> {
  static Fecha From(const Value& v) { return AFecha(v); }
};
template <>
struct Conversion<ObjectPtr> {
  // Empty stands for an argument left out, which for an object is Nothing.
  static ObjectPtr From(const Value& v) { return v.IsEmpty() ? nullptr : AObjeto(v); }
};

/// What of a member its caller has to know; `in_out` tells the arguments that are written back.
struct Member {
  std::string_view name;
  MemberId id = 0;
  std::vector<std::string_view> params;
  std::size_t min_args = 0;
  ByRef in_out = 0;
  bool property = false;
  std::function<Value(Object&, std::span<Value>)> read;
  std::function<void(Object&, std::span<Value>)> write;
};

namespace detail {

template <class F>
struct Signature;
template <class R, class C, class... A>
struct Signature<R (C::*)(A...)> {
  using Result = R;
  using Stored = std::tuple<std::remove_cvref_t<A>...>;
  static constexpr ByRef kInOut = [] {
    ByRef mask = 0, bit = 1;
    ((mask |= std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>> ? bit : 0,
      bit <<= 1),
     ...);
    return mask;
  }();
};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};

template <class T>
Value ToValue(T&& value) {
  return Value(std::forward<T>(value));
}

/// One argument converted; a failure tells which one it was.
template <class T>
T ConvertArgument(const Value& value, std::size_t index) {
  try {
    return Conversion<T>::From(value);
  } catch (const HostError& error) {
    throw ArgumentError(error, index);
  }
}

/// Calls `method` on `target` with the arguments converted, missing ones as Empty, and writes the in/out ones
/// back.
template <auto method, class T>
Value Apply(Object& target, std::span<Value> args) {
  using S = Signature<decltype(method)>;
  using Stored = typename S::Stored;
  return [&]<std::size_t... I>(std::index_sequence<I...>)->Value {
    static const Value kMissing;
    Stored stored{
        ConvertArgument<std::tuple_element_t<I, Stored>>(I < args.size() ? args[I] : kMissing, I)...};
    const auto write_back = [&] {
      ((((S::kInOut >> I) & 1u) && I < args.size() ? void(args[I] = ToValue(std::get<I>(stored))) : void()),
       ...);
    };
    if constexpr (std::is_void_v<typename S::Result>) {
      (static_cast<T&>(target).*method)(std::get<I>(stored)...);
      write_back();
      return {};
    } else {
      Value result = ToValue((static_cast<T&>(target).*method)(std::get<I>(stored)...));
      write_back();
      return result;
    }
  }
  (std::make_index_sequence<std::tuple_size_v<Stored>>{});
}

}  // namespace detail

template <class T>
class MemberTableBuilder;

/// Published members of one class, in order; ids count from 1 unless given.
class MemberTable {
 public:
  template <class T>
  static MemberTableBuilder<T> Of() {
    return {};
  }
  const Member* ByName(std::string_view name) const;
  const Member* ById(MemberId id) const;
  const std::vector<Member>& All() const { return members_; }

 private:
  template <class T>
  friend class MemberTableBuilder;
  Member& Add(std::string_view name, std::initializer_list<std::string_view> params);
  std::vector<Member> members_;
  std::unordered_map<std::string, std::size_t> by_name_;
};

/// Fills a table for class T. Names must outlive the table (literals).
template <class T>
class MemberTableBuilder {
 public:
  /// A method with its parameter names; the last `optional` ones may be left out (they arrive as Empty's
  /// conversion).
  template <auto method>
  MemberTableBuilder&& Method(std::string_view name, std::initializer_list<std::string_view> params = {},
                              std::size_t optional = 0) && {
    Member& member = table_.Add(name, params);
    member.min_args = params.size() - optional;
    member.in_out = detail::Signature<decltype(method)>::kInOut;
    member.read = &detail::Apply<method, T>;
    return std::move(*this);
  }
  template <auto getter>
  MemberTableBuilder&& Property(std::string_view name,
                                std::initializer_list<std::string_view> params = {}) && {
    Member& member = table_.Add(name, params);
    member.min_args = params.size();
    member.property = true;
    member.read = &detail::Apply<getter, T>;
    return std::move(*this);
  }
  template <auto getter, auto setter>
  MemberTableBuilder&& Property(std::string_view name,
                                std::initializer_list<std::string_view> params = {}) && {
    Member& member = table_.Add(name, params);
    member.min_args = params.size();
    member.property = true;
    member.read = &detail::Apply<getter, T>;
    member.write = [](Object& o, std::span<Value> args) { detail::Apply<setter, T>(o, args); };
    return std::move(*this);
  }
  /// Makes the member added last the default one (id 0).
  MemberTableBuilder&& AsDefault() && {
    table_.members_.back().id = kDefaultMember;
    return std::move(*this);
  }
  operator MemberTable() && { return std::move(table_); }  // NOLINT: ends the chain

 private:
  MemberTable table_;
};

}  // namespace zuvi
