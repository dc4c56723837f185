#include "tests/support/anfitrion_memoria.h"

#include "component/services/acceso_datos.h"
#include "component/services/control_procesos.h"
#include "component/services/documento_inventario.h"
#include "component/services/ventanas_host.h"
#include "tests/support/recordset_memoria.h"

namespace zuvi::pruebas {
namespace {

void Exige(bool cumple, const char* que) {
  if (!cumple) throw HostError(que);
}

class ConexionMemoria final : public EnMemoria<Conexion> {
 public:
  explicit ConexionMemoria(Mundo& mundo) : EnMemoria(mundo, "Conexion") {}
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

class AmbienteEnMemoria final : public EnMemoria<Ambiente> {
 public:
  using EnMemoria::EnMemoria;
  std::shared_ptr<Conexion> TraeConexion() override { return Da(nombre_ + ".Conexion", conexion_); }
  std::string UsuarioActual() override { return Da("UsuarioActual", "ADMIN"); }
  std::string RutaAplicacion() override { return Da("RutaAplicacion", "C:\\Tienda"); }
  void EjecutaSQL(const std::string& sql) override { mundo_.Llama("EjecutaSQL", sql); }
  std::int32_t DatoFechaA() override { return Da("DatoFechaA", 45); }
  std::int32_t DatoFechaB() override { return Da("DatoFechaB", 931); }
  Value DatoDocumento() override { return Da("DatoDocumento", "DD"); }
  std::shared_ptr<Recordset> ParametrosEstacion() override {
    mundo_.Llama("ParametrosEstacion");
    return std::make_shared<RecordsetMemoria>(mundo_, Filas{mundo_.parametros});
  }
  ObjectPtr ContenedorRutas() override {
    mundo_.Llama("ContenedorRutas");
    return mundo_.con_rutas ? std::make_shared<RutasMemoria>(mundo_) : nullptr;
  }
  const MemberTable* Members() const override {
    using Yo = AmbienteEnMemoria;
    static const MemberTable tabla = MemberTable::Of<Yo>()
                                         .Property<&Yo::TraeConexion>("Conexion")
                                         .Method<&Yo::UsuarioActual>("UsuarioActual")
                                         .Method<&Yo::RutaAplicacion>("RutaAplicacion")
                                         .Method<&Yo::EjecutaSQL>("EjecutaSQL", {"sql"})
                                         .Method<&Yo::DatoFechaA>("DatoFechaA")
                                         .Method<&Yo::DatoFechaB>("DatoFechaB")
                                         .Method<&Yo::DatoDocumento>("DatoDocumento")
                                         .Method<&Yo::ParametrosEstacion>("ParametrosEstacion")
                                         .Method<&Yo::ContenedorRutas>("ContenedorRutas");
    return &tabla;
  }

 private:
  template <class T>
  T Da(const std::string& llamada, T valor) {
    mundo_.Llama(llamada);
    return valor;
  }
  std::shared_ptr<Conexion> conexion_ = std::make_shared<ConexionMemoria>(mundo_);
};

/// Logs the columns with the types of their values.
class ConstructorMemoria final : public EnMemoria<ConstructorSql> {
 public:
  explicit ConstructorMemoria(Mundo& mundo) : EnMemoria(mundo, "Constructor") {}
  void PonConexion(const std::shared_ptr<Conexion>& c) override { mundo_.Llama("PonConexion", Value(c)); }
  void PonRutas(const ObjectPtr& rutas) override { mundo_.Llama("PonRutas", rutas); }
  void Limpia() override { mundo_.Llama("Limpia"); }
  void Tipo(const std::string& tipo) override { mundo_.Llama("Tipo", tipo); }
  void AgregaCampo(const std::string& tabla, const std::string& columna, const Value& valor) override {
    mundo_.Llama("AgregaCampo", tabla, columna, Mundo::TextoConTipo(valor));
  }
  void Condicion(const std::string& condicion) override { mundo_.Llama("Condicion", condicion); }
  void Genera(const std::string& tabla) override { mundo_.Llama("Genera", tabla); }
  void Ejecuta() override { mundo_.Llama("Ejecuta"); }
  const MemberTable* Members() const override {
    using Yo = ConstructorMemoria;
    static const MemberTable tabla =
        MemberTable::Of<Yo>()
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
};

class AccesoDatosMemoria final : public EnMemoria<AccesoDatos> {
  using ConexionPtr = std::shared_ptr<Conexion>;
  using AmbientePtr = std::shared_ptr<Ambiente>;

