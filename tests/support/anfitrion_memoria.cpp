#include "tests/support/anfitrion_memoria.h"

#include "base/text.h"

namespace zuvi::pruebas {
namespace {

/// ADO's Field and Fields, for a record set called by name.
class CampoMemoria final : public EnMemoria<Object> {
 public:
  CampoMemoria(Mundo& mundo, Value valor) : EnMemoria(mundo, "Field"), valor_(std::move(valor)) {}
  Value Valor() const { return valor_; }
  const MemberTable* Members() const override {
    static const MemberTable tabla =
        MemberTable::Of<CampoMemoria>().Property<&CampoMemoria::Valor>("Value").AsDefault();
    return &tabla;
  }

 private:
  Value valor_;
};

class CamposMemoria final : public EnMemoria<Object> {
 public:
  CamposMemoria(Mundo& mundo, std::shared_ptr<RecordsetMemoria> filas)
      : EnMemoria(mundo, "Fields"), filas_(std::move(filas)) {}
  ObjectPtr Item(const Value& indice) {
    return std::make_shared<CampoMemoria>(mundo_, filas_->Campo(indice));
  }
  const MemberTable* Members() const override {
    static const MemberTable tabla =
        MemberTable::Of<CamposMemoria>().Property<&CamposMemoria::Item>("Item", {"Index"}).AsDefault();
    return &tabla;
  }

 private:
  std::shared_ptr<RecordsetMemoria> filas_;
};

}  // namespace

bool RecordsetMemoria::Eof() {
  mundo_.LlamaCallada();
  return actual_ >= filas_.size();
}

void RecordsetMemoria::MoveNext() {
  mundo_.LlamaCallada();
  if (actual_ >= filas_.size()) throw HostError("MoveNext past the end");
  ++actual_;
}

Value RecordsetMemoria::Campo(const Value& indice) {
  mundo_.LlamaCallada();
  if (actual_ >= filas_.size())
    throw HostError("Either BOF or EOF is True, or the current record has been deleted.");
  const Fila& fila = filas_[actual_];
  if (const auto* ordinal = std::get_if<std::int32_t>(&indice.Get()))
    return fila.at(static_cast<std::size_t>(*ordinal)).second;
  const std::string nombre = ATexto(indice);
  for (const auto& [columna, valor] : fila)
    if (IgualSinCaso(columna, nombre)) return valor;
  throw HostError("Item cannot be found: " + nombre);
}

ObjectPtr RecordsetMemoria::Fields() {
  return std::make_shared<CamposMemoria>(mundo_,
                                         std::static_pointer_cast<RecordsetMemoria>(shared_from_this()));
}

const MemberTable* RecordsetMemoria::Members() const {
  static const MemberTable tabla = MemberTable::Of<RecordsetMemoria>()
                                       .Property<&RecordsetMemoria::Eof>("EOF")
                                       .Property<&RecordsetMemoria::Fields>("Fields")
                                       .Method<&RecordsetMemoria::MoveNext>("MoveNext");
  return &tabla;
}

std::shared_ptr<Conexion> AmbienteMemoria::TraeConexion() {
  mundo_.Llama(nombre_ + ".Conexion");
  return conexion_;
}

std::string AmbienteMemoria::UsuarioActual() {
  mundo_.Llama("UsuarioActual");
  return "ADMIN";
}

std::string AmbienteMemoria::RutaAplicacion() {
  mundo_.Llama("RutaAplicacion");
  return "C:\\Tienda";
}

std::int32_t AmbienteMemoria::DatoFechaA() {
  mundo_.Llama("DatoFechaA");
  return 45;
}

std::int32_t AmbienteMemoria::DatoFechaB() {
  mundo_.Llama("DatoFechaB");
  return 931;
}

Value AmbienteMemoria::DatoDocumento() {
  mundo_.Llama("DatoDocumento");
  return "DD";
}

const MemberTable* AmbienteMemoria::Members() const {
  static const MemberTable tabla = MemberTable::Of<AmbienteMemoria>()
                                       .Property<&AmbienteMemoria::TraeConexion>("Conexion")
                                       .Method<&AmbienteMemoria::UsuarioActual>("UsuarioActual")
                                       .Method<&AmbienteMemoria::RutaAplicacion>("RutaAplicacion")
                                       .Method<&AmbienteMemoria::EjecutaSQL>("EjecutaSQL", {"sql"})
                                       .Method<&AmbienteMemoria::DatoFechaA>("DatoFechaA")
                                       .Method<&AmbienteMemoria::DatoFechaB>("DatoFechaB")
                                       .Method<&AmbienteMemoria::DatoDocumento>("DatoDocumento");
  return &tabla;
}

std::shared_ptr<Recordset> AccesoDatosMemoria::Consulta(const std::string& sql,
                                                        const std::shared_ptr<Conexion>& conexion) {
  mundo_.Llama("Consulta", sql);
  if (!conexion) throw HostError("sin conexión");
  const auto filas = mundo_.tablas.find(sql);
  return std::make_shared<RecordsetMemoria>(mundo_, filas == mundo_.tablas.end() ? Filas{} : filas->second);
}

std::shared_ptr<Recordset> AccesoDatosMemoria::ConsultaConBandera(const std::string& sql,
                                                                  const std::shared_ptr<Conexion>& conexion,
                                                                  bool bandera) {
  if (!bandera) throw HostError("la bandera de Consulta no viaja en verdadero");
  return Consulta(sql, conexion);
}

double AccesoDatosMemoria::ValorNumerico(const Value& valor) {
  mundo_.LlamaCallada();
  return ANumero(valor);
}

std::string AccesoDatosMemoria::TraeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>& ambiente) {
  mundo_.Llama("TraeMensaje", numero, ambiente);
  return "mensaje " + Decimal(numero);
}

