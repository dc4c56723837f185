// A host in memory: every service of the component's contract, played from a `Mundo`.
#pragma once

#include <memory>
#include <string>

#include "component/services/acceso_datos.h"
#include "component/services/control_procesos.h"
#include "component/services/documento_inventario.h"
#include "component/services/fabrica.h"
#include "component/services/ventanas_host.h"
#include "tests/support/mundo.h"

namespace zuvi::pruebas {

template <class Servicio>
class EnMemoria : public Servicio, public ConNombre {
 public:
  using ConNombre::ConNombre;
};

class ConexionMemoria final : public EnMemoria<Conexion> {
 public:
  explicit ConexionMemoria(Mundo& mundo) : EnMemoria(mundo, "Conexion") {}
};

class RecordsetMemoria final : public EnMemoria<Recordset> {
 public:
  RecordsetMemoria(Mundo& mundo, Filas filas) : EnMemoria(mundo, "Recordset"), filas_(std::move(filas)) {}
  bool Eof() override;
  void MoveNext() override;
  Value Campo(FixedText nombre) override { return Campo(Value(nombre.text)); }
  Value Campo(std::int32_t ordinal) override { return Campo(Value(ordinal)); }
  void PonCursorType(std::int32_t tipo) override { mundo_.Llama("CursorType", tipo); }
  void PonLockType(std::int32_t tipo) override { mundo_.Llama("LockType", tipo); }
  void Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion, std::int32_t cursor,
            std::int32_t bloqueo, std::int32_t opciones) override;
  const MemberTable* Members() const override;

  Value Campo(const Value& indice);

 private:
  std::int32_t SoloEscritura() { throw HostError("sólo se escribe"); }
  ObjectPtr Fields();
  Filas filas_;
  std::size_t actual_ = 0;
};

class AmbienteMemoria final : public EnMemoria<Ambiente> {
 public:
  explicit AmbienteMemoria(Mundo& mundo, std::string nombre = "Ambiente")
      : EnMemoria(mundo, std::move(nombre)), conexion_(std::make_shared<ConexionMemoria>(mundo)) {}
  std::shared_ptr<Conexion> TraeConexion() override;
  std::string UsuarioActual() override;
  std::string RutaAplicacion() override;
  void EjecutaSQL(const std::string& sql) override { mundo_.Llama("EjecutaSQL", sql); }
  std::int32_t DatoFechaA() override;
  std::int32_t DatoFechaB() override;
  Value DatoDocumento() override;
  std::shared_ptr<Recordset> ParametrosEstacion() override;
  ObjectPtr ContenedorRutas() override;
  const MemberTable* Members() const override;

 private:
  std::shared_ptr<Conexion> conexion_;
};

/// Logs the columns with the types of their values.
class ConstructorMemoria final : public EnMemoria<ConstructorSql> {
 public:
  explicit ConstructorMemoria(Mundo& mundo) : EnMemoria(mundo, "Constructor") {}
  void PonConexion(const std::shared_ptr<Conexion>& conexion) override {
    mundo_.Llama("PonConexion", Value(conexion));
  }
  void PonRutas(const ObjectPtr& rutas) override { mundo_.Llama("PonRutas", rutas); }
  void Limpia() override { mundo_.Llama("Limpia"); }
  void Tipo(const std::string& tipo) override { mundo_.Llama("Tipo", tipo); }
  void AgregaCampo(const std::string& tabla, const std::string& columna, const Value& valor) override {
    mundo_.Llama("AgregaCampo", tabla, columna, Mundo::TextoConTipo(valor));
  }
  void Condicion(const std::string& condicion) override { mundo_.Llama("Condicion", condicion); }
  void Genera(const std::string& tabla) override { mundo_.Llama("Genera", tabla); }
  void Ejecuta() override { mundo_.Llama("Ejecuta"); }
  const MemberTable* Members() const override;
};

class AccesoDatosMemoria final : public EnMemoria<AccesoDatos> {
 public:
  explicit AccesoDatosMemoria(Mundo& mundo) : EnMemoria(mundo, "AccesoDatos") {}
  std::shared_ptr<Recordset> Consulta(const std::string& sql,
                                      const std::shared_ptr<Conexion>& conexion) override;
  double ValorNumerico(const Value& valor) override;
  std::string ValorTexto(const Value& valor) override;
  bool EstaVacio(const std::string& texto) override;
  std::string TraeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>& ambiente) override;
  void Mensaje(const std::string& texto, EstiloMensaje estilo,
               const std::shared_ptr<Ambiente>& ambiente) override;
  bool Pregunta(const std::string& texto, std::int16_t modo) override;
  std::int32_t SiguienteFolio(const std::string& clave, const std::shared_ptr<Conexion>& conexion,
                              std::int32_t& documento,
                              const std::shared_ptr<ConstructorSql>& constructor) override;
  Fecha ComponeFecha(std::int32_t a, std::int32_t b) override;
  std::string FechaSQL(const std::shared_ptr<Conexion>& conexion, const Fecha& fecha) override;
  std::string TextoConCeros(std::int32_t numero, std::int32_t ancho) override;
  bool ExisteClave(const std::string& valor, const std::string& tabla, const std::string& columna,
                   const std::shared_ptr<Conexion>& conexion) override;
  bool UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                            const std::shared_ptr<Conexion>& conexion) override;
  std::shared_ptr<ConstructorSql> NuevoConstructorSql() override;
  void PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override;
  void LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override;
  std::string FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>& ambiente) override;
  /// Capitals.
  std::int16_t FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) override;
  /// Takes digits, point and minus, and control characters.
  std::int16_t FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) override;
  const MemberTable* Members() const override;

 private:
  // The same with the arguments that only travel by name.
  std::shared_ptr<Recordset> ConsultaConBandera(const std::string& sql,
                                                const std::shared_ptr<Conexion>& conexion, bool bandera);
  void MensajePorNombre(const std::string& texto, std::int16_t estilo,
                        const std::shared_ptr<Ambiente>& ambiente);
  bool ExisteConBandera(const std::string& valor, const std::string& tabla, const std::string& columna,
                        const std::shared_ptr<Conexion>& conexion, bool bandera);
  void PreparaConTexto(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                       const std::string& texto);
  void LiberaConTexto(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                      const std::string& texto);
  std::int16_t MayusculasPorNombre(const ObjectPtr& caja, std::int16_t& caracter);
  std::int16_t TeclaConBandera(bool bandera, const ObjectPtr& caja, std::int16_t& caracter);
  std::int32_t folio_ = 500;
};