 public:
  explicit AccesoDatosMemoria(Mundo& mundo) : EnMemoria(mundo, "AccesoDatos") {}
  std::shared_ptr<Recordset> Consulta(const std::string& sql, const ConexionPtr& conexion) override {
    mundo_.Llama("Consulta", sql);
    Exige(conexion != nullptr, "sin conexión");
    const auto filas = mundo_.tablas.find(sql);
    return std::make_shared<RecordsetMemoria>(mundo_, filas == mundo_.tablas.end() ? Filas{} : filas->second);
  }
  double ValorNumerico(const Value& valor) override {
    mundo_.LlamaCallada();
    return valor == Value("") ? 0 : ANumero(valor);
  }
  std::string ValorTexto(const Value& valor) override {
    mundo_.LlamaCallada();
    return valor.IsNull() ? std::string() : ATexto(valor);
  }
  bool EstaVacio(const std::string& texto) override {
    mundo_.LlamaCallada();
    return Recorta(texto).empty();
  }
  std::string TextoDeMensaje(std::int32_t numero, const AmbientePtr& ambiente) override {
    mundo_.Llama("TraeMensaje", numero, ambiente);
    return "mensaje " + Decimal(numero);
  }
  void Mensaje(const std::string& texto, EstiloMensaje estilo, const AmbientePtr& ambiente) override {
    mundo_.Llama("Mensaje", texto, static_cast<std::int16_t>(estilo), Value(ambiente));
  }
  bool Pregunta(const std::string& texto, std::int16_t modo) override {
    mundo_.Llama("Pregunta", texto, modo);
    if (mundo_.respuestas.empty()) return false;
    const bool respuesta = mundo_.respuestas.front();
    mundo_.respuestas.pop_front();
    return respuesta;
  }
  std::int32_t SiguienteFolio(const std::string& clave, const ConexionPtr& conexion, std::int32_t& documento,
                              const std::shared_ptr<ConstructorSql>& constructor) override {
    mundo_.Llama("SiguienteFolio", clave, conexion, documento, constructor);
    documento = 8801;
    return ++folio_;
  }
  Fecha ComponeFecha(std::int32_t a, std::int32_t b) override {
    mundo_.Llama("ComponeFecha", a, b);
    return Fecha::DesdeSerie(a * 1000 + b);
  }
  std::string FechaSQL(const ConexionPtr&, const Fecha& fecha) override {
    mundo_.LlamaCallada();
    return "'" + fecha.Formatea("yyyy-MM-dd") + "'";
  }
  std::string TextoConCeros(std::int32_t numero, std::int32_t ancho) override {
    mundo_.LlamaCallada();
    const std::string cifras = Decimal(numero);
    const auto largo = static_cast<std::size_t>(ancho);
    return cifras.size() < largo ? std::string(largo - cifras.size(), '0') + cifras : cifras;
  }
  bool ExisteClave(const std::string& valor, const std::string& tabla, const std::string& columna,
                   const ConexionPtr& conexion) override {
    mundo_.Llama("ExisteClave", valor, tabla, columna, Value(conexion));
    return mundo_.claves.contains(tabla + "." + columna + "=" + valor);
  }
  bool UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                            const ConexionPtr& conexion) override {
    mundo_.Llama("UbicacionRestringida", articulo, almacen, Value(conexion));
    return mundo_.restringidos.contains(articulo);
  }
  std::shared_ptr<ConstructorSql> NuevoConstructorSql() override {
    mundo_.Llama("NuevoConstructorSql");
    return std::make_shared<ConstructorMemoria>(mundo_);
  }
  void PreparaVentana(const ObjectPtr& ventana, const AmbientePtr& ambiente) override {
    mundo_.Llama("PreparaVentana", ventana, Value(ambiente));
  }
  void LiberaVentana(const ObjectPtr& ventana, const AmbientePtr& ambiente) override {
    mundo_.Llama("LiberaVentana", ventana, Value(ambiente));
  }
  std::string FormateaCampo(const ObjectPtr& caja, const AmbientePtr&) override {
    mundo_.LlamaCallada();
    const std::string texto = ATexto(caja->Call("Text"));
    return mundo_.formato ? mundo_.formato(ATexto(caja->Call("Tag")), texto) : texto;
  }
  /// Capitals.
  std::int16_t FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) override {
    mundo_.Llama("FiltroMayusculas", caja, caracter);
    return caracter >= 'a' && caracter <= 'z' ? static_cast<std::int16_t>(caracter - 32) : caracter;
  }
  /// Takes digits, point and minus, and control characters.
  std::int16_t FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) override {
    mundo_.Llama("FiltroTecla", caja, caracter);
    const bool pasa = (caracter >= 0 && caracter < ' ') || (caracter >= '0' && caracter <= '9') ||
                      caracter == '.' || caracter == '-';
    return pasa ? caracter : std::int16_t{0};
  }
  const MemberTable* Members() const override {
    using Yo = AccesoDatosMemoria;
    static const MemberTable tabla =
        MemberTable::Of<Yo>()
            .Method<&Yo::ConsultaConBandera>("Consulta", {"sql", "conexion", "bandera"})
            .Method<&Yo::ValorNumerico>("ValorNumerico", {"valor"})
            .Method<&Yo::TextoDeMensaje>("TraeMensaje", {"numero", "ambiente"})
            .Method<&Yo::Pregunta>("Pregunta", {"texto", "modo"})
            .Method<&Yo::ValorTexto>("ValorTexto", {"valor"})
            .Method<&Yo::EstaVacio>("EstaVacio", {"texto"})
            .Method<&Yo::MensajePorNombre>("Mensaje", {"texto", "estilo", "ambiente"})
            .Method<&Yo::FechaSQL>("FechaSQL", {"conexion", "fecha"})
            .Method<&Yo::TextoConCeros>("TextoConCeros", {"numero", "ancho"})
            .Method<&Yo::ExisteConBandera>("ExisteClave",
                                           {"valor", "tabla", "columna", "conexion", "bandera"})
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

 private:
  // The same with the arguments that only travel by name.
  std::shared_ptr<Recordset> ConsultaConBandera(const std::string& sql, const ConexionPtr& conexion,
                                                bool bandera) {
    Exige(bandera, "la bandera de Consulta no viaja en verdadero");
    return Consulta(sql, conexion);
  }
  void MensajePorNombre(const std::string& texto, std::int16_t estilo, const AmbientePtr& ambiente) {
    Mensaje(texto, static_cast<EstiloMensaje>(estilo), ambiente);
  }
  bool ExisteConBandera(const std::string& valor, const std::string& tabla, const std::string& columna,
                        const ConexionPtr& conexion, bool bandera) {
    Exige(bandera, "la bandera de ExisteClave no viaja en verdadero");
    return ExisteClave(valor, tabla, columna, conexion);
  }
  void PreparaConTexto(const ObjectPtr& ventana, const AmbientePtr& ambiente, const std::string& texto) {
    Exige(texto.empty(), "PreparaVentana lleva un texto vacío");
    PreparaVentana(ventana, ambiente);
  }
  void LiberaConTexto(const ObjectPtr& ventana, const AmbientePtr& ambiente, const std::string& texto) {
    Exige(texto == "frmMaster", "LiberaVentana nombra la ventana principal");
    LiberaVentana(ventana, ambiente);
  }
  std::int16_t MayusculasPorNombre(const ObjectPtr& caja, std::int16_t& caracter) {
    return caracter = FiltroMayusculas(caja, caracter);
  }
  std::int16_t TeclaConBandera(bool bandera, const ObjectPtr& caja, std::int16_t& caracter) {
    Exige(bandera, "la bandera de FiltroTecla no viaja en verdadero");
    return caracter = FiltroTecla(caja, caracter);
  }
  std::int32_t folio_ = 500;
};

class ControlProcesosMemoria final : public EnMemoria<ControlProcesos> {
 public:
  explicit ControlProcesosMemoria(Mundo& mundo) : EnMemoria(mundo, "ControlProcesos") {}
  void IniciaProceso(PeticionProceso& p) override {
    mundo_.Llama("IniciaProceso", p.clave, p.objeto, p.ambiente, p.dato, p.objeto2, p.bandera, p.numero,
                 p.texto, p.nulo, p.texto2, p.objeto3);
    clave_ = p.clave;
    if (mundo_.proceso) mundo_.proceso(p);
  }
  void ConsultaProceso(bool& bandera) override {
    const bool veto = mundo_.vetos.contains(clave_);
    mundo_.Llama("ConsultaProceso", bandera);
    bandera = veto;
  }
  void CierraProceso(std::int32_t numero) override { mundo_.Llama("CierraProceso", numero); }
  void ImprimeReporte(const std::string& clave, std::int32_t op, const std::shared_ptr<Ambiente>& ambiente,
                      const ObjectPtr& ventana) override {
    mundo_.Llama("ImprimeReporte", clave, op, Value(ambiente), ventana);
  }
  const MemberTable* Members() const override {
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

 private:
  void IniciaPorNombre(std::string& clave, ObjectPtr& objeto, ObjectPtr& ambiente, Value& dato,
                       ObjectPtr& objeto2, bool& bandera, std::int32_t& numero, std::string& texto,
                       Value& nulo, std::string& texto2, ObjectPtr& objeto3) {
    PeticionProceso p{clave, objeto, ambiente, dato, objeto2, bandera, numero, texto, nulo, texto2, objeto3};
    IniciaProceso(p);
    objeto = p.objeto;
    bandera = p.bandera;
  }
  std::string clave_;
};

class DocumentoEnMemoria final : public EnMemoria<DocumentoInventario> {
 public:
  explicit DocumentoEnMemoria(Mundo& mundo)
      : EnMemoria(mundo, "Documento " + std::to_string(++mundo.documentos)) {}
  void PonAmbiente(const std::shared_ptr<Ambiente>& a) override { Llama("PonAmbiente", Value(a)); }
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
  void PonCantidad(double cantidad) override {
    Llama("PonCantidad", cantidad);
    mundo_.cantidades.push_back(cantidad);
    cantidad_ = cantidad;
  }
  void PonCosto(double costo) override {
    Llama("PonCosto", costo);
    costo_ = costo;
  }
  double AplicaMovimiento(std::int32_t& numero) override {
    Llama("AplicaMovimiento", numero);
    numero = 99;
    return cantidad_ * costo_;
  }
  /// Called by name it numbers its movements in its own way.
  double AplicaConSerie(Value& numero) {
    std::int32_t n = AEntero32(numero);
    const double importe = AplicaMovimiento(n);
    numero = "M-" + Decimal(n);
    return importe;
  }
  const MemberTable* Members() const override {
    using Yo = DocumentoEnMemoria;
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
                                         .Method<&Yo::AplicaConSerie>("AplicaMovimiento", {"numero"});
    return &tabla;
  }

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
  const MemberTable* Members() const override {
    using Yo = ProgresoMemoria;
    static const MemberTable tabla = MemberTable::Of<Yo>()
                                         .Method<&Yo::Inicia>("Inicia", {"total", "titulo", "animacion"})
                                         .Method<&Yo::Avanza>("Avanza", {"paso", "texto", "texto2"})
                                         .Method<&Yo::Cierra>("Cierra");
    return &tabla;
  }
};

/// Host windows that fill a text box: they write what the script chooses, by name.
template <class Servicio>
class LlenaCaja : public EnMemoria<Servicio> {
 public:
  using EnMemoria<Servicio>::EnMemoria;
  void PonAmbiente(const std::shared_ptr<Ambiente>& a) override { Llama("PonAmbiente", Value(a)); }
  void PonDestino(const ObjectPtr& caja) override {
    Llama("PonDestino", caja);
    caja_ = caja;
  }

