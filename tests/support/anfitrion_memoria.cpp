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

/// What the environment hands out as the container of paths, and the collection in it.
class RutasMemoria final : public EnMemoria<Object> {
 public:
  explicit RutasMemoria(Mundo& mundo) : EnMemoria(mundo, "Rutas") {}
  ObjectPtr Coleccion() { return shared_from_this(); }
  const MemberTable* Members() const override {
    static const MemberTable tabla =
        MemberTable::Of<RutasMemoria>().Property<&RutasMemoria::Coleccion>("PathCollection");
    return &tabla;
  }
};

void Exige(bool cumple, const char* que) {
  if (!cumple) throw HostError(que);
}

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

void RecordsetMemoria::Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion,
                            std::int32_t cursor, std::int32_t bloqueo, std::int32_t opciones) {
  mundo_.Llama("Open", fuente, Value(conexion), cursor, bloqueo, opciones);
  filas_ = mundo_.tablas[fuente];
  actual_ = 0;
}

const MemberTable* RecordsetMemoria::Members() const {
  static const MemberTable tabla =
      MemberTable::Of<RecordsetMemoria>()
          .Property<&RecordsetMemoria::Eof>("EOF")
          .Property<&RecordsetMemoria::Fields>("Fields")
          .Method<&RecordsetMemoria::MoveNext>("MoveNext")
          .Property<&RecordsetMemoria::SoloEscritura, &RecordsetMemoria::PonCursorType>("CursorType")
          .Property<&RecordsetMemoria::SoloEscritura, &RecordsetMemoria::PonLockType>("LockType")
          .Method<&RecordsetMemoria::Open>("Open", {"fuente", "conexion", "cursor", "bloqueo", "opciones"});
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

std::shared_ptr<Recordset> AmbienteMemoria::ParametrosEstacion() {
  mundo_.Llama("ParametrosEstacion");
  return std::make_shared<RecordsetMemoria>(mundo_, Filas{mundo_.parametros});
}

ObjectPtr AmbienteMemoria::ContenedorRutas() {
  mundo_.Llama("ContenedorRutas");
  return mundo_.con_rutas ? std::make_shared<RutasMemoria>(mundo_) : nullptr;
}

const MemberTable* AmbienteMemoria::Members() const {
  static const MemberTable tabla = MemberTable::Of<AmbienteMemoria>()
                                       .Property<&AmbienteMemoria::TraeConexion>("Conexion")
                                       .Method<&AmbienteMemoria::UsuarioActual>("UsuarioActual")
                                       .Method<&AmbienteMemoria::RutaAplicacion>("RutaAplicacion")
                                       .Method<&AmbienteMemoria::EjecutaSQL>("EjecutaSQL", {"sql"})
                                       .Method<&AmbienteMemoria::DatoFechaA>("DatoFechaA")
                                       .Method<&AmbienteMemoria::DatoFechaB>("DatoFechaB")
                                       .Method<&AmbienteMemoria::DatoDocumento>("DatoDocumento")
                                       .Method<&AmbienteMemoria::ParametrosEstacion>("ParametrosEstacion")
                                       .Method<&AmbienteMemoria::ContenedorRutas>("ContenedorRutas");
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
  return valor == Value("") ? 0 : ANumero(valor);
}

std::string AccesoDatosMemoria::ValorTexto(const Value& valor) {
  mundo_.LlamaCallada();
  return valor.IsNull() ? std::string() : ATexto(valor);
}

bool AccesoDatosMemoria::EstaVacio(const std::string& texto) {
  mundo_.LlamaCallada();
  return Recorta(texto).empty();
}

void AccesoDatosMemoria::Mensaje(const std::string& texto, EstiloMensaje estilo,
                                 const std::shared_ptr<Ambiente>& ambiente) {
  mundo_.Llama("Mensaje", texto, static_cast<std::int16_t>(estilo), Value(ambiente));
}

void AccesoDatosMemoria::MensajePorNombre(const std::string& texto, std::int16_t estilo,
                                          const std::shared_ptr<Ambiente>& ambiente) {
  Mensaje(texto, static_cast<EstiloMensaje>(estilo), ambiente);
}

std::string AccesoDatosMemoria::FechaSQL(const std::shared_ptr<Conexion>&, const Fecha& fecha) {
  mundo_.LlamaCallada();
  return "'" + fecha.Formatea("yyyy-MM-dd") + "'";
}

std::string AccesoDatosMemoria::TextoConCeros(std::int32_t numero, std::int32_t ancho) {
  mundo_.LlamaCallada();
  const std::string cifras = Decimal(numero);
  const auto largo = static_cast<std::size_t>(ancho);
  return cifras.size() < largo ? std::string(largo - cifras.size(), '0') + cifras : cifras;
}

bool AccesoDatosMemoria::ExisteClave(const std::string& valor, const std::string& tabla,
                                     const std::string& columna, const std::shared_ptr<Conexion>& conexion) {
  mundo_.Llama("ExisteClave", valor, tabla, columna, Value(conexion));
  return mundo_.claves.contains(tabla + "." + columna + "=" + valor);
}

bool AccesoDatosMemoria::ExisteConBandera(const std::string& valor, const std::string& tabla,
                                          const std::string& columna,
                                          const std::shared_ptr<Conexion>& conexion, bool bandera) {
  Exige(bandera, "la bandera de ExisteClave no viaja en verdadero");
  return ExisteClave(valor, tabla, columna, conexion);
}

bool AccesoDatosMemoria::UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                                              const std::shared_ptr<Conexion>& conexion) {
  mundo_.Llama("UbicacionRestringida", articulo, almacen, Value(conexion));
  return mundo_.restringidos.contains(articulo);
}

