#include "host/services/constructor_sql_host.h"

#include "base/text.h"
#include "services/by_name.h"

namespace zuvi::host {

const MemberTable* ConstructorSqlHost::Members() const {
  using C = ConstructorSqlHost;
  static const MemberTable table = MemberTable::Of<C>()
                                       .Method<&C::PonConexion>("PonConexion", {"conexion"})
                                       .Method<&C::PonRutas>("PonRutas", {"rutas"})
                                       .Method<&C::Limpia>("Limpia")
                                       .Method<&C::Tipo>("Tipo", {"tipo"})
                                       .Method<&C::AgregaCampo>("AgregaCampo", {"tabla", "columna", "valor"})
                                       .Method<&C::Condicion>("Condicion", {"condicion"})
                                       .Method<&C::Genera>("Genera", {"tabla"})
                                       .Method<&C::Ejecuta>("Ejecuta")
                                       .Property<&C::Sentencia>("Sentencia");
  return &table;
}

void ConstructorSqlHost::PonConexion(const std::shared_ptr<Conexion>& conexion) { conexion_ = conexion; }

void ConstructorSqlHost::Limpia() {
  instruccion_ = Instruccion::Ninguna;
  tabla_.clear();
  campos_.clear();
  condicion_.clear();
  sentencia_.reset();
}

void ConstructorSqlHost::Tipo(const std::string& tipo) {
  if (EqualsIgnoringCase(tipo, "INSERT"))
    instruccion_ = Instruccion::Insert;
  else if (EqualsIgnoringCase(tipo, "UPDATE"))
    instruccion_ = Instruccion::Update;
  else
    throw HostError("El tipo de la instrucción debe ser INSERT o UPDATE, no \"" + tipo + "\"");
}

void ConstructorSqlHost::AgregaCampo(const std::string& tabla, const std::string& columna,
                                     const Value& valor) {
  if (columna.empty()) throw HostError("Falta el nombre de la columna");
  if (!tabla_.empty() && !EqualsIgnoringCase(tabla, tabla_))
    throw HostError("La columna " + columna + " es de la tabla " + tabla + ", pero la instrucción es de " +
                    tabla_);
  Value plano = PlainValue(valor);
  if (valor.IsObject() && !plano.IsNull()) plano = ToText(plano);
  tabla_ = tabla;
  campos_.emplace_back(columna, Literal(Base().GetEngine(), plano));
}

void ConstructorSqlHost::Genera(const std::string& tabla) {
  if (instruccion_ == Instruccion::Ninguna)
    throw HostError("Falta el tipo de la instrucción (INSERT o UPDATE)");
  if (!tabla_.empty() && !EqualsIgnoringCase(tabla, tabla_))
    throw HostError("Las columnas son de la tabla " + tabla_ + ", pero la instrucción es de " + tabla);
  std::string sql;
  if (instruccion_ == Instruccion::Insert) {
    if (campos_.empty()) throw HostError("Un INSERT en " + tabla + " necesita al menos una columna");
    std::string columnas, valores;
    for (const auto& [columna, literal] : campos_) {
      columnas += (columnas.empty() ? "" : ", ") + columna;
      valores += (valores.empty() ? "" : ", ") + literal;
    }
    sql = "INSERT INTO " + tabla + " (" + columnas + ") VALUES (" + valores + ")";
  } else if (!campos_.empty()) {
    if (Trim(condicion_).empty()) throw HostError("Un UPDATE de " + tabla + " necesita una condición");
    for (const auto& [columna, literal] : campos_)
      sql.append(sql.empty() ? "UPDATE " + tabla + " SET " : ", ")
          .append(columna)
          .append(" = ")
          .append(literal);
    sql += " WHERE " + condicion_;
  }
  sentencia_ = std::move(sql);
}

void ConstructorSqlHost::Ejecuta() {
  if (!sentencia_) throw HostError("No hay instrucción: falta llamar a Genera antes de Ejecuta");
  if (sentencia_->empty()) return;
  anfitrion_->ExigeNoCancelado();
  Base().Ejecuta(*sentencia_);
}

}  // namespace zuvi::host
