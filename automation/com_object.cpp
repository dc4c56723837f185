#include "automation/com_object.h"

#include <dispex.h>

#include <array>

#include "automation/com_error.h"
#include "automation/variants.h"

namespace zuvi {
namespace {

/// More than any member of the host contract takes.
constexpr std::size_t kMaxArguments = 16;

/// A record set's fields and the columns that a row is usually read for. A host that makes a new object each
/// time fills this once, in vain.
constexpr std::size_t kMaxKnownSteps = 8;

/// A read may be meant for a method or for a property.
constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

/// The error a host tells in its exception record.
HostError ErrorIn(const EXCEPINFO& info) {
  const HRESULT code = FAILED(info.scode) ? info.scode : HresultOf(static_cast<ErrorNumber>(info.wCode));
  HostError standard = HostErrorOf(info.scode == 0 && info.wCode == 0 ? DISP_E_EXCEPTION : code);
  if (::SysStringLen(info.bstrDescription) == 0) return standard;
  return HostError(FromBstr(info.bstrDescription), standard.Number(), standard.NativeCode());
}

/// The arguments of one outgoing call, in automation's reversed order, each cleared at the end.
class OutgoingArguments {
 public:
  explicit OutgoingArguments(std::size_t count) : count_(count) {
    if (count > kMaxArguments) throw HostError(ErrorNumber::WrongArgumentCount);
  }
  ~OutgoingArguments() {
    for (std::size_t i = 0; i < filled_; ++i) Clear(ByReference(i) ? storage_[i] : Place(i));
  }
  OutgoingArguments(const OutgoingArguments&) = delete;
  OutgoingArguments& operator=(const OutgoingArguments&) = delete;

  void AddValue(const Value& value, ComServer& server) {
    ToVariant(value, server, Place(filled_));
    ++filled_;
  }
  void AddReference(const Value& value, VARTYPE type, ComServer& server) {
    Coerce(value, type, server, storage_[filled_]);
    MakeByRef(storage_[filled_], type, Place(filled_));
    by_reference_ |= ByRef{1} << filled_;
    ++filled_;
  }
  bool ByReference(std::size_t index) const { return by_reference_ >> index & 1; }
  /// What a by-reference argument points to.
  const VARIANT& Storage(std::size_t index) const { return storage_[index]; }
  DISPPARAMS Params(DISPID* named = nullptr) {
    return {arguments_.data(), named, static_cast<UINT>(count_), named ? 1u : 0u};
  }

 private:
  VARIANT& Place(std::size_t index) { return arguments_[count_ - 1 - index]; }

  std::array<VARIANT, kMaxArguments> storage_;  // of by-reference arguments, in the order of declaration
  std::array<VARIANT, kMaxArguments> arguments_;
  std::size_t count_;
  std::size_t filled_ = 0;
  ByRef by_reference_ = 0;
};

void Invoke(IDispatch* dispatch, MemberId id, WORD flags, DISPPARAMS&& params, VARIANT* result) {
  UniqueExcepInfo exception;
  UINT bad_argument = 0;
  const HRESULT code = dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result,
                                        exception.put(), &bad_argument);
  if (SUCCEEDED(code)) return;
  if (code == DISP_E_EXCEPTION) throw ErrorIn(exception.Told());
  throw HostErrorOf(code);
}

/// The id of a name on any object of a host; false when it has none of that name.
bool FindOn(IDispatch* dispatch, std::string_view name, MemberId& id) {
  // Names of members are short and plain: they are widened in place.
  std::array<wchar_t, 64> wide;
  if (name.size() >= wide.size()) throw HostError(ErrorNumber::NoSuchMember);
  std::size_t length = 0;
  int beyond_ascii = 0;
  for (const char c : name) {
    beyond_ascii |= c & 0x80;
    wide[length++] = static_cast<unsigned char>(c);
  }
  if (beyond_ascii) throw HostError(ErrorNumber::NoSuchMember);
  wide[length] = 0;
  LPOLESTR text = wide.data();
  DISPID found = DISPID_UNKNOWN;
  const HRESULT code = dispatch->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &found);
  if (SUCCEEDED(code)) return id = found, true;
  // Objects of some script engines answer by name only through their own interface.
  if (const auto extended = ComPtr<IDispatch>(dispatch).As<IDispatchEx>()) {
    const UniqueBstr bstr = ToBstr(name);
    if (SUCCEEDED(extended->GetDispID(bstr.get(), fdexNameCaseInsensitive, &found))) return id = found, true;
  }
  if (code == DISP_E_UNKNOWNNAME || code == DISP_E_MEMBERNOTFOUND || code == E_NOTIMPL) return false;
  throw HostErrorOf(code);
}

/// The object that a step of a chain gave. It lives as long as the result does, or `hold` where it had to be
/// asked for.
IDispatch* DispatchIn(const VARIANT& result, ComPtr<IDispatch>& hold) {
  if (V_VT(&result) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(&result) && V_VARIANTREF(&result) != &result) {
    // Somebody else's variant: the host may change it during the next step.
    hold = ComPtr<IDispatch>(DispatchIn(*V_VARIANTREF(&result), hold));
    return hold.get();
  }
  if (V_VT(&result) != VT_DISPATCH && V_VT(&result) != VT_UNKNOWN) throw HostError(ErrorNumber::TypeMismatch);
  if (!V_UNKNOWN(&result)) throw HostError(ErrorNumber::ObjectNotSet);
  if (V_VT(&result) == VT_DISPATCH) return V_DISPATCH(&result);
  hold = ComPtr<IUnknown>(V_UNKNOWN(&result)).As<IDispatch>(IID_IDispatch);
  if (!hold) throw HostError(ErrorNumber::TypeMismatch);
  return hold.get();
}

}  // namespace