std::shared_ptr<ConstructorSql> AccesoDatosMemoria::NuevoConstructorSql() {
  mundo_.Llama("NuevoConstructorSql");
  return std::make_shared<ConstructorMemoria>(mundo_);
}

void AccesoDatosMemoria::PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) {
  mundo_.Llama("PreparaVentana", ventana, Value(ambiente));
}

void AccesoDatosMemoria::LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) {
  mundo_.Llama("LiberaVentana", ventana, Value(ambiente));
}

void AccesoDatosMemoria::PreparaConTexto(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                                         const std::string& texto) {
  Exige(texto.empty(), "PreparaVentana lleva un texto vacío");
  PreparaVentana(ventana, ambiente);
}

void AccesoDatosMemoria::LiberaConTexto(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente,
                                        const std::string& texto) {
  Exige(texto == "frmMaster", "LiberaVentana nombra la ventana principal");
  LiberaVentana(ventana, ambiente);
}

std::string AccesoDatosMemoria::FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>&) {
  mundo_.LlamaCallada();
  const std::string texto = ATexto(caja->Call("Text"));
  return mundo_.formato ? mundo_.formato(ATexto(caja->Call("Tag")), texto) : texto;
}

std::int16_t AccesoDatosMemoria::FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) {
  mundo_.Llama("FiltroMayusculas", caja, caracter);
  return caracter >= 'a' && caracter <= 'z' ? static_cast<std::int16_t>(caracter - 32) : caracter;
}

std::int16_t AccesoDatosMemoria::MayusculasPorNombre(const ObjectPtr& caja, std::int16_t& caracter) {
  return caracter = FiltroMayusculas(caja, caracter);
}

std::int16_t AccesoDatosMemoria::FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) {
  mundo_.Llama("FiltroTecla", caja, caracter);
  const bool pasa = (caracter >= 0 && caracter < ' ') || (caracter >= '0' && caracter <= '9') ||
                    caracter == '.' || caracter == '-';
  return pasa ? caracter : std::int16_t{0};
}