bool AccesoDatosMemoria::Pregunta(const std::string& texto, std::int16_t modo) {
  mundo_.Llama("Pregunta", texto, modo);
  if (mundo_.respuestas.empty()) return false;
  const bool respuesta = mundo_.respuestas.front();
  mundo_.respuestas.pop_front();
  return respuesta;
}

std::int32_t AccesoDatosMemoria::SiguienteFolio(const std::string& clave,
                                                const std::shared_ptr<Conexion>& conexion,
                                                std::int32_t& documento,
                                                const std::shared_ptr<ConstructorSql>& constructor) {
  mundo_.Llama("SiguienteFolio", clave, conexion, documento, constructor);
  documento = 8801;
  return ++folio_;
}

Fecha AccesoDatosMemoria::ComponeFecha(std::int32_t a, std::int32_t b) {
  mundo_.Llama("ComponeFecha", a, b);
  return Fecha::DesdeSerie(a * 1000 + b);
}

const MemberTable* AccesoDatosMemoria::Members() const {
  using Yo = AccesoDatosMemoria;
  static const MemberTable tabla =
      MemberTable::Of<Yo>()
          .Method<&Yo::ConsultaConBandera>("Consulta", {"sql", "conexion", "bandera"})
          .Method<&Yo::ValorNumerico>("ValorNumerico", {"valor"})
          .Method<&Yo::TraeMensaje>("TraeMensaje", {"numero", "ambiente"})
          .Method<&Yo::Pregunta>("Pregunta", {"texto", "modo"})
          .Method<&Yo::SiguienteFolio>("SiguienteFolio", {"clave", "conexion", "documento", "constructor"})
          .Method<&Yo::ComponeFecha>("ComponeFecha", {"a", "b"});
  return &tabla;
}

void ControlProcesosMemoria::IniciaProceso(PeticionProceso& p) {
  mundo_.Llama("IniciaProceso", p.clave, p.objeto, p.ambiente, p.dato, p.objeto2, p.bandera, p.numero,
               p.texto, p.nulo, p.texto2, p.objeto3);
  clave_ = p.clave;
  if (mundo_.proceso) mundo_.proceso(p);
}

void ControlProcesosMemoria::ConsultaProceso(bool& bandera) {
  const bool veto = mundo_.vetos.contains(clave_);
  mundo_.Llama("ConsultaProceso", bandera);
  bandera = veto;
}

void ControlProcesosMemoria::IniciaPorNombre(std::string& clave, ObjectPtr& objeto, ObjectPtr& ambiente,
                                             Value& dato, ObjectPtr& objeto2, bool& bandera,
                                             std::int32_t& numero, std::string& texto, Value& nulo,
                                             std::string& texto2, ObjectPtr& objeto3) {
  PeticionProceso p{clave, objeto, ambiente, dato, objeto2, bandera, numero, texto, nulo, texto2, objeto3};
  IniciaProceso(p);
  objeto = p.objeto;
  bandera = p.bandera;
}

