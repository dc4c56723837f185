#pragma once

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// Data access: queries, conversions, message catalogue, numbering, key filters.
class AccesoDatosHost final : public AccesoDatos {
 public:
  explicit AccesoDatosHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  /// Fails once the user has cancelled.
  std::shared_ptr<Recordset> Consulta(const std::string& sql,
                                      const std::shared_ptr<Conexion>& conexion) override;
  /// Null, Empty and blank text are 0. Throws HostError for a text that is no number, or can be read as two.
  double ValorNumerico(const Value& valor) override;
  /// Null is "".
  std::string ValorTexto(const Value& valor) override;
  bool EstaVacio(const std::string& texto) override;
  std::string TextoDeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>& ambiente) override;
  void Mensaje(const std::string& texto, EstiloMensaje estilo,
               const std::shared_ptr<Ambiente>& ambiente) override;
  bool Pregunta(const std::string& texto, std::int16_t modo) override;
  /// `documento` comes back with the new number too.
  std::int32_t SiguienteFolio(const std::string& clave, const std::shared_ptr<Conexion>& conexion,
                              std::int32_t& documento,
                              const std::shared_ptr<ConstructorSql>& constructor) override;
  /// `a` is yyyymmdd, `b` the seconds since midnight. Throws HostError (TypeMismatch) when they name no time.
  Date ComponeFecha(std::int32_t a, std::int32_t b) override;
  std::string FechaSQL(const std::shared_ptr<Conexion>& conexion, const Date& fecha) override;
  /// At most 255 characters wide.
  std::string TextoConCeros(std::int32_t numero, std::int32_t ancho) override;
  /// Whether a row of the table has that value; one that none has is remembered for the message about it.
  bool ExisteClave(const std::string& valor, const std::string& tabla, const std::string& columna,
                   const std::shared_ptr<Conexion>& conexion) override;
  /// True when table `restricciones` names the storage location of the article together with the warehouse.
  bool UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                            const std::shared_ptr<Conexion>& conexion) override;
  std::shared_ptr<ConstructorSql> NuevoConstructorSql() override;
  /// Notes the window among the open ones.
  void PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override;
  /// Forgets it, and gives the focus back to the main window when that is open.
  void LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override;
  std::string FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>& ambiente) override;
  std::int16_t FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) override;
  std::int16_t FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) override;

  const MemberTable* Members() const override;

 private:
  // The forms in which scripts call, where they differ from the contract.
  std::shared_ptr<Recordset> ConsultaConBandera(const std::string& sql,
                                                const std::shared_ptr<Conexion>& conexion, const Value&);
  void MensajeConEstilo(const std::string& texto, std::int16_t estilo,
                        const std::shared_ptr<Ambiente>& ambiente);
  bool ExisteClaveConBandera(const std::string& valor, const std::string& tabla, const std::string& columna,
                             const std::shared_ptr<Conexion>& conexion, const Value&);
  void PreparaVentanaConTexto(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                              const Value&);
  void LiberaVentanaConDestino(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                               const Value&);
  std::int16_t FiltraMayusculasEn(const ObjectPtr& caja, std::int16_t& caracter);
  std::int16_t FiltraTeclaEn(const Value&, const ObjectPtr& caja, std::int16_t& caracter);

  std::shared_ptr<Anfitrion> anfitrion_;
  std::string no_hallada_;  // key that `ExisteClave` looked for last, when there was none
};

}  // namespace zuvi::host