class ControlProcesosMemoria final : public EnMemoria<ControlProcesos> {
 public:
  explicit ControlProcesosMemoria(Mundo& mundo) : EnMemoria(mundo, "ControlProcesos") {}
  void IniciaProceso(PeticionProceso& p) override;
  void ConsultaProceso(bool& bandera) override;
  void CierraProceso(std::int32_t numero) override { mundo_.Llama("CierraProceso", numero); }
  void ImprimeReporte(const std::string& clave, std::int32_t op, const std::shared_ptr<Ambiente>& ambiente,
                      const ObjectPtr& ventana) override {
    mundo_.Llama("ImprimeReporte", clave, op, Value(ambiente), ventana);
  }
  const MemberTable* Members() const override;

 private:
  void IniciaPorNombre(std::string& clave, ObjectPtr& objeto, ObjectPtr& ambiente, Value& dato,
                       ObjectPtr& objeto2, bool& bandera, std::int32_t& numero, std::string& texto,
                       Value& nulo, std::string& texto2, ObjectPtr& objeto3);
  std::string clave_;
};

/// Values a movement as quantity times cost and leaves its number changed.
class DocumentoMemoria final : public EnMemoria<DocumentoInventario> {
 public:
  explicit DocumentoMemoria(Mundo& mundo)
      : EnMemoria(mundo, "Documento " + std::to_string(mundo.documentos + 1)) {
    ++mundo.documentos;
  }
  void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) override;
  void PonDatoDocumento(const Value& dato) override { Llama("PonDatoDocumento", dato); }
  void PonDatoFecha(std::int32_t dato) override { Llama("PonDatoFecha", dato); }
  void PonFecha(const Fecha& fecha) override { Llama("PonFecha", fecha); }
  void PonTipo(const std::string& tipo) override { Llama("PonTipo", tipo); }
  void PonConcepto(const std::string& concepto) override { Llama("PonConcepto", concepto); }
  void PonOrden(std::int32_t orden) override { Llama("PonOrden", orden); }
  void PonFolio(const std::string& folio) override { Llama("PonFolio", folio); }
  void PonUsuario(const std::string& usuario) override { Llama("PonUsuario", usuario); }
  void PonAlmacen(double almacen) override { Llama("PonAlmacen", almacen); }
  void PonArticulo(const std::string& articulo) override { Llama("PonArticulo", articulo); }
  void PonCantidad(double cantidad) override;
  void PonCosto(double costo) override;
  double AplicaMovimiento(std::int32_t& numero) override;
  const MemberTable* Members() const override;

 private:
  void Llama(const char* nombre, const Value& valor) { mundo_.Llama(nombre_ + "." + nombre, valor); }
  double cantidad_ = 0;
  double costo_ = 0;
};

class ProgresoMemoria final : public EnMemoria<VentanaProgreso> {
 public:
  explicit ProgresoMemoria(Mundo& mundo) : EnMemoria(mundo, "Progreso") {}
  void Inicia(std::int32_t total, const std::string& titulo, const std::string& animacion) override {
    mundo_.Llama("Inicia", total, titulo, animacion);
  }
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override {
    mundo_.Llama("Avanza", paso, texto, texto2);
  }
  void Cierra() override { mundo_.Llama("Cierra"); }
  const MemberTable* Members() const override;
};

/// Host windows that fill a text box: they write what the script chooses, by name.
class BuscaMemoria final : public EnMemoria<BuscaCatalogo> {
 public:
  explicit BuscaMemoria(Mundo& mundo) : EnMemoria(mundo, "Busca") {}
  void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) override {
    mundo_.Llama("Busca.PonAmbiente", Value(ambiente));
  }
  void PonDestino(const ObjectPtr& caja) override;
  void PonFiltro(const std::string& filtro) override { mundo_.Llama("Busca.PonFiltro", filtro); }
  void Muestra(const std::string& titulo) override;
  const MemberTable* Members() const override;

 private:
  void MuestraPorNombre(const std::string& titulo, const std::string& a, const std::string& b,
                        const std::string& c);
  ObjectPtr caja_;
};

class CapturaMemoria final : public EnMemoria<CapturaNumerica> {
 public:
  explicit CapturaMemoria(Mundo& mundo) : EnMemoria(mundo, "Captura") {}
  void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) override {
    mundo_.Llama("Captura.PonAmbiente", Value(ambiente));
  }
  void PonDestino(const ObjectPtr& caja) override;
  void Muestra() override;
  const MemberTable* Members() const override;

 private:
  ObjectPtr caja_;
};

class FabricaMemoria final : public FabricaServicios {
 public:
  explicit FabricaMemoria(Mundo& mundo) : mundo_(mundo) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  Mundo& mundo_;
};

}  // namespace zuvi::pruebas