HostSignatures& ComObject::Signatures() {
  if (!signatures_) signatures_.emplace(dispatch_.get());
  return *signatures_;
}

std::optional<MemberId> ComObject::Find(std::string_view name) {
  MemberId id;
  if (!FindOn(dispatch_.get(), name, id)) return std::nullopt;
  return id;
}

MemberId ComObject::HeadId(FixedText name) {
  if (name.text != chain_head_) {
    MemberId id;
    if (!FindOn(dispatch_.get(), name.text, id)) throw HostError(ErrorNumber::NoSuchMember);
    chain_head_ = name;
    chain_head_id_ = id;
  }
  return chain_head_id_;
}

MemberId ComObject::StepId(IDispatch* object, FixedText name, bool keep) {
  for (const KnownStep& known : known_steps_)
    if (known.object.get() == object && known.name == name.text) return known.id;
  MemberId id;
  if (!FindOn(object, name.text, id)) throw HostError(ErrorNumber::NoSuchMember);
  if (keep && known_steps_.size() < kMaxKnownSteps) {
    if (known_steps_.empty()) known_steps_.reserve(kMaxKnownSteps);
    known_steps_.push_back({ComPtr<IDispatch>(object), name, id});
  }
  return id;
}

BSTR ComObject::KeyText(FixedText literal, bool keep, UniqueBstr& once) {
  for (const KnownKey& known : known_keys_)
    if (known.literal == literal.text) return known.text.get();
  UniqueBstr text = ToBstr(literal.text);
  if (!keep) return (once = std::move(text)).get();
  known_keys_.push_back({literal, std::move(text)});
  return known_keys_.back().text.get();
}

Value ComObject::ReadChain(std::span<const Step> steps) {
  // Two results in turn: the object a step gave lives until the next step has answered.
  std::array<UniqueVariant, 2> results;
  std::size_t latest = 0;
  ComPtr<IDispatch> hold;
  IDispatch* owner = dispatch_.get();
  // Many record sets are read once; only what is read again is worth remembering.
  const bool again = chain_head_ != nullptr;
  for (const Step& step : steps) {
    const bool head = &step == &steps.front();
    if (!head) owner = DispatchIn(results[latest].get(), hold);
    const MemberId id = head ? HeadId(step.name) : StepId(owner, step.name, again);
    latest ^= 1;
    VARIANT* const result = results[latest].put();
    if (step.key) {
      // The text stays ours, as any argument by value does.
      VARIANT key;
      V_VT(&key) = VT_BSTR;
      UniqueBstr once;
      V_BSTR(&key) = KeyText(step.key, again, once);
      Invoke(owner, id, kRead, {&key, nullptr, 1, 0}, result);
    } else if (step.args.empty()) {
      Invoke(owner, id, kRead, {}, result);
    } else {
      OutgoingArguments out(step.args.size());
      for (const Value& value : step.args) out.AddValue(value, server_);
      Invoke(owner, id, kRead, out.Params(), result);
    }
  }
  return FromVariant(results[latest].get(), server_);
}

Value ComObject::Read(MemberId id, std::span<Value> args, ByRef by_ref) {
  if (args.empty()) {
    UniqueVariant result;
    Invoke(dispatch_.get(), id, kRead, {}, &result.get());
    return FromVariant(result.get(), server_);
  }
  OutgoingArguments out(args.size());
  for (std::size_t i = 0; i < args.size(); ++i) {
    const auto form =
        by_ref >> i & 1 ? Signatures().ArgumentForm(id, i) : HostSignatures::Form{VT_VARIANT, false};
    if (form.by_ref)
      out.AddReference(args[i], form.type, server_);
    else
      out.AddValue(args[i], server_);
  }
  UniqueVariant result;
  Invoke(dispatch_.get(), id, kRead, out.Params(), &result.get());
  if (by_ref && !(by_ref & kUnread))
    for (std::size_t i = 0; i < args.size(); ++i)
      if (out.ByReference(i)) args[i] = FromVariant(out.Storage(i), server_);
  // Most methods give nothing.
  if (V_VT(&result.get()) == VT_EMPTY) return {};
  return FromVariant(result.get(), server_);
}

bool ComObject::TakesByRef(MemberId id, std::size_t index) {
  return Signatures().Declares(id, index) && Signatures().ArgumentForm(id, index).by_ref;
}

void ComObject::Write(MemberId id, std::span<Value> args) {
  if (args.empty()) throw HostError(ErrorNumber::WrongArgumentCount);
  OutgoingArguments out(args.size());
  for (const Value& value : args) out.AddValue(value, server_);
  const bool by_reference = args.back().IsObject() && !Signatures().PutOnly(id);
  DISPID named = DISPID_PROPERTYPUT;
  Invoke(dispatch_.get(), id, by_reference ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT,
         out.Params(&named), nullptr);
}

}  // namespace zuvi
