#include "automation/host_signatures.h"

#include "automation/handles.h"
#include "automation/variants.h"

namespace zuvi {
namespace {

/// Calls `visit(FUNCDESC)` for each function of a member.
template <class Visit>
void ForEachFunction(ITypeInfo* info, DISPID member, Visit&& visit) {
  TypeAttributes attributes(info);
  if (!info || FAILED(info->GetTypeAttr(attributes.put()))) return;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FunctionDescription function(info);
    if (SUCCEEDED(info->GetFuncDesc(i, function.put())) && function->memid == member) visit(*function);
  }
}

/// What a user-defined type is in a variant: enumerations are numbers, names stand for what they rename,
/// everything with members is an object.
VARTYPE UserDefined(ITypeInfo* info, HREFTYPE reference, int depth, bool& is_object) {
  ComPtr<ITypeInfo> type;
  if (depth > 4 || FAILED(info->GetRefTypeInfo(reference, type.put()))) return VT_EMPTY;
  TypeAttributes attributes(type.get());
  if (FAILED(type->GetTypeAttr(attributes.put())))
    return VT_EMPTY;  // most often a library that is not registered here
  const TYPEDESC& alias = attributes->tdescAlias;
  switch (attributes->typekind) {
    case TKIND_ENUM:
      return VT_I4;
    case TKIND_DISPATCH:
    case TKIND_INTERFACE:
    case TKIND_COCLASS:
      is_object = true;
      return VT_DISPATCH;
    case TKIND_ALIAS:
      return alias.vt == VT_USERDEFINED ? UserDefined(type.get(), alias.hreftype, depth + 1, is_object)
                                        : alias.vt;
    default:
      return VT_EMPTY;
  }
}

HostSignatures::Form FormOf(ITypeInfo* info, const TYPEDESC& declared) {
  const TYPEDESC* type = &declared;
  int pointers = 0;
  for (; type->vt == VT_PTR; type = type->lptdesc) ++pointers;
  VARTYPE found = type->vt;
  bool is_object = false;
  if (found == VT_USERDEFINED) found = UserDefined(info, type->hreftype, 0, is_object);
  // A type of a library that cannot be loaded: only objects are passed as pointers to pointers.
  if (found == VT_EMPTY && pointers == 2) {
    is_object = true;
    found = VT_DISPATCH;
  }
  // A reference to an interface is a pointer already by itself.
  const bool by_ref = pointers > (is_object ? 1 : 0);
  if (!IsCoercible(found)) return {};
  return {found, by_ref};
}

}  // namespace

HostSignatures::HostSignatures(IDispatch* dispatch) {
  UINT count = 0;
  if (FAILED(dispatch->GetTypeInfoCount(&count)) || count == 0) return;
  if (FAILED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info_.put()))) info_ = {};
}

const std::vector<HostSignatures::Form>& HostSignatures::FormsOf(DISPID member) {
  const auto [entry, fresh] = forms_.try_emplace(member);
  if (!fresh) return entry->second;
  ForEachFunction(info_.get(), member, [&, &forms = entry->second](const FUNCDESC& function) {
    if (!(function.invkind & (INVOKE_FUNC | INVOKE_PROPERTYGET))) return;
    forms.clear();
    for (SHORT i = 0; i < function.cParams; ++i) {
      // The view of a vtable counts the result and the language among the arguments.
      const ELEMDESC& parameter = function.lprgelemdescParam[i];
      if (parameter.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID)) continue;
      forms.push_back(FormOf(info_.get(), parameter.tdesc));
    }
  });
  return entry->second;
}

HostSignatures::Form HostSignatures::ArgumentForm(DISPID member, std::size_t index) {
  if (!info_) return {};
  const auto& forms = FormsOf(member);
  return index < forms.size() ? forms[index] : Form{};
}

bool HostSignatures::Declares(DISPID member, std::size_t index) {
  return info_ && index < FormsOf(member).size();
}

bool HostSignatures::PutOnly(DISPID member) const {
  bool put = false, put_ref = false;
  ForEachFunction(info_.get(), member, [&](const FUNCDESC& function) {
    put |= function.invkind == INVOKE_PROPERTYPUT;
    put_ref |= function.invkind == INVOKE_PROPERTYPUTREF;
  });
  return put && !put_ref;
}

}  // namespace zuvi