const MemberTable* ControlProcesosMemoria::Members() const {
  using Yo = ControlProcesosMemoria;
  static const MemberTable tabla =
      MemberTable::Of<Yo>()
          .Method<&Yo::IniciaPorNombre>(
              "IniciaProceso", {"clave", "objeto", "ambiente", "dato", "objeto2", "bandera", "numero",
                                "texto", "nulo", "texto2", "objeto3"})
          .Method<&Yo::ConsultaProceso>("ConsultaProceso", {"bandera"})
          .Method<&Yo::CierraProceso>("CierraProceso", {"numero"});
  return &tabla;
}

void DocumentoMemoria::PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) {
  Llama("PonAmbiente", Value(ambiente));
}

void DocumentoMemoria::PonCantidad(double cantidad) {
  Llama("PonCantidad", cantidad);
  mundo_.cantidades.push_back(cantidad);
  cantidad_ = cantidad;
}

void DocumentoMemoria::PonCosto(double costo) {
  Llama("PonCosto", costo);
  costo_ = costo;
}

double DocumentoMemoria::AplicaMovimiento(std::int32_t& numero) {
  Llama("AplicaMovimiento", numero);
  numero = 99;
  return cantidad_ * costo_;
}

const MemberTable* DocumentoMemoria::Members() const {
  using Yo = DocumentoMemoria;
  static const MemberTable tabla = MemberTable::Of<Yo>()
                                       .Method<&Yo::PonAmbiente>("PonAmbiente", {"ambiente"})
                                       .Method<&Yo::PonDatoDocumento>("PonDatoDocumento", {"dato"})
                                       .Method<&Yo::PonDatoFecha>("PonDatoFecha", {"dato"})
                                       .Method<&Yo::PonFecha>("PonFecha", {"fecha"})
                                       .Method<&Yo::PonTipo>("PonTipo", {"tipo"})
                                       .Method<&Yo::PonConcepto>("PonConcepto", {"concepto"})
                                       .Method<&Yo::PonOrden>("PonOrden", {"orden"})
                                       .Method<&Yo::PonFolio>("PonFolio", {"folio"})
                                       .Method<&Yo::PonUsuario>("PonUsuario", {"usuario"})
                                       .Method<&Yo::PonAlmacen>("PonAlmacen", {"almacen"})
                                       .Method<&Yo::PonArticulo>("PonArticulo", {"articulo"})
                                       .Method<&Yo::PonCantidad>("PonCantidad", {"cantidad"})
                                       .Method<&Yo::PonCosto>("PonCosto", {"costo"})
                                       .Method<&Yo::AplicaMovimiento>("AplicaMovimiento", {"numero"});
  return &tabla;
}

const MemberTable* ProgresoMemoria::Members() const {
  using Yo = ProgresoMemoria;
  static const MemberTable tabla = MemberTable::Of<Yo>()
                                       .Method<&Yo::Inicia>("Inicia", {"total", "titulo", "animacion"})
                                       .Method<&Yo::Avanza>("Avanza", {"paso", "texto", "texto2"})
                                       .Method<&Yo::Cierra>("Cierra");
  return &tabla;
}

ObjectPtr FabricaMemoria::Crea(std::string_view prog_id) {
  mundo_.Llama("Crea", prog_id);
  if (mundo_.por_nombre && mundo_.falla.clase <= Clase::SinMemoria && mundo_.Toca()) mundo_.Lanza();
  if (mundo_.falla.clase == Clase::NadaPorObjeto && mundo_.Toca()) return nullptr;
  ObjectPtr objeto;
  if (prog_id == AccesoDatos::kProgId) objeto = std::make_shared<AccesoDatosMemoria>(mundo_);
  if (prog_id == ControlProcesos::kProgId) objeto = std::make_shared<ControlProcesosMemoria>(mundo_);
  if (prog_id == DocumentoInventario::kProgId) objeto = std::make_shared<DocumentoMemoria>(mundo_);
  if (prog_id == VentanaProgreso::kProgId) objeto = std::make_shared<ProgresoMemoria>(mundo_);
  if (!objeto) throw HostError(ErrorNumber::CannotCreateObject);
  return Entrega(mundo_, std::move(objeto));
}

}  // namespace zuvi::pruebas
