#include "host/odbc/recordset_campos.h"

namespace zuvi::host {

std::int32_t CampoVivo::Type() {
  switch (Definicion().clase) {
    case Clase::EnteroCorto:
      return 2;
    case Clase::Entero:
      return 3;
    case Clase::Real:
      return 5;
    case Clase::Fecha:
      return 7;
    case Clase::Texto:
      return 202;
    case Clase::TextoLargo:
      break;
  }
  return 203;
}

const MemberTable* CampoVivo::Members() const {
  static const MemberTable table = MemberTable::Of<CampoVivo>()
                                       .Property<&CampoVivo::Value>("Value")
                                       .AsDefault()
                                       .Property<&CampoVivo::Name>("Name")
                                       .Property<&CampoVivo::Type>("Type");
  return &table;
}

ObjectPtr Campos::Item(const Value& indice) {
  return std::make_shared<CampoVivo>(filas_, filas_->Ordinal(indice));
}

const MemberTable* Campos::Members() const {
  static const MemberTable table = MemberTable::Of<Campos>()
                                       .Method<&Campos::Item>("Item", {"Index"})
                                       .AsDefault()
                                       .Property<&Campos::Count>("Count");
  return &table;
}

}  // namespace zuvi::host
