#include "host/anfitrion/anfitrion.h"

#include <algorithm>

#include "base/text.h"
#include "host/odbc/odbc_attributes.h"
#include "host/odbc/ubicacion.h"
#include "host/shop/folios.h"

namespace zuvi::host {
namespace {

/// Whether two references mean one window. Across the boundary of a DLL each call brings a reference of its
/// own; the native handle then tells.
bool EsLaMisma(const ObjectPtr& una, const ObjectPtr& otra) {
  if (una == otra) return true;
  try {
    const std::int32_t marco = ToInt32(una->Call("hWnd"));
    return marco != 0 && marco == ToInt32(otra->Call("hWnd"));
  } catch (const HostError&) {
    return false;
  }
}

bool EstaVisible(Object& ventana) {
  try {
    return ToBool(ventana.Call("Visible"));
  } catch (const HostError&) {
    return false;
  }
}

/// Runs what opens or makes a database; its errors come out in the user's words.
template <class Cuerpo>
decltype(auto) AlAbrir(const Ubicacion& lugar, Cuerpo&& cuerpo) {
  try {
    return cuerpo();
  } catch (const HostError& error) {
    throw lugar.Explica(error);
  }
}

/// Counts itself among the open progress displays.
class ProgresoContado final : public Progreso {
 public:
  ProgresoContado(std::unique_ptr<Progreso> progreso, std::shared_ptr<int> abiertos)
      : progreso_(std::move(progreso)), abiertos_(std::move(abiertos)) {
    ++*abiertos_;
  }
  ~ProgresoContado() override { --*abiertos_; }
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override {
    progreso_->Avanza(paso, texto, texto2);
  }

