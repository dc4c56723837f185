#include "services/by_name.h"

#include <array>

#include "services/acceso_datos.h"
#include "services/control_procesos.h"
#include "services/documento_inventario.h"
#include "services/late.h"
#include "services/ventanas.h"

namespace zuvi {
namespace {

/// Common part of the adapters: what is handed on to others is the object behind, never the adapter.
template <class Service>
class ByName : public Service {
 public:
  explicit ByName(ObjectPtr target) : late_(std::move(target)) {}
  std::optional<MemberId> Find(std::string_view name) final { return late_.Target()->Find(name); }
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref) final {
    return late_.Target()->Read(id, args, by_ref);
  }
  void Write(MemberId id, std::span<Value> args) final { late_.Target()->Write(id, args); }
  Value Default() final { return late_.Target()->Default(); }
  ObjectPtr Reference() final { return late_.Target()->Reference(); }

 protected:
  Late late_;
};

/// A service made of calls by name.
template <class Service>
class Adapter;

/// An object handed to a host as argument.
Value Arg(const ObjectPtr& object) { return Value(ReferenceOf(object)); }

template <>
class Adapter<Conexion> final : public ByName<Conexion> {
 public:
  using ByName::ByName;
};

template <>
class Adapter<Recordset> final : public ByName<Recordset> {
 public:
  using ByName::ByName;
  bool Eof() override { return ToBool(late_.Call("EOF")); }
  void MoveNext() override { late_.Call("MoveNext"); }
  Value Campo(FixedText nombre) override { return Field({"Item", {}, nombre}); }
  Value Campo(std::int32_t ordinal) override {
    Value index(ordinal);
    return Field({"Item", std::span(&index, 1)});
  }
  void PonCursorType(std::int32_t tipo) override { late_.Put("CursorType", tipo); }
  void PonLockType(std::int32_t tipo) override { late_.Put("LockType", tipo); }
  void Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion, std::int32_t cursor,
            std::int32_t bloqueo, std::int32_t opciones) override {
    late_.Call("Open", fuente, Arg(conexion), cursor, bloqueo, opciones);
  }

 private:
  Value Field(const Step& item) {
    const Step steps[] = {{"Fields"}, item, {"Value"}};
    return late_.ReadChain(steps);
  }
};

template <>
class Adapter<ConstructorSql> final : public ByName<ConstructorSql> {
 public:
  using ByName::ByName;
  void PonConexion(const std::shared_ptr<Conexion>& conexion) override {
    late_.Call("PonConexion", Arg(conexion));
  }
  void PonRutas(const ObjectPtr& rutas) override { late_.Call("PonRutas", Arg(rutas)); }
  void Limpia() override { late_.Call("Limpia"); }
  void Tipo(const std::string& tipo) override { late_.Call("Tipo", tipo); }
  void AgregaCampo(const std::string& tabla, const std::string& columna, const Value& valor) override {
    late_.Call("AgregaCampo", tabla, columna, valor);
  }
  void Condicion(const std::string& condicion) override { late_.Call("Condicion", condicion); }
  void Genera(const std::string& tabla) override { late_.Call("Genera", tabla); }
  void Ejecuta() override { late_.Call("Ejecuta"); }
};

template <>
class Adapter<Ambiente> final : public ByName<Ambiente> {
 public:
  using ByName::ByName;
  std::shared_ptr<Conexion> TraeConexion() override {
    return Como<Conexion>(ToObject(late_.Call("Conexion")));
  }
  std::string UsuarioActual() override { return ToText(late_.Call("UsuarioActual")); }
  std::string RutaAplicacion() override { return ToText(late_.Call("RutaAplicacion")); }
  void EjecutaSQL(const std::string& sql) override {
    if (!late_.TakesByRef("EjecutaSQL", 1)) {
      late_.Call("EjecutaSQL", sql);
      return;
    }
    std::array<Value, 2> args{sql, Value()};
    late_.CallByRef("EjecutaSQL", args, ByRef{1} << 1 | kUnread);
  }
  std::int32_t DatoFechaA() override { return ToInt32(late_.Call("DatoFechaA")); }
  std::int32_t DatoFechaB() override { return ToInt32(late_.Call("DatoFechaB")); }
  Value DatoDocumento() override { return late_.Call("DatoDocumento"); }
  std::shared_ptr<Recordset> ParametrosEstacion() override {
    return Como<Recordset>(ToObject(late_.Call("ParametrosEstacion")));
  }
  ObjectPtr ContenedorRutas() override {
    const Value contenedor = late_.Call("ContenedorRutas");
    return contenedor.IsEmpty() || contenedor.IsNull() ? nullptr : ToObject(contenedor);
  }
};