 protected:
  template <class... A>
  void Llama(const char* nombre, const A&... args) {
    this->mundo_.Llama(this->nombre_ + "." + nombre, args...);
  }
  void Elige() {
    if (this->mundo_.eleccion) caja_->Put("Text", *this->mundo_.eleccion);
  }

 private:
  ObjectPtr caja_;
};

class BuscaMemoria final : public LlenaCaja<BuscaCatalogo> {
 public:
  explicit BuscaMemoria(Mundo& mundo) : LlenaCaja(mundo, "Busca") {}
  void PonFiltro(const std::string& filtro) override { Llama("PonFiltro", filtro); }
  void Muestra(const std::string& titulo) override {
    Llama("Muestra", titulo);
    Elige();
  }
  const MemberTable* Members() const override {
    using Yo = BuscaMemoria;
    static const MemberTable tabla =
        MemberTable::Of<Yo>()
            .Method<&Yo::PonAmbiente>("PonAmbiente", {"ambiente"})
            .Method<&Yo::PonDestino>("PonDestino", {"caja"})
            .Method<&Yo::PonFiltro>("PonFiltro", {"filtro"})
            .Method<&Yo::MuestraPorNombre>("Muestra", {"titulo", "texto1", "texto2", "texto3"});
    return &tabla;
  }

