// What hosts are promised, each piece against the others: the calls of the module as data, the calls that it
// makes, the type libraries as written, the members that are published, the integrator's guide.
#include <filesystem>
#include <fstream>
#include <set>

#include "host/ventanas/fabrica_ventanas.h"
#include "services/call_shapes.h"
#include "services/documento_inventario.h"
#include "services/ventanas.h"
#include "tests/host/tienda.h"
#include "tests/services/idl.h"

namespace zuvi::pruebas {
namespace {

const std::string kRaiz = ZUVI_RAIZ "/";

std::vector<InterfazIdl> Interfaces() {
  std::vector<InterfazIdl> todas;
  for (const auto& archivo : std::filesystem::directory_iterator(kRaiz + "com/idl"))
    if (archivo.path().extension() == ".idl")
      for (InterfazIdl& una : LeeIdl(archivo.path().string())) todas.push_back(std::move(una));
  return todas;
}

/// The class that publishes an interface, as a client creates it.
std::string ProgIdDe(const InterfazIdl& interfaz) {
  if (interfaz.nombre == "Ambiente") return Ambiente::kProgId;
  return (interfaz.dual ? "ZuviProduccion." : "ZuviQuery.") + interfaz.nombre.substr(1);
}

class FabricaProduccion final : public FabricaServicios {
 public:
  ObjectPtr Crea(std::string_view prog_id) override {
    if (prog_id != "ZuviProduccion.Produccion") throw HostError(ErrorNumber::CannotCreateObject);
    return std::make_shared<Produccion>(modulo_);
  }