std::int16_t AccesoDatosMemoria::TeclaConBandera(bool bandera, const ObjectPtr& caja,
                                                 std::int16_t& caracter) {
  Exige(bandera, "la bandera de FiltroTecla no viaja en verdadero");
  return caracter = FiltroTecla(caja, caracter);
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
          .Method<&Yo::ValorTexto>("ValorTexto", {"valor"})
          .Method<&Yo::EstaVacio>("EstaVacio", {"texto"})
          .Method<&Yo::MensajePorNombre>("Mensaje", {"texto", "estilo", "ambiente"})
          .Method<&Yo::FechaSQL>("FechaSQL", {"conexion", "fecha"})
          .Method<&Yo::TextoConCeros>("TextoConCeros", {"numero", "ancho"})
          .Method<&Yo::ExisteConBandera>("ExisteClave", {"valor", "tabla", "columna", "conexion", "bandera"})
          .Method<&Yo::UbicacionRestringida>("UbicacionRestringida", {"articulo", "almacen", "conexion"})
          .Method<&Yo::NuevoConstructorSql>("NuevoConstructorSql")
          .Method<&Yo::PreparaConTexto>("PreparaVentana", {"ventana", "ambiente", "texto"})
          .Method<&Yo::LiberaConTexto>("LiberaVentana", {"ventana", "ambiente", "texto"})
          .Method<&Yo::FormateaCampo>("FormateaCampo", {"caja", "ambiente"})
          .Method<&Yo::MayusculasPorNombre>("FiltroMayusculas", {"caja", "caracter"})
          .Method<&Yo::TeclaConBandera>("FiltroTecla", {"bandera", "caja", "caracter"})
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
          .Method<&Yo::CierraProceso>("CierraProceso", {"numero"})
          .Method<&Yo::ImprimeReporte>("ImprimeReporte", {"clave", "op", "ambiente", "ventana"});
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

const MemberTable* ConstructorMemoria::Members() const {
  using Yo = ConstructorMemoria;
  static const MemberTable tabla = MemberTable::Of<Yo>()
                                       .Method<&Yo::PonConexion>("PonConexion", {"conexion"})
                                       .Method<&Yo::PonRutas>("PonRutas", {"rutas"})
                                       .Method<&Yo::Limpia>("Limpia")
                                       .Method<&Yo::Tipo>("Tipo", {"tipo"})
                                       .Method<&Yo::AgregaCampo>("AgregaCampo", {"tabla", "columna", "valor"})
                                       .Method<&Yo::Condicion>("Condicion", {"condicion"})
                                       .Method<&Yo::Genera>("Genera", {"tabla"})
                                       .Method<&Yo::Ejecuta>("Ejecuta");
  return &tabla;
}

void BuscaMemoria::PonDestino(const ObjectPtr& caja) {
  mundo_.Llama("Busca.PonDestino", caja);
  caja_ = caja;
}

void BuscaMemoria::Muestra(const std::string& titulo) {
  mundo_.Llama("Busca.Muestra", titulo);
  if (mundo_.eleccion) caja_->Put("Text", *mundo_.eleccion);
}

void BuscaMemoria::MuestraPorNombre(const std::string& titulo, const std::string& a, const std::string& b,
                                    const std::string& c) {
  Exige((a + b + c).empty(), "los textos de Muestra van vacíos");
  Muestra(titulo);
}

const MemberTable* BuscaMemoria::Members() const {
  using Yo = BuscaMemoria;
  static const MemberTable tabla =
      MemberTable::Of<Yo>()
          .Method<&Yo::PonAmbiente>("PonAmbiente", {"ambiente"})
          .Method<&Yo::PonDestino>("PonDestino", {"caja"})
          .Method<&Yo::PonFiltro>("PonFiltro", {"filtro"})
          .Method<&Yo::MuestraPorNombre>("Muestra", {"titulo", "texto1", "texto2", "texto3"});
  return &tabla;
}

void CapturaMemoria::PonDestino(const ObjectPtr& caja) {
  mundo_.Llama("Captura.PonDestino", caja);
  caja_ = caja;
}

void CapturaMemoria::Muestra() {
  mundo_.Llama("Captura.Muestra");
  if (mundo_.eleccion) caja_->Put("Text", *mundo_.eleccion);
}

const MemberTable* CapturaMemoria::Members() const {
  using Yo = CapturaMemoria;
  static const MemberTable tabla = MemberTable::Of<Yo>()
                                       .Method<&Yo::PonAmbiente>("PonAmbiente", {"ambiente"})
                                       .Method<&Yo::PonDestino>("PonDestino", {"caja"})
                                       .Method<&Yo::Muestra>("Muestra");
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
  if (prog_id == ConstructorSql::kProgId) objeto = std::make_shared<ConstructorMemoria>(mundo_);
  if (prog_id == VentanaProgreso::kProgId) objeto = std::make_shared<ProgresoMemoria>(mundo_);
  if (prog_id == Recordset::kProgId) objeto = std::make_shared<RecordsetMemoria>(mundo_, Filas{});
  if (prog_id == BuscaCatalogo::kProgId) objeto = std::make_shared<BuscaMemoria>(mundo_);
  if (prog_id == CapturaNumerica::kProgId) objeto = std::make_shared<CapturaMemoria>(mundo_);
  if (!objeto) throw HostError(ErrorNumber::CannotCreateObject);
  return Entrega(mundo_, std::move(objeto));
}

}  // namespace zuvi::pruebas
