#include "automation/host_signatures.h"

#include "automation/variants.h"

namespace zuvi {
namespace {

/// Calls `visit(FUNCDESC)` for each function of a member.
template <class Visit>
void ForEachFunction(ITypeInfo* info, DISPID member, Visit&& visit) {
  TYPEATTR* attributes = nullptr;
  if (!info || FAILED(info->GetTypeAttr(&attributes))) return;
  const UINT count = attributes->cFuncs;
  info->ReleaseTypeAttr(attributes);
  for (UINT i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) continue;
    if (function->memid == member) visit(*function);
    info->ReleaseFuncDesc(function);
  }
}

/// What a user-defined type is in a variant: enumerations are numbers, names stand for what they rename,
/// everything with members is an object.
VARTYPE UserDefined(ITypeInfo* info, HREFTYPE reference, int depth, bool& is_object) {
  ComPtr<ITypeInfo> type;
  TYPEATTR* attributes = nullptr;
  if (depth > 4 || FAILED(info->GetRefTypeInfo(reference, type.put())) ||
      FAILED(type->GetTypeAttr(&attributes)))
    return VT_EMPTY;  // most often a library that is not registered here
  const TYPEKIND kind = attributes->typekind;
  const TYPEDESC alias = attributes->tdescAlias;
  VARTYPE found = VT_EMPTY;
  if (kind == TKIND_ENUM) found = VT_I4;
  if (kind == TKIND_DISPATCH || kind == TKIND_INTERFACE || kind == TKIND_COCLASS) {
    is_object = true;
    found = VT_DISPATCH;
  }
  if (kind == TKIND_ALIAS)
    found =
        alias.vt == VT_USERDEFINED ? UserDefined(type.get(), alias.hreftype, depth + 1, is_object) : alias.vt;
  type->ReleaseTypeAttr(attributes);
  return found;
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