 private:
  void MuestraPorNombre(const std::string& titulo, const std::string& a, const std::string& b,
                        const std::string& c) {
    Exige((a + b + c).empty(), "los textos de Muestra van vacíos");
    Muestra(titulo);
  }
};

class CapturaMemoria final : public LlenaCaja<CapturaNumerica> {
 public:
  explicit CapturaMemoria(Mundo& mundo) : LlenaCaja(mundo, "Captura") {}
  void Muestra() override {
    Llama("Muestra");
    Elige();
  }
  const MemberTable* Members() const override {
    using Yo = CapturaMemoria;
    static const MemberTable tabla = MemberTable::Of<Yo>()
                                         .Method<&Yo::PonAmbiente>("PonAmbiente", {"ambiente"})
                                         .Method<&Yo::PonDestino>("PonDestino", {"caja"})
                                         .Method<&Yo::Muestra>("Muestra");
    return &tabla;
  }
};

}  // namespace

ObjectPtr AmbienteMemoria(Mundo& mundo, const std::string& nombre) {
  return Entrega(mundo, std::make_shared<AmbienteEnMemoria>(mundo, nombre));
}

ObjectPtr DocumentoMemoria(Mundo& mundo) { return std::make_shared<DocumentoEnMemoria>(mundo); }

ObjectPtr FabricaMemoria::Crea(std::string_view prog_id) {
  mundo_.Llama("Crea", prog_id);
  if (mundo_.por_nombre && mundo_.falla.clase <= Clase::SinMemoria && mundo_.Toca()) mundo_.Lanza();
  if (mundo_.falla.clase == Clase::NadaPorObjeto && mundo_.Toca()) return nullptr;
  ObjectPtr objeto;
  if (prog_id == AccesoDatos::kProgId) objeto = std::make_shared<AccesoDatosMemoria>(mundo_);
  if (prog_id == ControlProcesos::kProgId) objeto = std::make_shared<ControlProcesosMemoria>(mundo_);
  if (prog_id == DocumentoInventario::kProgId) objeto = DocumentoMemoria(mundo_);
  if (prog_id == ConstructorSql::kProgId) objeto = std::make_shared<ConstructorMemoria>(mundo_);
  if (prog_id == VentanaProgreso::kProgId) objeto = std::make_shared<ProgresoMemoria>(mundo_);
  if (prog_id == Recordset::kProgId) objeto = std::make_shared<RecordsetMemoria>(mundo_, Filas{});
  if (prog_id == BuscaCatalogo::kProgId) objeto = std::make_shared<BuscaMemoria>(mundo_);
  if (prog_id == CapturaNumerica::kProgId) objeto = std::make_shared<CapturaMemoria>(mundo_);
  if (!objeto) throw HostError(ErrorNumber::CannotCreateObject);
  return Entrega(mundo_, std::move(objeto));
}

}  // namespace zuvi::pruebas