template <>
class Adapter<AccesoDatos> final : public ByName<AccesoDatos> {
 public:
  using ByName::ByName;
  std::shared_ptr<Recordset> Consulta(const std::string& sql,
                                      const std::shared_ptr<Conexion>& conexion) override {
    return Como<Recordset>(ToObject(late_.Call("Consulta", sql, Arg(conexion), true)));
  }
  double ValorNumerico(const Value& valor) override { return ToNumber(late_.Call("ValorNumerico", valor)); }
  std::string ValorTexto(const Value& valor) override { return ToText(late_.Call("ValorTexto", valor)); }
  bool EstaVacio(const std::string& texto) override { return ToBool(late_.Call("EstaVacio", texto)); }
  std::string TextoDeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>& ambiente) override {
    return ToText(late_.Call("TraeMensaje", numero, Arg(ambiente)));
  }
  void Mensaje(const std::string& texto, EstiloMensaje estilo,
               const std::shared_ptr<Ambiente>& ambiente) override {
    late_.Call("Mensaje", texto, static_cast<std::int16_t>(estilo), Arg(ambiente));
  }
  bool Pregunta(const std::string& texto, std::int16_t modo) override {
    return ToBool(late_.Call("Pregunta", texto, modo));
  }
  std::int32_t SiguienteFolio(const std::string& clave, const std::shared_ptr<Conexion>& conexion,
                              std::int32_t& documento,
                              const std::shared_ptr<ConstructorSql>& constructor) override {
    std::array<Value, 4> args{clave, Arg(conexion), documento, Arg(constructor)};
    const Value folio = late_.CallByRef("SiguienteFolio", args, ByRef{1} << 2);
    documento = ToInt32(args[2]);
    return ToInt32(folio);
  }
  Date ComponeFecha(std::int32_t a, std::int32_t b) override {
    return ToDate(late_.Call("ComponeFecha", a, b));
  }
  std::string FechaSQL(const std::shared_ptr<Conexion>& conexion, const Date& fecha) override {
    return ToText(late_.Call("FechaSQL", Arg(conexion), fecha));
  }
  std::string TextoConCeros(std::int32_t numero, std::int32_t ancho) override {
    return ToText(late_.Call("TextoConCeros", numero, ancho));
  }
  bool ExisteClave(const std::string& valor, const std::string& tabla, const std::string& columna,
                   const std::shared_ptr<Conexion>& conexion) override {
    return ToBool(late_.Call("ExisteClave", valor, tabla, columna, Arg(conexion), true));
  }
  bool UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                            const std::shared_ptr<Conexion>& conexion) override {
    return ToBool(late_.Call("UbicacionRestringida", articulo, almacen, Arg(conexion)));
  }
  std::shared_ptr<ConstructorSql> NuevoConstructorSql() override {
    return Como<ConstructorSql>(ToObject(late_.Call("NuevoConstructorSql")));
  }
  void PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override {
    late_.Call("PreparaVentana", Arg(ventana), Arg(ambiente), "");
  }
  void LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>& ambiente) override {
    late_.Call("LiberaVentana", Arg(ventana), Arg(ambiente), "frmMaster");
  }
  std::string FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>& ambiente) override {
    return ToText(late_.Call("FormateaCampo", Arg(caja), Arg(ambiente)));
  }
  std::int16_t FiltroMayusculas(const ObjectPtr& caja, std::int16_t caracter) override {
    std::array<Value, 2> args{Arg(caja), caracter};
    return ToInt16(late_.CallByRef("FiltroMayusculas", args, ByRef{1} << 1));
  }
  std::int16_t FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) override {
    std::array<Value, 3> args{true, Arg(caja), caracter};
    return ToInt16(late_.CallByRef("FiltroTecla", args, ByRef{1} << 2));
  }
};

