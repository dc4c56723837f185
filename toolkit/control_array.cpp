#include "toolkit/control_array.h"

namespace zuvi {

const MemberTable* ControlArrayBase::Members() const {
  using A = ControlArrayBase;
  static const MemberTable table = MemberTable::Of<A>()
                                       .Method<&A::Item>("Item", {"index"})
                                       .AsDefault()
                                       .Property<&A::Count>("Count")
                                       .Property<&A::LBound>("LBound")
                                       .Property<&A::UBound>("UBound");
  return &table;
}

}  // namespace zuvi
