#include "automation/invoke.h"

#include <algorithm>
#include <vector>

#include "automation/com_error.h"
#include "automation/handles.h"
#include "automation/variants.h"
#include "base/members.h"

namespace zuvi {
namespace {

/// How far a surplus argument is handed on from default member to default member.
constexpr int kMaxForwards = 8;
constexpr WORD kPut = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

/// A refusal that is not an exception of the callee: the HRESULT itself is the answer.
struct Refusal {
  HRESULT code;
  UINT argument = 0;
};

/// The arguments in declaration order, and where each came from in the caller's (reversed) array.
struct Arguments {
  std::vector<Value> values;
  std::vector<UINT> places;
};

Arguments Collect(const DISPPARAMS& params, bool put, ComServer& server, const Member* member) {
  const UINT total = params.cArgs;
  // The new value of a property comes as the one named argument of that call; some callers leave the mark
  // out.
  const bool value_named = put && params.cNamedArgs > 0 && params.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  const UINT named = value_named ? params.cNamedArgs - 1 : params.cNamedArgs;
  const UINT first_named = value_named ? 1 : 0;
  const UINT value_count = put ? 1 : 0;
  if (params.cNamedArgs > total || total < value_count) throw Refusal{DISP_E_BADPARAMCOUNT};

  Arguments out;
  constexpr UINT kNowhere = ~UINT{0};
  const auto take = [&](std::size_t at, UINT place) {
    if (out.values.size() <= at) {
      out.values.resize(at + 1);
      out.places.resize(at + 1, kNowhere);
    }
    if (out.places[at] != kNowhere) throw Refusal{DISP_E_PARAMNOTFOUND, place};
    try {
      out.values[at] = FromVariant(params.rgvarg[place], server);
    } catch (const HostError& error) {
      throw Refusal{error.Number() == ErrorNumber::Overflow ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH, place};
    }
    out.places[at] = place;
  };
  const UINT positional = total - named - value_count;
  out.values.reserve(total);
  out.places.reserve(total);
  for (UINT i = 0; i < positional; ++i) take(i, total - 1 - i);
  for (UINT i = 0; i < named; ++i) {
    const UINT place = first_named + i;
    const DISPID id = params.rgdispidNamedArgs[place];
    if (id < 0 || !member || static_cast<std::size_t>(id) >= member->params.size())
      throw Refusal{DISP_E_PARAMNOTFOUND, place};
    take(static_cast<std::size_t>(id), place);
  }
  if (member) {
    // A required argument must be there, not just have its place filled by a later one.
    for (std::size_t i = 0; i < std::min(out.values.size(), member->min_args); ++i)
      if (out.places[i] == kNowhere)
        throw Refusal{DISP_E_PARAMNOTOPTIONAL};
      else if (IsMissing(params.rgvarg[out.places[i]]))
        throw Refusal{DISP_E_PARAMNOTOPTIONAL, out.places[i]};
  }
  if (put) take(out.values.size(), 0);
  return out;
}

const Member* MemberOf(const Object& object, MemberId id) {
  if (!object.Members()) return nullptr;
  const Member* member = object.MemberById(id);
  if (!member) throw Refusal{DISP_E_MEMBERNOTFOUND};
  return member;
}

/// The object a property stands for, when arguments are left that only its default member can take.
ObjectPtr Forward(const Value& value) {
  const auto* object = std::get_if<ObjectPtr>(&value.Get());
  if (!object || !*object) throw Refusal{DISP_E_BADPARAMCOUNT};
  return *object;
}

/// Reads or calls, `rs("x")` being the default member of what the default member of `rs` gives.
Value Get(Object& object, MemberId id, std::span<Value> args, ByRef by_ref) {
  if (!object.Members()) return object.Read(id, args, by_ref);
  ObjectPtr current;
  Object* target = &object;
  for (int step = 0; step < kMaxForwards; ++step) {
    const Member* member = MemberOf(*target, id);
    const std::size_t wanted = member->params.size();
    if (args.size() < member->min_args || (args.size() > wanted && !member->property))
      throw Refusal{DISP_E_BADPARAMCOUNT};
    if (args.size() <= wanted) return target->Read(id, args, by_ref);
    current = Forward(target->Read(id, args.first(wanted)));
    target = current.get();
    args = args.subspan(wanted);
    id = kDefaultMember;
    if (!target->Members()) return target->Read(id, args, by_ref);
  }
  throw Refusal{DISP_E_BADPARAMCOUNT};
}

void Put(Object& object, MemberId id, std::span<Value> args) {
  ObjectPtr current;
  Object* target = &object;
  for (int step = 0; step < kMaxForwards; ++step) {
    if (!target->Members()) return target->Write(id, args);
    const Member* member = MemberOf(*target, id);
    const std::size_t wanted = member->params.size();
    if (member->write && args.size() == wanted + 1) return target->Write(id, args);
    if (!member->property) throw Refusal{DISP_E_MEMBERNOTFOUND};
    if (args.size() <= wanted) throw Refusal{DISP_E_BADPARAMCOUNT};
    // Without arguments of its own left there is nothing to reach through: the property cannot be set.
    if (args.size() == 1 && step == 0) throw Refusal{DISP_E_MEMBERNOTFOUND};
    current = Forward(target->Read(id, args.first(wanted)));
    target = current.get();
    args = args.subspan(wanted);
    id = kDefaultMember;
  }
  throw Refusal{DISP_E_BADPARAMCOUNT};
}

void Run(Object& object, ComServer& server, const Invocation& call, Arguments& args) {
  static DISPPARAMS none{};
  DISPPARAMS& params = call.params ? *call.params : none;
  const bool put = (call.flags & kPut) != 0;
  const Member* member = MemberOf(object, call.member);
  args = Collect(params, put, server, member);
  if (put) return Put(object, call.member, args.values);

  ByRef by_ref = member ? member->in_out : 0;
  if (!member)
    for (std::size_t i = 0; i < std::min<std::size_t>(args.places.size(), 32); ++i)
      if (V_VT(&params.rgvarg[args.places[i]]) & VT_BYREF) by_ref |= ByRef{1} << i;
  const Value result = Get(object, call.member, args.values, by_ref);
  // The result first: when it cannot be told, the caller's variables are left alone as well.
  UniqueVariant out;
  if (call.result) ToVariant(result, server, out.get());
  for (std::size_t i = 0; i < std::min<std::size_t>(args.values.size(), 32); ++i)
    if ((by_ref >> i & 1) && args.places[i] < params.cArgs)
      WriteBack(args.values[i], params.rgvarg[args.places[i]], server);
  if (call.result) *call.result = out.detach();
}

bool IsConversion(ErrorNumber number) {
  return number == ErrorNumber::TypeMismatch || number == ErrorNumber::InvalidUseOfNull ||
         number == ErrorNumber::Overflow;
}

}  // namespace

HRESULT IdsOfParameters(const Member* member, LPOLESTR* names, UINT count, DISPID* ids) {
  static const std::vector<std::string_view> kNone;
  const auto& params = member ? member->params : kNone;
  HRESULT result = S_OK;
  for (UINT i = 1; i < count; ++i) {
    const std::string name = Narrow(names[i]);
    const auto found =
        std::ranges::find_if(params, [&](auto param) { return EqualsIgnoringCase(param, name); });
    if (found != params.end())
      ids[i] = static_cast<DISPID>(found - params.begin());
    else
      result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT IdsOfNames(Object& object, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  return Guarded({}, [&]() -> HRESULT {
    const auto id = object.Find(Narrow(names[0]));
    if (!id) return DISP_E_UNKNOWNNAME;
    ids[0] = *id;
    return IdsOfParameters(object.MemberById(*id), names, count, ids);
  });
}

HRESULT InvokeOn(Object& object, ComServer& server, const Invocation& call) noexcept {
  if (call.result) ::VariantInit(call.result);
  Arguments args;
  const auto refuse = [&](HRESULT code, UINT argument) {
    if (call.bad_argument) *call.bad_argument = argument;
    ClearError();
    return code;
  };
  try {
    Run(object, server, call, args);
    ClearError();
    return S_OK;
  } catch (const Refusal& refusal) {
    return refuse(refusal.code, refusal.argument);
  } catch (const ArgumentError& error) {
    if (IsConversion(error.Number()) && error.Index() < args.places.size())
      return refuse(error.Number() == ErrorNumber::Overflow ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH,
                    args.places[error.Index()]);
    FillExcepInfo(CurrentError(), server.Source(), call.exception);
  } catch (...) {
    FillExcepInfo(CurrentError(), server.Source(), call.exception);
  }
  ClearError();
  return DISP_E_EXCEPTION;
}

}  // namespace zuvi
