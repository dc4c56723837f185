#include "host/odbc/recordset_fields.h"

namespace zuvi::host {

std::int32_t LiveField::Type() {
  switch (Definition().kind) {
    case ColumnKind::SmallInteger:
      return 2;
    case ColumnKind::Integer:
      return 3;
    case ColumnKind::Real:
      return 5;
    case ColumnKind::Date:
      return 7;
    case ColumnKind::Text:
      return 202;
    case ColumnKind::LongText:
      break;
  }
  return 203;
}

const MemberTable* LiveField::Members() const {
  static const MemberTable table = MemberTable::Of<LiveField>()
                                       .Property<&LiveField::Value>("Value")
                                       .AsDefault()
                                       .Property<&LiveField::Name>("Name")
                                       .Property<&LiveField::Type>("Type");
  return &table;
}

ObjectPtr FieldCollection::Item(const Value& index) {
  return std::make_shared<LiveField>(recordset_, recordset_->Ordinal(index));
}

const MemberTable* FieldCollection::Members() const {
  static const MemberTable table = MemberTable::Of<FieldCollection>()
                                       .Method<&FieldCollection::Item>("Item", {"Index"})
                                       .AsDefault()
                                       .Property<&FieldCollection::Count>("Count");
  return &table;
}

}  // namespace zuvi::host
