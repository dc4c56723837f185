#include "host/cli/comandos.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>

#include "base/reloj.h"
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
  void Avisa(const std::string& text) noexcept override {
    ++avisos_;
    std::string limpio = text;
    std::erase(limpio, '\r');
    std::cerr << limpio << '\n';
  }
  // A console has no windows: none is waited for.
  void PumpEvents() override {}
  void RunModal(Form& form, Form* /*owner*/) override { form.Hide(); }
  Fecha Now() const override { return Fecha::DesdeCivil(Ahora()); }
  int Avisos() const { return avisos_; }

 private:
  int avisos_ = 0;
};

/// One run of the program: the host with its database, and the component.
class Sesion {
 public:
  Sesion(const LineaDeOrdenes& linea, bool solo_lee)
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
Salida Resultado(const Sesion& sesion) {
  if (sesion.Avisos() > 0)
    return Falla("La operación no terminó; movimientos aplicados: " + std::to_string(sesion.Movimientos()));
  if (sesion.Movimientos() == 0)
    return Falla("No se hizo nada: el artículo no tiene componentes o el proceso está vetado");
  std::cout << "Hecho: " << sesion.Movimientos() << " movimientos\n";
  return Salida::Hecho;
}

/// Nothing is posted for a key that is no article's: a component would be taken from stock for nobody.
bool HayArticulo(Sesion& sesion, const std::string& articulo) {
  host::BaseDatos& base = sesion.Base();
  return !base.Consulta("SELECT articulo FROM prods WHERE articulo = " +
                        host::Literal(base.TraeMotor(), articulo))
              ->Eof();
}

Salida NoHayArticulo(const std::string& articulo) { return Falla("El artículo " + articulo + " no existe"); }

Salida Ensambla(Sesion& sesion) {
  if (!HayArticulo(sesion, sesion.Texto(0))) return NoHayArticulo(sesion.Texto(0));
  const std::int32_t almacen = Entero(sesion.Texto(1), "El almacén");
  const std::int32_t cantidad = Entero(sesion.Texto(2), "La cantidad");
  sesion.TraeProduccion().Ensamble(sesion.Texto(0), almacen, cantidad, sesion.Orden(3));
  return Resultado(sesion);
}

Salida Desensambla(Sesion& sesion) {
  if (!HayArticulo(sesion, sesion.Texto(0))) return NoHayArticulo(sesion.Texto(0));
  const double cantidad = Real(sesion.Texto(1), "La cantidad");
  const std::int32_t almacen = Entero(sesion.Texto(2), "El almacén");
  sesion.TraeProduccion().Desensamble(sesion.Texto(0), cantidad, almacen, sesion.Orden(3));
  return Resultado(sesion);
}

Salida Entrega(Sesion& sesion) {
  const std::int32_t op = sesion.Orden(0);
  const std::string numero = Decimal(op);
  host::BaseDatos& base = sesion.Base();
  if (!host::HayOrden(base, op)) return Falla("La orden " + numero + " no existe");
  const host::PartidasDeOrden partidas(base, op);
  if (partidas.cuantas == 0) return Falla("La orden " + numero + " no tiene partidas que entregar");
  if (partidas.por_entregar.empty() &&
      !sesion.TraeAnfitrion().Pregunta("La orden " + numero + " ya está entregada. ¿Entregarla otra vez?"))
    return Falla("No se entregó nada");

  sesion.TraeProduccion().EntregaProductoTerminado(op);
  if (const std::string resto = host::PartidasDeOrden(base, op).por_entregar; !resto.empty())
    return Falla("La entrega no terminó; queda por marcar como terminado:\n" + resto +
                 "Movimientos aplicados: " + std::to_string(sesion.Movimientos()));
  if (sesion.Avisos() > 0)
    return Falla("La orden quedó marcada como terminada, pero hubo partidas con error");
  std::cout << "Orden " << numero << " entregada: " << sesion.Movimientos() << " movimientos\n";
  return Salida::Hecho;
}

Salida Cancela(Sesion& sesion) {
  const std::int32_t op = sesion.Orden(0);
  if (!host::HayOrden(sesion.Base(), op)) return Falla("La orden " + Decimal(op) + " no existe");
  if (!sesion.TraeProduccion().CancelaOp(op)) return Falla("La orden " + Decimal(op) + " no se canceló");
  const bool cerrada = host::HayOrden(sesion.Base(), op);
  std::cout << "Orden " << op << (cerrada ? " cerrada\n" : " cancelada\n");
  return Salida::Hecho;
}

Salida Folio(Sesion& sesion) {
  host::FabricaAnfitrion fabrica(sesion.TraeAnfitrion().shared_from_this());
  std::int32_t documento = 0;
  std::cout << fabrica.Nuevo<AccesoDatos>()->SiguienteFolio(sesion.Texto(0), sesion.TraeAnfitrion().Base(),
                                                            documento, nullptr)
            << '\n';
  return Salida::Hecho;
}

Salida Existencias(Sesion& sesion) {
  EscribeExistencias(std::cout, sesion.Base(), sesion.Cuantos() > 0 ? sesion.Texto(0) : "");
  return Salida::Hecho;
}
Salida Ordenes(Sesion& sesion) {
  EscribeOrdenes(std::cout, sesion.Base());
  return Salida::Hecho;
}
Salida UnaOrden(Sesion& sesion) {
  EscribeOrden(std::cout, sesion.Base(), sesion.Orden(0));
  return Salida::Hecho;
}
Salida Imprime(Sesion& sesion) {
  host::FabricaAnfitrion fabrica(sesion.TraeAnfitrion().shared_from_this());
  fabrica.Nuevo<ControlProcesos>()->ImprimeReporte("ORDENP", sesion.Orden(0), nullptr, nullptr);
  return Salida::Hecho;
}
Salida Kit(Sesion& sesion) {
  EscribeKit(std::cout, sesion.Base(), sesion.Texto(0));
  return Salida::Hecho;
}
Salida Ocupadas(Sesion& sesion) {
  EscribeOcupadas(std::cout, sesion.Base());
  return Salida::Hecho;
}
Salida Libera(Sesion& sesion) {
  const std::int32_t op = sesion.Orden(0);
  if (!host::LiberaOrden(sesion.Base(), op, sesion.TraeAnfitrion().TraeOpciones().usuario))
    return Falla("La orden " + Decimal(op) + " no está ocupada");
  std::cout << "Orden " << op << " liberada\n";
  return Salida::Hecho;
}
Salida Consulta(Sesion& sesion) {
  sesion.Base().SoloLectura();
  EscribeConsulta(std::cout, sesion.Base(), sesion.Texto(0));
  return Salida::Hecho;
}

Salida Revisa(Sesion& sesion) {
  const bool cuadra = EscribeRevision(std::cout, sesion.Base());
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
  Salida (*corre)(Sesion&, const LineaDeOrdenes&);
};

template <Salida (*corre)(Sesion&)>
Salida Sola(Sesion& sesion, const LineaDeOrdenes&) {
  return corre(sesion);
}

Salida Crea(Sesion& sesion, const LineaDeOrdenes& linea) {
  host::Anfitrion& anfitrion = sesion.TraeAnfitrion();
  const host::Contenido contenido = linea.vacia ? host::Contenido::Vacio : host::Contenido::Tienda;
  const std::string nombre = linea.vacia ? "Base vacía" : "Tienda de ejemplo";
  using enum host::EstadoEsquema;
  if (sesion.Examina({Falta, AMedias, Listo}) != Listo) {
    anfitrion.CreaBase(contenido);
  } else {
    sesion.Base();
    if (!anfitrion.Pregunta("La base ya existe. ¿Rehacerla (" + nombre + ")? Se perderá todo lo capturado."))
      return Falla("No se tocó nada");
    anfitrion.RehaceTienda(contenido);
  }
  std::cout << nombre << " lista\n";
  return Salida::Hecho;
}

Salida Actualiza(Sesion& sesion, const LineaDeOrdenes&) {
  const std::string actual = Decimal(host::kVersionEsquema);
  using enum host::EstadoEsquema;
  sesion.Examina({Antiguo, Roto, Listo});
  const std::int32_t version = sesion.TraeAnfitrion().ActualizaBase();
  std::cout << (version == host::kVersionEsquema
                    ? "La base ya es de la versión " + actual + "\n"
                    : "La base era de la versión " + Decimal(version) + " y quedó en la " + actual + "\n");
  return Salida::Hecho;
}

constexpr std::array kComandos{
    Comando{"ensambla", "ARTICULO ALMACEN KITS [OP]", 3, 4, Uso::Escribe,
            "arma kits y los da de alta en el almacén", Sola<Ensambla>},
    Comando{"desensambla", "ARTICULO CANTIDAD ALMACEN [OP]", 3, 4, Uso::Escribe, "desarma kits del almacén",
            Sola<Desensambla>},
    Comando{"entrega", "OP", 1, 1, Uso::Escribe, "entrega el producto terminado de una orden", Sola<Entrega>},
    Comando{"cancela", "OP", 1, 1, Uso::Escribe, "cancela una orden, o la cierra si está confirmada",
            Sola<Cancela>},
    Comando{"folio", "CLAVE", 1, 1, Uso::Escribe, "toma el siguiente folio de una clave", Sola<Folio>},
    Comando{"existencias", "[ARTICULO]", 0, 1, Uso::Lee, "existencias, costos y valor", Sola<Existencias>},
    Comando{"ordenes", "", 0, 0, Uso::Lee, "lista de órdenes", Sola<Ordenes>},
    Comando{"orden", "OP", 1, 1, Uso::Lee, "una orden con sus partidas", Sola<UnaOrden>},
    Comando{"imprime", "OP", 1, 1, Uso::Lee, "escribe la página imprimible de una orden", Sola<Imprime>},
    Comando{"kit", "ARTICULO", 1, 1, Uso::Lee, "receta de un kit con sus costos", Sola<Kit>},
    Comando{"ocupadas", "", 0, 0, Uso::Lee, "órdenes marcadas como ocupadas", Sola<Ocupadas>},
    Comando{"libera", "OP", 1, 1, Uso::Escribe, "quita la marca de ocupada a una orden", Sola<Libera>},
    Comando{"consulta", "SQL", 1, 1, Uso::Lee, "muestra el resultado de una consulta", Sola<Consulta>},
    Comando{"revisa", "", 0, 0, Uso::Lee, "compara existencias y costos con los movimientos", Sola<Revisa>},
    Comando{"crea", "[--vacia]", 0, 0, Uso::Prepara,
            "crea la tienda de ejemplo, o una base vacía; o la rehace", Crea},
    Comando{"actualiza", "", 0, 0, Uso::Prepara, "pone al día una base de una versión anterior", Actualiza},
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

Salida Corre(const Comando& comando, const LineaDeOrdenes& linea, Sesion& sesion) {
  try {
    if (comando.uso != Uso::Prepara) sesion.Base();
    return comando.corre(sesion, linea);
  } catch (const HostError& error) {
    if (!sesion.Abierta()) return SinBase(error.what());
    if (!EsDanio(error)) throw;
    return SinBase(host::Ubicacion(sesion.TraeAnfitrion().TraeOpciones()).Explica(error).what());
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
  if (comando == kComandos.end()) throw MalUso("No se conoce el comando " + linea.comando);
  if (linea.argumentos.size() < comando->minimo || linea.argumentos.size() > comando->maximo)
    throw MalUso("Uso: zuvi " + linea.comando + " " + comando->argumentos);

  ExigeNumeros(comando->argumentos, linea.argumentos);
  Sesion sesion(linea, comando->uso == Uso::Lee);
  const Salida salida = Corre(*comando, linea, sesion);
  if (sesion.TraeAnfitrion().TrazaEntera()) return salida;
  const Salida con_traza = Falla("No se pudo escribir la traza en " + linea.traza);
  return salida == Salida::Hecho ? con_traza : salida;
}

}  // namespace zuvi::cli
