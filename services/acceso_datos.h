#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "services/ambiente.h"
#include "services/constructor_sql.h"
#include "services/numero_mensaje.h"

namespace zuvi {

/// Icon of `AccesoDatos::Mensaje`.
enum class EstiloMensaje : std::int16_t { Error = 16, Informacion = 64 };

/// The host's data access: queries, conversions, message catalogue, numbering, key filters.
class AccesoDatos : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.AccesoDatos";

  /// Runs a SELECT; the record set is positioned on its first row. Never null.
  virtual std::shared_ptr<Recordset> Consulta(const std::string& sql,
                                              const std::shared_ptr<Conexion>& conexion) = 0;
  /// A field or tagged value as a number.
  virtual double ValorNumerico(const Value& valor) = 0;
  /// A field or tagged value as text; null-safe.
  virtual std::string ValorTexto(const Value& valor) = 0;
  /// True when the text is empty or nothing but blanks.
  virtual bool EstaVacio(const std::string& texto) = 0;

  /// Text of a message in the host's catalogue.
  std::string TraeMensaje(NumeroMensaje numero, const std::shared_ptr<Ambiente>& ambiente) {
    return TextoDeMensaje(numero.Valor(), ambiente);
  }
  /// The same for any number: what the host answers to "TraeMensaje".
  virtual std::string TextoDeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// Shows a text with an OK button and waits.
  virtual void Mensaje(const std::string& texto, EstiloMensaje estilo,
                       const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// Asks; true when the user confirms. `modo` is 2 for orders and 1 for shifts.
  virtual bool Pregunta(const std::string& texto, std::int16_t modo) = 0;

  /// Next number of a numbering key ("Op", "oppart", "ENSAMBLE", "DESENSAMB"), above 0 and given to nobody
  /// else. `documento` goes in as 0; the host may fill it with a document number.
  /// `constructor` may be null.
  virtual std::int32_t SiguienteFolio(const std::string& clave, const std::shared_ptr<Conexion>& conexion,
                                      std::int32_t& documento,
                                      const std::shared_ptr<ConstructorSql>& constructor) = 0;
  /// A date out of `Ambiente::DatoFechaA` and `DatoFechaB`.
  virtual Date ComponeFecha(std::int32_t a, std::int32_t b) = 0;
  /// A date written as an SQL date literal.
  virtual std::string FechaSQL(const std::shared_ptr<Conexion>& conexion, const Date& fecha) = 0;
  /// A number as text of at least that many digits, with leading zeros.
  virtual std::string TextoConCeros(std::int32_t numero, std::int32_t ancho) = 0;
  /// True when the value exists in that column of that table.
  virtual bool ExisteClave(const std::string& valor, const std::string& tabla, const std::string& columna,
                           const std::shared_ptr<Conexion>& conexion) = 0;
  /// True when a line of this article must be refused in this warehouse.
  virtual bool UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                                    const std::shared_ptr<Conexion>& conexion) = 0;
  /// A new statement builder. Never null.
  virtual std::shared_ptr<ConstructorSql> NuevoConstructorSql() = 0;

  /// Last step of a window's load, and of its unload (gives the focus back to "frmMaster").
  virtual void PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) = 0;
  virtual void LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// Display form of a text box's value, by the box's tag.
  virtual std::string FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// Upper-case form of a typed character, and the filter by the box's tag; 0 drops the key.
  virtual std::int16_t FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) = 0;
  virtual std::int16_t FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) = 0;
};

}  // namespace zuvi