 private:
  std::unique_ptr<Progreso> progreso_;
  std::shared_ptr<int> abiertos_;
};

}  // namespace

Anfitrion::Anfitrion(Opciones opciones, std::unique_ptr<Interaccion> interaccion)
    : opciones_(std::move(opciones)), interaccion_(std::move(interaccion)) {}

void Anfitrion::PonOpciones(Opciones opciones) {
  const bool otra_base = opciones.cadena != opciones_.cadena || opciones.archivo != opciones_.archivo;
  opciones_ = std::move(opciones);
  if (!otra_base || !base_) return;
  const auto anterior = std::exchange(base_, nullptr);
  vetadas_.clear();
  siguiente_movimiento_ = fin_de_bloque_ = 0;
  anterior->Cierra();
}

void Anfitrion::ExigeSitio(const Ubicacion& lugar) const {
  if (!lugar.EstaEnRed()) return;
  const bool se_crea = opciones_.crea_archivo && lugar.Falta();
  if (opciones_.solo_lee && !se_crea && !lugar.TieneCambiosAlLado()) return;
  throw HostError(
      "La base de datos " + lugar.Archivo() +
      " está en el disco de otra máquina. Quienes abren un archivo SQLite comparten memoria, y eso "
      "no pasa de una máquina a otra: se dañaría. Póngala en un disco de este equipo o, para "
      "trabajar desde varios, use un servidor MariaDB" +
      (opciones_.solo_lee ? "; ahí sólo se lee lo que ningún programa tiene abierto" : "; no se tocó nada"));
}

std::shared_ptr<BaseDatos> Anfitrion::Conecta(const Ubicacion& lugar) const {
  using Modo = Ubicacion::Modo;
  lugar.ExigeBase();
  // What this account made beside another's file would keep its owner from writing.
  if (opciones_.solo_lee && (lugar.EsDeSoloLectura() || lugar.EstaEnRed()))
    return BaseDatos::Abre(lugar.Cadena(lugar.TieneCambiosAlLado() ? Modo::Intacta : Modo::Congelada),
                           traza_);
  auto base = BaseDatos::Abre(lugar.Cadena(Modo::Existente), traza_);
  // A data source tells its file only now.
  if (const std::string archivo = base->Archivo(); !lugar.EsArchivo() && !archivo.empty())
    ExigeSitio(lugar.Con(archivo));
  return base;
}

std::optional<Esquema> Anfitrion::ExaminaIntacta(const Ubicacion& lugar) const {
  if (!lugar.TieneCambiosAlLado()) return std::nullopt;
  using Modo = Ubicacion::Modo;
  for (const Modo modo : {Modo::Intacta, Modo::Congelada, Modo::Lectura}) {
    try {
      const Esquema esquema = Examina(*BaseDatos::Abre(lugar.Cadena(modo), traza_));
      // Without what is beside it a file may lack what is ours; what is not ours stays so.
      const EstadoEsquema estado = esquema.estado;
      if (modo != Modo::Congelada || estado == EstadoEsquema::Ajeno || estado == EstadoEsquema::Nuevo ||
          (estado == EstadoEsquema::Falta && !lugar.TieneWal()))
        return esquema;
    } catch (const HostError&) {
      // What cannot be read without writing is told by opening it.
    }
  }
  return std::nullopt;
}

const std::shared_ptr<BaseDatos>& Anfitrion::Adopta(std::shared_ptr<BaseDatos> base) {
  LeeVetos(*base);
  // A connection may outlive its host in the hands of a client.
  base->AlReabrir([yo = weak_from_this(), de = base.get()] {
    if (const auto anfitrion = yo.lock()) anfitrion->CompruebaReabierta(*de);
  });
  base_ = std::move(base);
  return base_;
}

const std::shared_ptr<BaseDatos>& Anfitrion::Base() {
  if (base_) return base_;
  const Ubicacion lugar(opciones_);
  return AlAbrir(lugar, [&]() -> const std::shared_ptr<BaseDatos>& {
    ExigeSitio(lugar);
    const bool crea = opciones_.crea_archivo && lugar.Falta();
    recien_creada_ = crea && CreaArchivo(lugar, Contenido::Tienda);
    lugar.ExigeBase();
    if (const auto esquema = ExaminaIntacta(lugar)) ExigeListo(*esquema);
    auto base = Conecta(lugar);
    if (lugar.EnMemoria()) recien_creada_ = CreaEsquema(*base, Contenido::Tienda);
    ExigeListo(Examina(*base));
    return Adopta(std::move(base));
  });
}

BaseDatos& Anfitrion::BaseDe(const std::shared_ptr<Conexion>& conexion) {
  if (!conexion) return *Base();
  if (auto* base = dynamic_cast<BaseDatos*>(conexion.get())) return *base;
  throw HostError("La conexión no es de este anfitrión");
}

bool Anfitrion::CreaArchivo(const Ubicacion& lugar, Contenido contenido) const {
  // Beside its place first, so that nobody ever finds it empty or half made, and a program that dies at it
  // leaves nothing under that name.
  const ArchivoAparte aparte(lugar);
  CreaEsquema(*BaseDatos::Abre(aparte.Lugar().Cadena(Ubicacion::Modo::Nueva), traza_), contenido);
  return aparte.Publica();
}

Esquema Anfitrion::ExaminaBase() {
  if (base_) return Examina(*base_);
  const Ubicacion lugar(opciones_);
  ExigeSitio(lugar);
  if (lugar.Falta() || lugar.EnMemoria()) return {};
  return AlAbrir(lugar, [&] {
    lugar.ExigeBase();
    const auto esquema = ExaminaIntacta(lugar);
    return esquema ? *esquema : Examina(*Conecta(lugar));
  });
}

void Anfitrion::CreaBase(Contenido contenido) {
  const Ubicacion lugar(opciones_);
  AlAbrir(lugar, [&] {
    if (!base_) ExigeNuestraOVacia(lugar);
    const bool hecha = !base_ && lugar.Falta() && CreaArchivo(lugar, contenido);
    auto base = base_ ? base_ : Conecta(lugar);
    if (!hecha && !CreaEsquema(*base, contenido))
      throw HostError("La base ya tiene las tablas de Zuvi; no se tocó nada");
    recien_creada_ = true;
    Adopta(std::move(base));
  });
}

std::int32_t Anfitrion::ActualizaBase() {
  const Ubicacion lugar(opciones_);
  return AlAbrir(lugar, [&] {
    if (!base_) ExigeNuestraOVacia(lugar);
    auto base = base_ ? base_ : Conecta(lugar);
    const std::int32_t version = ActualizaEsquema(*base);
    Adopta(std::move(base));
    return version;
  });
}

void Anfitrion::CompruebaReabierta(BaseDatos& base) {
  // It may be another server by now, or the same one with an older copy: numbers kept here are not its.
  siguiente_movimiento_ = fin_de_bloque_ = 0;
  try {
    ExigeListo(Examina(base));
  } catch (const HostError& error) {
    if (error.SqlState().starts_with("08")) throw;
    throw HostError(
        std::string("La conexión se abrió de nuevo, pero la base de datos ya no es la de este programa: ") +
        error.what());
  }
}

void Anfitrion::ExigeNuestraOVacia(const Ubicacion& lugar) const {
  ExigeSitio(lugar);
  const auto esquema = ExaminaIntacta(lugar);
  if (esquema && (esquema->estado == EstadoEsquema::Ajeno || esquema->estado == EstadoEsquema::Nuevo))
    ExigeListo(*esquema);
}

void Anfitrion::LeeVetos(BaseDatos& base) {
  // Read once: a veto must not cost a statement per operation.
  std::set<std::string> vetadas;
  for (const auto filas = base.Consulta("SELECT clave FROM procesos WHERE vetado <> 0"); !filas->Eof();
       filas->MoveNext())
    vetadas.insert(ToText(filas->Campo(0)));
  vetadas_ = std::move(vetadas);
}

void Anfitrion::RehaceTienda(Contenido contenido) {
  RehaceEsquema(*Base(), contenido);
  siguiente_movimiento_ = fin_de_bloque_ = 0;
  LeeVetos(*base_);
}

void Anfitrion::TrazaEnArchivo(const std::string& ruta) {
  if (traza_en_archivo_ != 0) traza_.Deja(std::exchange(traza_en_archivo_, 0));
  archivo_de_traza_.reset();
  if (ruta.empty()) return;
  archivo_de_traza_ = std::make_shared<ArchivoDeTraza>(ruta);
  traza_en_archivo_ = traza_.Escucha([archivo = archivo_de_traza_](Suceso suceso, const std::string& texto) {
    archivo->Escribe(suceso, texto);
  });
}

void Anfitrion::AnotaLlamada(const char* operacion, std::initializer_list<Value> argumentos) const {
  std::string texto = operacion;
  char separador = ' ';
  for (const Value& argumento : argumentos) {
    texto += separador;
    texto += argumento.IsNull() ? "Null" : ToText(argumento);
    separador = ',';
  }
  traza_.Anota(Suceso::Llamada, texto);
}

void Anfitrion::Registra(std::string linea) {
  constexpr std::size_t kMaximo = 1000;
  if (registro_.size() == kMaximo) registro_.pop_front();
  registro_.push_back(std::move(linea));
}

void Anfitrion::Mensaje(const std::string& texto, EstiloMensaje estilo) {
  ++sucedido_.mensajes;
  traza_.Anota(Suceso::Mensaje, texto);
  Registra(texto);
  interaccion_->Mensaje(texto, estilo);
}

bool Anfitrion::Pregunta(const std::string& texto) {
  const bool respuesta = interaccion_->Pregunta(texto);
  const std::string linea = texto + (respuesta ? " -> si" : " -> no");
  traza_.Anota(Suceso::Pregunta, linea);
  Registra(linea);
  return respuesta;
}

void Anfitrion::MuestraDocumento(const std::string& archivo) {
  traza_.Anota(Suceso::Bitacora, "Reporte " + archivo);
  interaccion_->MuestraDocumento(
      archivo, [this](const std::string& texto) { Mensaje(texto, EstiloMensaje::Informacion); });
}

std::string Anfitrion::TomaRegistro() {
  std::string texto;
  for (const std::string& linea : std::exchange(registro_, {})) texto += linea + "\n";
  return texto;
}

void Anfitrion::NuevaOperacion() {
  if (*progresos_ != 0) return;
  interaccion_->NuevaOperacion();
  if (base_) base_->OlvidaPerdida();
}

void Anfitrion::ExigeNoCancelado() {
  if (interaccion_->Cancelado()) throw HostError("Operación cancelada por el usuario");
}

std::unique_ptr<Progreso> Anfitrion::AbreProgreso(std::int32_t total, const std::string& titulo,
                                                  const std::string& animacion) {
  return std::make_unique<ProgresoContado>(interaccion_->AbreProgreso(total, titulo, animacion), progresos_);
}

const Anfitrion::Gancho* Anfitrion::TraeGancho(const std::string& clave) const {
  const auto hallado = ganchos_.find(clave);
  return hallado == ganchos_.end() || !hallado->second ? nullptr : &hallado->second;
}

bool Anfitrion::Vetada(const std::string& clave) {
  Base();
  return vetadas_.contains(clave);
}

void Anfitrion::AnotaVentana(const ObjectPtr& ventana) {
  if (!ventana) return;
  ++sucedido_.ventanas;
  Retiene(ventana);
  ventanas_.push_back(ventana);
}

void Anfitrion::OlvidaVentana(const ObjectPtr& ventana) {
  if (!ventana) return;
  std::erase_if(ventanas_, [&](const ObjectPtr& otra) { return EsLaMisma(otra, ventana); });
}

std::vector<ObjectPtr> Anfitrion::Ventanas() {
  std::erase_if(ventanas_, [](const ObjectPtr& ventana) { return !EstaVisible(*ventana); });
  return ventanas_;
}

std::int32_t Anfitrion::NumeroDeMovimiento() {
  constexpr std::int32_t kBloque = 20;
  if (siguiente_movimiento_ == fin_de_bloque_) {
    fin_de_bloque_ = TomaFolios(*Base(), "movimientos", kBloque);
    siguiente_movimiento_ = fin_de_bloque_ - kBloque;
  }
  return ++siguiente_movimiento_;
}

}  // namespace zuvi::host