template <>
class Adapter<ControlProcesos> final : public ByName<ControlProcesos> {
 public:
  using ByName::ByName;
  void IniciaProceso(PeticionProceso& p) override {
    std::array<Value, 11> args{p.clave,  Arg(p.objeto), Arg(p.ambiente), p.dato,   Arg(p.objeto2), p.bandera,
                               p.numero, p.texto,       p.nulo,          p.texto2, Arg(p.objeto3)};
    late_.CallByRef("IniciaProceso", args, kAllByRef);
    p.objeto = Conversion<ObjectPtr>::From(args[1]);
    p.bandera = ToBool(args[5]);
  }
  void ConsultaProceso(bool& bandera) override {
    std::array<Value, 1> args{bandera};
    late_.CallByRef("ConsultaProceso", args, kAllByRef);
    bandera = ToBool(args[0]);
  }
  void CierraProceso(std::int32_t numero) override { late_.Call("CierraProceso", numero); }
  void ImprimeReporte(const std::string& clave, std::int32_t op, const std::shared_ptr<Ambiente>& ambiente,
                      const ObjectPtr& ventana) override {
    late_.Call("ImprimeReporte", clave, op, Arg(ambiente), Arg(ventana));
  }
};

template <>
class Adapter<DocumentoInventario> final : public ByName<DocumentoInventario> {
 public:
  using ByName::ByName;
  void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) override {
    late_.Call("PonAmbiente", Arg(ambiente));
  }
  void PonDatoDocumento(const Value& dato) override { late_.Call("PonDatoDocumento", dato); }
  void PonDatoFecha(std::int32_t dato) override { late_.Call("PonDatoFecha", dato); }
  void PonFecha(const Date& fecha) override { late_.Call("PonFecha", fecha); }
  void PonTipo(const std::string& tipo) override { late_.Call("PonTipo", tipo); }
  void PonConcepto(const std::string& concepto) override { late_.Call("PonConcepto", concepto); }
  void PonOrden(std::int32_t orden) override { late_.Call("PonOrden", orden); }
  void PonFolio(const std::string& folio) override { late_.Call("PonFolio", folio); }
  void PonUsuario(const std::string& usuario) override { late_.Call("PonUsuario", usuario); }
  void PonAlmacen(double almacen) override { late_.Call("PonAlmacen", almacen); }
  void PonArticulo(const std::string& articulo) override { late_.Call("PonArticulo", articulo); }
  void PonCantidad(double cantidad) override { late_.Call("PonCantidad", cantidad); }
  void PonCosto(double costo) override { late_.Call("PonCosto", costo); }
  double AplicaMovimiento(std::int32_t& numero) override {
    // What a host leaves in the number is its own affair: one that numbers its movements "M-12" may.
    std::array<Value, 1> args{numero};
    return ToNumber(late_.CallByRef("AplicaMovimiento", args, kAllByRef | kUnread));
  }
};

template <>
class Adapter<VentanaProgreso> final : public ByName<VentanaProgreso> {
 public:
  using ByName::ByName;
  void Inicia(std::int32_t total, const std::string& titulo, const std::string& animacion) override {
    late_.Call("Inicia", total, titulo, animacion);
  }
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override {
    late_.Call("Avanza", paso, texto, texto2);
  }
  void Cierra() override { late_.Call("Cierra"); }
};

/// What shows itself to the user and writes the answer into a text box.
template <class Service>
class IntoABox : public ByName<Service> {
 public:
  using ByName<Service>::ByName;
  void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) override {
    late_.Call("PonAmbiente", Arg(ambiente));
  }
  void PonDestino(const ObjectPtr& caja) override { late_.Call("PonDestino", Arg(caja)); }

 protected:
  using ByName<Service>::late_;
};

template <>
class Adapter<BuscaCatalogo> final : public IntoABox<BuscaCatalogo> {
 public:
  using IntoABox::IntoABox;
  void PonFiltro(const std::string& filtro) override { late_.Call("PonFiltro", filtro); }
  void Muestra(const std::string& titulo) override { late_.Call("Muestra", titulo, "", "", ""); }
};

template <>
class Adapter<CapturaNumerica> final : public IntoABox<CapturaNumerica> {
 public:
  using IntoABox::IntoABox;
  void Muestra() override { late_.Call("Muestra"); }
};

}  // namespace

template <class T>
std::shared_ptr<T> ComoOpcional(const ObjectPtr& object) {
  if (!object) return nullptr;
  if (!object->Foreign())
    if (auto own = std::dynamic_pointer_cast<T>(object)) return own;
  return std::make_shared<Adapter<T>>(object);
}
template std::shared_ptr<Conexion> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<Recordset> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<ConstructorSql> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<Ambiente> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<AccesoDatos> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<ControlProcesos> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<DocumentoInventario> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<VentanaProgreso> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<BuscaCatalogo> ComoOpcional(const ObjectPtr&);
template std::shared_ptr<CapturaNumerica> ComoOpcional(const ObjectPtr&);

}  // namespace zuvi
