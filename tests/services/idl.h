// The type libraries as they are written, read where there is no COM.
#pragma once

#include <string>
#include <vector>

#include "services/call_shapes.h"

namespace zuvi::pruebas {

struct ParametroIdl {
  std::string nombre, tipo;
  bool vuelve = false, opcional = false;
};

struct MiembroIdl {
  std::int32_t id = 0;
  std::string nombre, resultado;
  bool propiedad = false, se_pone = false;
  std::vector<ParametroIdl> parametros;
};

struct InterfazIdl {
  std::string nombre;
  bool dual = false;
  std::vector<MiembroIdl> miembros;

  const MiembroIdl* Miembro(std::string_view nombre) const;
};

/// The interfaces of an IDL file, their members in order; the two functions of a property are one member.
std::vector<InterfazIdl> LeeIdl(const std::string& archivo);

/// Whether a value of this type can travel as that type of an IDL.
bool Cabe(CallType tipo, const std::string& idl);

}  // namespace zuvi::pruebas
