#pragma once

#include <map>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/windows_com.h"

namespace zuvi {

/// What an object's type information, if it has any, says about the arguments of its members.
class HostSignatures {
 public:
  /// How a by-reference argument travels.
  struct Form {
    VARTYPE type = VT_VARIANT;
    /// False when the member declares the argument by value.
    bool by_ref = true;
  };

  explicit HostSignatures(IDispatch* dispatch);

  /// Form of argument `index` of a method; a by-reference variant where nothing is declared.
  Form ArgumentForm(DISPID member, std::size_t index);
  /// Whether the member is known to have an argument `index`, apart from its result.
  bool Declares(DISPID member, std::size_t index);
  /// True when the property is known to be put only, never set by reference.
  bool PutOnly(DISPID member) const;

 private:
  const std::vector<Form>& FormsOf(DISPID member);

  ComPtr<ITypeInfo> info_;
  std::map<DISPID, std::vector<Form>> forms_;
};

}  // namespace zuvi
