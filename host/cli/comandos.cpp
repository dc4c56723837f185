#include "host/cli/comandos.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>

#include "base/clock.h"
#include "component/produccion.h"
#include "host/anfitrion/anfitrion.h"
#include "host/anfitrion/interaccion_consola.h"
#include "host/cli/listados.h"
#include "host/cli/numeros.h"
#include "host/odbc/ubicacion.h"
#include "host/processes/paginas.h"
#include "host/services/fabrica_anfitrion.h"
#include "host/shop/ocupadas.h"
#include "host/shop/ordenes.h"
#include "host/system/pila.h"
#include "host/system/red.h"
#include "host/system/rutas.h"
#include "toolkit/form.h"

namespace zuvi::cli {
namespace {

/// Shows the component's error reports on standard error and counts them.
class EscritorioConsola final : public Desktop {
 public:
  void ShowMessage(const std::string& text) noexcept override {
    ++avisos_;
    std::string limpio = text;
    std::erase(limpio, '\r');
    std::cerr << limpio << '\n';
  }
  // A console has no windows: none is waited for.
  void PumpEvents() override {}
  void RunModal(Form& form, Form* /*owner*/) override { form.Hide(); }
  Date Now() const override { return Date::FromCivil(Ahora()); }
  int Avisos() const { return avisos_; }

 private:
  int avisos_ = 0;
};

/// One run of the program: the host with its database, and the component.
class Corrida {
 public:
  Corrida(const LineaDeOrdenes& linea, bool solo_lee)
      : argumentos_(linea.argumentos), anfitrion_(NuevoAnfitrion(linea, solo_lee)), fabrica_(anfitrion_) {
    produccion_->PonAmbiente(fabrica_.Crea(Ambiente::kProgId));
  }

  host::BaseDatos& Base() {
    const auto& base = anfitrion_->Base();
    abierta_ = true;
    return *base;
  }
  /// What there is of a database that a command prepares. One that has none of these states is refused, as
  /// when it is opened; what fails afterwards is the work.
  host::EstadoEsquema Examina(std::initializer_list<host::EstadoEsquema> admitidos) {
    const host::Esquema esquema = anfitrion_->ExaminaBase();
    if (std::ranges::find(admitidos, esquema.estado) == admitidos.end()) host::ExigeListo(esquema);
    abierta_ = true;
    return esquema.estado;
  }
  bool Abierta() const { return abierta_; }
  host::Anfitrion& TraeAnfitrion() { return *anfitrion_; }
  Produccion& TraeProduccion() { return *produccion_; }
  const std::string& Texto(std::size_t i) const { return argumentos_[i]; }
  std::size_t Cuantos() const { return argumentos_.size(); }
  /// The order number at that place; 0 when it was left out.
  std::int32_t Orden(std::size_t i) const {
    return i < argumentos_.size() ? Entero(argumentos_[i], "La orden") : 0;
  }
  int Avisos() const { return escritorio_.Avisos(); }
  int Movimientos() const { return anfitrion_->LoSucedido().movimientos; }

 private:
  static std::shared_ptr<host::Anfitrion> NuevoAnfitrion(const LineaDeOrdenes& linea, bool solo_lee) {
    host::Opciones opciones;
    host::PonBase(opciones, linea.base);
    opciones.solo_lee = solo_lee;
    opciones.esta_en_red = host::EstaEnRed;
    opciones.usuario = linea.usuario;
    opciones.idioma = linea.idioma;
    std::error_code fallo;
    auto carpeta = std::filesystem::absolute(host::Ruta(opciones.archivo), fallo).parent_path();
    if (opciones.archivo.empty() || carpeta.empty()) carpeta = std::filesystem::current_path(fallo);
    opciones.ruta = host::TextoDeRuta(carpeta);
    opciones.reportes = linea.reportes.empty() ? host::CarpetasDeReportes() : std::vector{linea.reportes};
    auto anfitrion = std::make_shared<host::Anfitrion>(
        std::move(opciones), std::make_unique<host::ConsolaInteraccion>(linea.respuesta));
    anfitrion->TrazaEnArchivo(linea.traza);
    return anfitrion;
  }