 private:
  HeadlessDesktop escritorio_;
  Modulo modulo_{*this, escritorio_, [] { return false; }};
};

TEST(Contrato, WhatIsPublishedIsWhatTheTypeLibrariesPromise) {
  FabricaProduccion produccion;
  HeadlessDesktop escritorio;
  host::FabricaVentanas fabrica(host::AnfitrionEn(":memory:"), escritorio, produccion);
  std::size_t vistos = 0;
  for (const InterfazIdl& interfaz : Interfaces()) {
    SCOPED_TRACE(interfaz.nombre);
    const ObjectPtr objeto = fabrica.Crea(ProgIdDe(interfaz));
    const MemberTable& tabla = *objeto->Members();
    for (const MiembroIdl& prometido : interfaz.miembros) {
      SCOPED_TRACE(prometido.nombre);
      ++vistos;
      const Member* miembro = tabla.ByName(prometido.nombre);
      ASSERT_TRUE(miembro);
      EXPECT_EQ(miembro->name, prometido.nombre);
      EXPECT_EQ(miembro->id, prometido.id);
      EXPECT_EQ(tabla.ById(prometido.id), miembro);
      EXPECT_EQ(miembro->property, prometido.propiedad);
      EXPECT_EQ(static_cast<bool>(miembro->write), prometido.se_pone);
      std::vector<std::string> nombres;
      ByRef vuelven = 0;
      std::size_t obligatorios = 0;
      for (std::size_t i = 0; i < prometido.parametros.size(); ++i) {
        nombres.push_back(prometido.parametros[i].nombre);
        if (prometido.parametros[i].vuelve) vuelven |= ByRef{1} << i;
        if (!prometido.parametros[i].opcional) obligatorios = i + 1;
      }
      EXPECT_THAT(miembro->params, testing::ElementsAreArray(nombres));
      EXPECT_EQ(miembro->in_out, vuelven);
      EXPECT_LE(miembro->min_args, obligatorios);
    }
    // What is offered by name alone stands behind, whatever the library may come to promise.
    for (const Member& miembro : tabla.All())
      if (!interfaz.Miembro(miembro.name)) {
        EXPECT_GT(miembro.id, interfaz.miembros.back().id) << miembro.name;
      }
  }
  EXPECT_GT(vistos, 70u);
}

TEST(Contrato, TheTypeLibrariesTakeTheCallsOfTheModule) {
  const auto interfaces = Interfaces();
  std::set<std::string> sin_llamadas;
  for (const InterfazIdl& interfaz : interfaces) sin_llamadas.insert(ProgIdDe(interfaz));
  for (const ServiceShape& servicio : HostContract()) {
    SCOPED_TRACE(servicio.prog_id);
    const auto interfaz = std::ranges::find(interfaces, servicio.prog_id, ProgIdDe);
    sin_llamadas.erase(std::string(servicio.prog_id));
    if (interfaz == interfaces.end()) continue;  // that of the system
    std::vector<std::string_view> llamados, ofrecidos;
    for (const CallShape& llamada : servicio.calls) {
      SCOPED_TRACE(llamada.member);
      llamados.push_back(llamada.member);
      const MiembroIdl* miembro = interfaz->Miembro(llamada.member);
      ASSERT_TRUE(miembro);
      if (llamada.result != CallType::None) {
        EXPECT_TRUE(Cabe(llamada.result, miembro->resultado)) << miembro->resultado;
      }
      ASSERT_LE(llamada.arguments.size(), miembro->parametros.size());
      for (std::size_t i = 0; i < miembro->parametros.size(); ++i) {
        const ParametroIdl& parametro = miembro->parametros[i];
        SCOPED_TRACE(parametro.nombre);
        if (i >= llamada.arguments.size()) {
          EXPECT_TRUE(parametro.opcional);
          continue;
        }
        const CallArgument& argumento = llamada.arguments[i];
        EXPECT_EQ(argumento.name, parametro.nombre);
        EXPECT_EQ(argumento.travel != Travel::In, parametro.vuelve);
        const std::string tipo =
            parametro.vuelve ? parametro.tipo.substr(0, parametro.tipo.size() - 1) : parametro.tipo;
        EXPECT_TRUE(Cabe(argumento.type, tipo)) << tipo;
      }
    }
    for (const MiembroIdl& miembro : interfaz->miembros) ofrecidos.push_back(miembro.nombre);
    EXPECT_EQ(llamados, ofrecidos);
  }
  EXPECT_THAT(sin_llamadas, testing::ElementsAre("ZuviProduccion.Produccion", "ZuviQuery.Principal"));
}

CallType TipoDe(const Value& valor) {
  using enum CallType;
  // In the order of the kinds of a Value.
  constexpr CallType kTipos[] = {Any, Any, Short, Long, Real, Text, Date, Boolean, CallType::Object};
  static_assert(std::size(kTipos) == std::variant_size_v<Value::Data>);
  return kTipos[valor.Get().index()];
}

/// A host object of another maker that takes nothing but the calls of the table.
class Ajeno final : public Object {
 public:
  explicit Ajeno(const ServiceShape& servicio) : servicio_(servicio) {}
  bool Foreign() const override { return true; }
  std::optional<MemberId> Find(std::string_view nombre) override {
    const auto llamada = std::ranges::find(servicio_.calls, nombre, &CallShape::member);
    if (llamada == servicio_.calls.end()) return std::nullopt;
    return static_cast<MemberId>(llamada - servicio_.calls.begin());
  }
  bool TakesByRef(MemberId, std::size_t) override { return true; }
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref) override {
    const CallShape& llamada = Recibe(id, args, CallKind::Call);
    ByRef vuelven = 0;
    bool se_leen = false;
    for (std::size_t i = 0; i < llamada.arguments.size(); ++i) {
      if (llamada.arguments[i].travel != Travel::In) vuelven |= ByRef{1} << i;
      se_leen |= llamada.arguments[i].travel == Travel::InOut;
    }
    const ByRef de_mas = args.size() < 31 ? (ByRef{1} << args.size()) - 1 : kAllByRef;
    EXPECT_EQ(by_ref & de_mas, vuelven) << llamada.member;
    EXPECT_EQ((by_ref & kUnread) != 0, vuelven != 0 && !se_leen) << llamada.member;
    switch (llamada.result) {
      case CallType::None:
        return {};
      case CallType::Object:
        return shared_from_this();
      case CallType::Date:
        return Date();
      case CallType::Boolean:
        return true;
      default:
        return std::int16_t{7};
    }
  }
  void Write(MemberId id, std::span<Value> args) override { Recibe(id, args, CallKind::Put); }
  const std::set<std::string_view>& Vistos() const { return vistos_; }

 private:
  const CallShape& Recibe(MemberId id, std::span<Value> args, CallKind modo) {
    const CallShape& llamada = servicio_.calls[static_cast<std::size_t>(id)];
    SCOPED_TRACE(llamada.member);
    vistos_.insert(llamada.member);
    EXPECT_EQ(llamada.kind, modo);
    EXPECT_EQ(args.size(), llamada.arguments.size());
    for (std::size_t i = 0; i < std::min(args.size(), llamada.arguments.size()); ++i) {
      const CallArgument& argumento = llamada.arguments[i];
      if (argumento.type != CallType::Any) {
        EXPECT_EQ(TipoDe(args[i]), argumento.type) << argumento.name;
      }
      if (argumento.always) {
        EXPECT_EQ(args[i], *argumento.always) << argumento.name;
      }
    }
    return llamada;
  }

  const ServiceShape& servicio_;
  std::set<std::string_view> vistos_;
};

// Everything that a service offers is called; one object stands for all that are handed over.
void Llama(Ambiente& a, const ObjectPtr&) {
  a.TraeConexion(), a.UsuarioActual(), a.RutaAplicacion(), a.EjecutaSQL("UPDATE op"), a.DatoFechaA(),
      a.DatoFechaB(), a.DatoDocumento(), a.ParametrosEstacion(), a.ContenedorRutas();
}
void Llama(AccesoDatos& d, const ObjectPtr& o) {
  const auto conexion = Como<Conexion>(o);
  const auto ambiente = Como<Ambiente>(o);
  d.Consulta("SELECT", conexion), d.ValorNumerico(2.5), d.ValorTexto("x"), d.EstaVacio("");
  d.TraeMensaje(757, ambiente), d.Mensaje("x", EstiloMensaje::Error, ambiente), d.Pregunta("x", 2);
  std::int32_t documento = 0;
  d.SiguienteFolio("Op", conexion, documento, nullptr);
  EXPECT_EQ(documento, 0);
  d.ComponeFecha(1, 2), d.FechaSQL(conexion, Date()), d.TextoConCeros(1, 2);
  d.ExisteClave("x", "prods", "articulo", conexion), d.UbicacionRestringida("x", 1, conexion);
  d.NuevoConstructorSql(), d.PreparaVentana(o, ambiente), d.LiberaVentana(o, ambiente);
  d.FormateaCampo(o, ambiente), d.FiltroMayusculas(o, 65), d.FiltroTecla(o, 65);
}
void Llama(ControlProcesos& p, const ObjectPtr& o) {
  PeticionProceso peticion;
  peticion.clave = "Op001", peticion.objeto = o, peticion.ambiente = o;
  p.IniciaProceso(peticion), p.ConsultaProceso(peticion.bandera), p.CierraProceso(0);
  p.ImprimeReporte("ORDENP", 1, Como<Ambiente>(o), o);
}
void Llama(ConstructorSql& c, const ObjectPtr& o) {
  c.PonConexion(Como<Conexion>(o)), c.PonRutas(o), c.Limpia(), c.Tipo("INSERT");
  c.AgregaCampo("op", "op", 1), c.Condicion("op = 1"), c.Genera("op"), c.Ejecuta();
}
void Llama(VentanaProgreso& v, const ObjectPtr&) { v.Inicia(1, "x", "y"), v.Avanza(1, "x", ""), v.Cierra(); }
void Llama(DocumentoInventario& d, const ObjectPtr& o) {
  d.PonAmbiente(Como<Ambiente>(o)), d.PonDatoDocumento(1), d.PonDatoFecha(1), d.PonFecha(Date());
  d.PonTipo(kSalida), d.PonConcepto("EN"), d.PonOrden(1), d.PonFolio("1"), d.PonUsuario("x");
  d.PonAlmacen(1), d.PonArticulo("x"), d.PonCantidad(1), d.PonCosto(1);
  std::int32_t numero = 0;
  d.AplicaMovimiento(numero);
}
void Llama(BuscaCatalogo& b, const ObjectPtr& o) {
  b.PonAmbiente(Como<Ambiente>(o)), b.PonDestino(o), b.PonFiltro("kit <> 0"), b.Muestra("Articulos");
}
void Llama(CapturaNumerica& c, const ObjectPtr& o) {
  c.PonAmbiente(Como<Ambiente>(o)), c.PonDestino(o), c.Muestra();
}
void Llama(Recordset& r, const ObjectPtr& o) {
  r.Eof(), r.MoveNext(), r.Campo("op"), r.Campo(0), r.PonCursorType(1), r.PonLockType(3);
  r.Open("SELECT", Como<Conexion>(o), -1, -1, 1);
}

template <class T>
void LlamaPorNombre(const ObjectPtr& ajeno) {
  Llama(*Como<T>(ajeno), ajeno);
}

TEST(Contrato, TheAdaptersMakeTheCallsOfTheTableAndNoOthers) {
  const std::pair<std::string_view, void (*)(const ObjectPtr&)> servicios[] = {
      {Ambiente::kProgId, &LlamaPorNombre<Ambiente>},
      {AccesoDatos::kProgId, &LlamaPorNombre<AccesoDatos>},
      {ControlProcesos::kProgId, &LlamaPorNombre<ControlProcesos>},
      {ConstructorSql::kProgId, &LlamaPorNombre<ConstructorSql>},
      {VentanaProgreso::kProgId, &LlamaPorNombre<VentanaProgreso>},
      {DocumentoInventario::kProgId, &LlamaPorNombre<DocumentoInventario>},
      {BuscaCatalogo::kProgId, &LlamaPorNombre<BuscaCatalogo>},
      {CapturaNumerica::kProgId, &LlamaPorNombre<CapturaNumerica>},
      {Recordset::kProgId, &LlamaPorNombre<Recordset>}};
  ASSERT_EQ(std::size(servicios), HostContract().size());
  for (std::size_t i = 0; i < std::size(servicios); ++i) {
    const ServiceShape& servicio = HostContract()[i];
    SCOPED_TRACE(servicio.prog_id);
    ASSERT_EQ(servicios[i].first, servicio.prog_id);
    const auto ajeno = std::make_shared<Ajeno>(servicio);
    servicios[i].second(ajeno);
    EXPECT_EQ(ajeno->Vistos().size(), servicio.calls.size());
  }
}

std::string Escrito(const Value& valor) {
  if (valor.IsNull()) return "Null";
  if (valor.IsObject()) return "Nothing";
  return std::holds_alternative<std::string>(valor.Get()) ? '"' + ToText(valor) + '"' : ToText(valor);
}

const char* Escrito(CallType tipo) {
  constexpr const char* kNombres[] = {"",       "Variant", "Integer", "Long",  "Double",
                                      "String", "Date",    "Boolean", "Object"};
  return kNombres[static_cast<std::size_t>(tipo)];
}

std::string Escrito(const CallArgument& argumento) {
  std::string texto = argumento.travel == Travel::In ? "`" : "`ByRef ";
  texto += std::string(argumento.name) + " As " + Escrito(argumento.type);
  if (argumento.always) texto += " = " + Escrito(*argumento.always);
  texto += "`";
  if (argumento.travel == Travel::Unread) texto += " (no se lee)";
  if (argumento.optional) texto += " (si se declara)";
  return texto;
}

/// The part of the guide that lists every call.
std::string Guia() {
  std::string texto;
  for (const ServiceShape& servicio : HostContract()) {
    texto += "\n### `" + std::string(servicio.prog_id) + "`\n\n" + std::string(servicio.life) +
             ".\n\n| Miembro | Argumentos | Devuelve | Cuándo | Si falla |\n|---|---|---|---|---|\n";
    for (const CallShape& llamada : servicio.calls) {
      texto += "| `" + std::string(llamada.member) + "`" +
               (llamada.kind == CallKind::Put ? " (se pone)" : "") + " | ";
      const char* coma = "";
      for (const CallArgument& argumento : llamada.arguments) {
        texto += coma + Escrito(argumento);
        coma = ", ";
      }
      texto += std::string(" | ") + Escrito(llamada.result) + " | " + std::string(llamada.when) + " | " +
               std::string(llamada.failure) + " |\n";
    }
  }
  return texto + "\n";
}

TEST(Contrato, TheGuideListsEveryCall) {
  const std::string archivo = kRaiz + "docs/integrador.md", antes = "<!-- llamadas -->\n",
                    despues = "<!-- fin de las llamadas -->\n";
  std::ifstream entrada(archivo);
  const std::string texto((std::istreambuf_iterator<char>(entrada)), {});
  const auto desde = texto.find(antes), hasta = texto.find(despues);
  ASSERT_LT(desde, hasta) << archivo;
  const auto cabeza = texto.substr(0, desde + antes.size());
  if (texto.substr(cabeza.size(), hasta - cabeza.size()) == Guia()) return;
  std::ofstream("integrador.now.md") << cabeza << Guia() << texto.substr(hasta);
  FAIL() << "docs/integrador.md no dice lo que services/call_shapes.cpp; integrador.now.md lo dice";
}

}  // namespace
}  // namespace zuvi::pruebas