  std::vector<std::string> argumentos_;
  std::shared_ptr<host::Anfitrion> anfitrion_;
  host::FabricaAnfitrion fabrica_;
  EscritorioConsola escritorio_;
  Modulo modulo_{fabrica_, escritorio_, host::PilaCasiAgotada};
  std::shared_ptr<Produccion> produccion_ = std::make_shared<Produccion>(modulo_);
  bool abierta_ = false;
};

Salida Falla(const std::string& texto) {
  std::cerr << texto << '\n';
  return Salida::Fallo;
}

/// How an assembly or a disassembly ended.
Salida Resultado(const Corrida& corrida) {
  if (corrida.Avisos() > 0)
    return Falla("La operación no terminó; movimientos aplicados: " + std::to_string(corrida.Movimientos()));
  if (corrida.Movimientos() == 0)
    return Falla("No se hizo nada: el artículo no tiene componentes o el proceso está vetado");
  std::cout << "Hecho: " << corrida.Movimientos() << " movimientos\n";
  return Salida::Hecho;
}

/// Nothing is posted for a key that is no article's: a component would be taken from stock for nobody.
bool HayArticulo(Corrida& corrida, const std::string& articulo) {
  host::BaseDatos& base = corrida.Base();
  return !base.Consulta("SELECT articulo FROM prods WHERE articulo = " +
                        host::Literal(base.GetEngine(), articulo))
              ->Eof();
}

Salida NoHayArticulo(const std::string& articulo) { return Falla("El artículo " + articulo + " no existe"); }

Salida Ensambla(Corrida& corrida) {
  if (!HayArticulo(corrida, corrida.Texto(0))) return NoHayArticulo(corrida.Texto(0));
  const std::int32_t almacen = Entero(corrida.Texto(1), "El almacén");
  const std::int32_t cantidad = Entero(corrida.Texto(2), "La cantidad");
  corrida.TraeProduccion().Ensamble(corrida.Texto(0), almacen, cantidad, corrida.Orden(3));
  return Resultado(corrida);
}

Salida Desensambla(Corrida& corrida) {
  if (!HayArticulo(corrida, corrida.Texto(0))) return NoHayArticulo(corrida.Texto(0));
  const double cantidad = Real(corrida.Texto(1), "La cantidad");
  const std::int32_t almacen = Entero(corrida.Texto(2), "El almacén");
  corrida.TraeProduccion().Desensamble(corrida.Texto(0), cantidad, almacen, corrida.Orden(3));
  return Resultado(corrida);
}

Salida Entrega(Corrida& corrida) {
  const std::int32_t op = corrida.Orden(0);
  host::BaseDatos& base = corrida.Base();
  if (!host::HayOrden(base, op)) return Falla(host::DeOrden(op).no_existe);
  const host::PartidasDeOrden partidas(base, op);
  if (partidas.cuantas == 0) return Falla(host::DeOrden(op).sin_partidas);
  if (partidas.por_entregar.empty() && !corrida.TraeAnfitrion().Pregunta(host::DeOrden(op).ya_entregada))
    return Falla("No se entregó nada");

  corrida.TraeProduccion().EntregaProductoTerminado(op);
  if (const std::string resto = host::PartidasDeOrden(base, op).por_entregar; !resto.empty())
    return Falla("La entrega no terminó; queda por marcar como terminado:\n" + resto +
                 "Movimientos aplicados: " + std::to_string(corrida.Movimientos()));
  if (corrida.Avisos() > 0)
    return Falla("La orden quedó marcada como terminada, pero hubo partidas con error");
  std::cout << "Orden " << op << " entregada: " << corrida.Movimientos() << " movimientos\n";
  return Salida::Hecho;
}

Salida Cancela(Corrida& corrida) {
  const std::int32_t op = corrida.Orden(0);
  if (!host::HayOrden(corrida.Base(), op)) return Falla(host::DeOrden(op).no_existe);
  if (!corrida.TraeProduccion().CancelaOp(op)) return Falla(host::DeOrden(op).no_cancelada);
  const bool cerrada = host::HayOrden(corrida.Base(), op);
  std::cout << "Orden " << op << (cerrada ? " cerrada\n" : " cancelada\n");
  return Salida::Hecho;
}

Salida Folio(Corrida& corrida) {
  host::FabricaAnfitrion fabrica(corrida.TraeAnfitrion().shared_from_this());
  std::int32_t documento = 0;
  std::cout << fabrica.Nuevo<AccesoDatos>()->SiguienteFolio(corrida.Texto(0), corrida.TraeAnfitrion().Base(),
                                                            documento, nullptr)
            << '\n';
  return Salida::Hecho;
}

Salida Existencias(Corrida& corrida) {
  EscribeExistencias(std::cout, corrida.Base(), corrida.Cuantos() > 0 ? corrida.Texto(0) : "");
  return Salida::Hecho;
}
Salida Ordenes(Corrida& corrida) {
  EscribeOrdenes(std::cout, corrida.Base());
  return Salida::Hecho;
}
Salida UnaOrden(Corrida& corrida) {
  EscribeOrden(std::cout, corrida.Base(), corrida.Orden(0));
  return Salida::Hecho;
}
Salida Imprime(Corrida& corrida) {
  host::FabricaAnfitrion fabrica(corrida.TraeAnfitrion().shared_from_this());
  fabrica.Nuevo<ControlProcesos>()->ImprimeReporte("ORDENP", corrida.Orden(0), nullptr, nullptr);
  return Salida::Hecho;
}
Salida Kit(Corrida& corrida) {
  EscribeKit(std::cout, corrida.Base(), corrida.Texto(0));
  return Salida::Hecho;
}
Salida Ocupadas(Corrida& corrida) {
  EscribeOcupadas(std::cout, corrida.Base());
  return Salida::Hecho;
}
Salida Libera(Corrida& corrida) {
  const std::int32_t op = corrida.Orden(0);
  if (!host::LiberaOrden(corrida.Base(), op, corrida.TraeAnfitrion().TraeOpciones().usuario))
    return Falla(host::DeOrden(op).no_ocupada);
  std::cout << "Orden " << op << " liberada\n";
  return Salida::Hecho;
}
Salida Consulta(Corrida& corrida) {
  corrida.Base().SoloLectura();
  EscribeConsulta(std::cout, corrida.Base(), corrida.Texto(0));
  return Salida::Hecho;
}

Salida RevisaExistencias(Corrida& corrida) {
  const bool cuadra = EscribeRevision(std::cout, corrida.Base());
  return cuadra ? Salida::Hecho : Falla("Las existencias no cuadran con los movimientos");
}

/// What a command does with the database; the makers of one may find none.
enum class Uso { Lee, Escribe, Prepara };

struct Comando {
  const char* nombre;
  const char* argumentos;
  std::size_t minimo;
  std::size_t maximo;
  Uso uso;
  const char* que;
  Salida (*corre)(Corrida&, const LineaDeOrdenes&);
};

template <Salida (*corre)(Corrida&)>
Salida Sola(Corrida& corrida, const LineaDeOrdenes&) {
  return corre(corrida);
}

Salida Crea(Corrida& corrida, const LineaDeOrdenes& linea) {
  host::Anfitrion& anfitrion = corrida.TraeAnfitrion();
  const host::Contenido contenido = linea.vacia ? host::Contenido::Vacio : host::Contenido::Tienda;
  const std::string nombre = linea.vacia ? "Base vacía" : "Tienda de ejemplo";
  using enum host::EstadoEsquema;
  if (corrida.Examina({Falta, AMedias, Listo}) != Listo) {
    anfitrion.CreaBase(contenido);
  } else {
    corrida.Base();
    if (!anfitrion.Pregunta("La base ya existe. ¿Rehacerla (" + nombre + ")? Se perderá todo lo capturado."))
      return Falla("No se tocó nada");
    anfitrion.RehaceTienda(contenido);
  }
  std::cout << nombre << " lista\n";
  return Salida::Hecho;
}

Salida Actualiza(Corrida& corrida, const LineaDeOrdenes&) {
  const std::string actual = Decimal(host::kVersionEsquema);
  using enum host::EstadoEsquema;
  corrida.Examina({Antiguo, Roto, Listo});
  const std::int32_t version = corrida.TraeAnfitrion().ActualizaBase();
  std::cout << (version == host::kVersionEsquema
                    ? "La base ya es de la versión " + actual + "\n"
                    : "La base era de la versión " + Decimal(version) + " y quedó en la " + actual + "\n");
  return Salida::Hecho;
}

constexpr Comando kComandos[] = {
    {"ensambla", "ARTICULO ALMACEN KITS [OP]", 3, 4, Uso::Escribe, "arma kits y los da de alta en el almacén",
     Sola<Ensambla>},
    {"desensambla", "ARTICULO CANTIDAD ALMACEN [OP]", 3, 4, Uso::Escribe, "desarma kits del almacén",
     Sola<Desensambla>},
    {"entrega", "OP", 1, 1, Uso::Escribe, "entrega el producto terminado de una orden", Sola<Entrega>},
    {"cancela", "OP", 1, 1, Uso::Escribe, "cancela una orden, o la cierra si está confirmada", Sola<Cancela>},
    {"folio", "CLAVE", 1, 1, Uso::Escribe, "toma el siguiente folio de una clave", Sola<Folio>},
    {"existencias", "[ARTICULO]", 0, 1, Uso::Lee, "existencias, costos y valor", Sola<Existencias>},
    {"ordenes", "", 0, 0, Uso::Lee, "lista de órdenes", Sola<Ordenes>},
    {"orden", "OP", 1, 1, Uso::Lee, "una orden con sus partidas", Sola<UnaOrden>},
    {"imprime", "OP", 1, 1, Uso::Lee, "escribe la página imprimible de una orden", Sola<Imprime>},
    {"kit", "ARTICULO", 1, 1, Uso::Lee, "receta de un kit con sus costos", Sola<Kit>},
    {"ocupadas", "", 0, 0, Uso::Lee, "órdenes marcadas como ocupadas", Sola<Ocupadas>},
    {"libera", "OP", 1, 1, Uso::Escribe, "quita la marca de ocupada a una orden", Sola<Libera>},
    {"consulta", "SQL", 1, 1, Uso::Lee, "muestra el resultado de una consulta", Sola<Consulta>},
    {"revisa", "", 0, 0, Uso::Lee, "compara existencias y costos con los movimientos",
     Sola<RevisaExistencias>},
    {"crea", "[--vacia]", 0, 0, Uso::Prepara, "crea la tienda de ejemplo, o una base vacía; o la rehace",
     Crea},
    {"actualiza", "", 0, 0, Uso::Prepara, "pone al día una base de una versión anterior", Actualiza},
};

/// A SQLite file that the engine finds broken on the way.
bool EsDanio(const HostError& error) {
  constexpr std::int32_t kCorrupta = 11, kNoEsBase = 26;
  return error.NativeCode() == kCorrupta || error.NativeCode() == kNoEsBase;
}

Salida SinBase(const std::string& texto) {
  std::cerr << "No se pudo abrir la base de datos: " << texto << '\n';
  return Salida::SinBase;
}

Salida Corre(const Comando& comando, const LineaDeOrdenes& linea, Corrida& corrida) {
  try {
    if (comando.uso != Uso::Prepara) corrida.Base();
    return comando.corre(corrida, linea);
  } catch (const HostError& error) {
    if (!corrida.Abierta()) return SinBase(error.what());
    if (!EsDanio(error)) throw;
    return SinBase(host::Ubicacion(corrida.TraeAnfitrion().TraeOpciones()).Explica(error).what());
  }
}

}  // namespace

std::string Ayuda() {
  std::string texto =
      "Uso: zuvi [OPCIONES] COMANDO [ARGUMENTOS]\n\n"
      "Producción de la tienda desde la línea de órdenes.\n\nComandos:\n";
  for (const Comando& comando : kComandos) {
    std::string uso = std::string("  ") + comando.nombre + " " + comando.argumentos;
    uso.resize(std::max<std::size_t>(uso.size() + 2, 46), ' ');
    texto += uso + comando.que + "\n";
  }
  return texto +
         "\nOpciones:\n"
         "  --base ARCHIVO|CADENA   archivo SQLite, o cadena de conexión ODBC (\"Server=...\",\n"
         "                          \"DSN=...\"; el controlador se busca si no trae DRIVER=...);\n"
         "                          si falta, ZUVI_BASE, y si no zuvi.db en la carpeta actual\n"
         "  --usuario NOMBRE        usuario que firma; si falta, ZUVI_USUARIO, y si no ADMIN\n"
         "  --idioma es|en          idioma de los mensajes; si falta, ZUVI_IDIOMA, y si no es\n"
         "  --reportes CARPETA      donde imprime deja la página; si falta, ZUVI_REPORTES, y si no\n"
         "                          Zuvi/Reportes en los documentos del usuario\n"
         "  --traza ARCHIVO         agrega a ese archivo cada sentencia, llamada y mensaje\n"
         "  --si, --no              responde así a todas las preguntas\n"
         "  --vacia                 con crea: sin la tienda de ejemplo\n"
         "  --help, --version       esta ayuda; la versión\n"
         "\nSólo crea, actualiza y las operaciones cambian la base; las demás órdenes la leen.\n"
         "Los números llevan punto decimal. Ctrl-C cancela el trabajo en curso: lo ya hecho se queda.\n"
         "\nCódigos de salida:\n"
         "  0  hecho\n"
         "  1  la operación falló, fue rechazada o no había nada que hacer; o no se pudo escribir\n"
         "     la salida o la traza\n"
         "  2  línea de órdenes incorrecta\n"
         "  3  no hay base de datos, no es de Zuvi, está dañada o no se pudo abrir\n";
}

Salida Corre(const LineaDeOrdenes& linea) {
  const auto comando =
      std::ranges::find_if(kComandos, [&](const Comando& c) { return c.nombre == linea.comando; });
  if (comando == std::end(kComandos)) throw MalUso("No se conoce el comando " + linea.comando);
  if (linea.argumentos.size() < comando->minimo || linea.argumentos.size() > comando->maximo)
    throw MalUso("Uso: zuvi " + linea.comando + " " + comando->argumentos);

  ExigeNumeros(comando->argumentos, linea.argumentos);
  Corrida corrida(linea, comando->uso == Uso::Lee);
  const Salida salida = Corre(*comando, linea, corrida);
  if (corrida.TraeAnfitrion().TrazaEntera()) return salida;
  const Salida con_traza = Falla("No se pudo escribir la traza en " + linea.traza);
  return salida == Salida::Hecho ? con_traza : salida;
}

}  // namespace zuvi::cli
