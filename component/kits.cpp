// Kits. Movements are posted one by one and nothing is undone: after a failure half way the movements posted
// so far stay, and the kit's own movement, which comes last, is missing.
#include <exception>
#include <utility>

#include "component/produccion.h"
#include "services/documento_inventario.h"
#include "windows/reporta_error.h"
#include "windows/sentencia.h"

namespace zuvi {

namespace {

/// A concept code for work with an order and one for work without.
struct Conceptos {
  const char* con_orden;
  const char* sin_orden;
};

constexpr Conceptos kComponentesEnsamble{"OP", "EN"};
constexpr Conceptos kKitEnsamble{"OP", "DE"};
constexpr Conceptos kComponentesDesensamble{"COP", "DES"};
constexpr Conceptos kKitDesensamble{"COP", "DEN"};

const char* Concepto(const Conceptos& conceptos, std::int32_t n_op) {
  return n_op != 0 ? conceptos.con_orden : conceptos.sin_orden;
}

/// Header of the movements of one operation.
struct Encabezado {
  const char* tipo;
  Conceptos conceptos;
  const char* clave_folio;
};

void PreparaDocumento(DocumentoInventario& documento, const std::shared_ptr<Ambiente>& ambiente,
                      const std::shared_ptr<Conexion>& conexion, AccesoDatos& datos,
                      const Encabezado& encabezado, std::int32_t n_op) {
  documento.PonAmbiente(ambiente);
  documento.PonDatoDocumento(ambiente->DatoDocumento());
  documento.PonTipo(encabezado.tipo);
  const std::int32_t fecha_a = ambiente->DatoFechaA();
  const std::int32_t fecha_b = ambiente->DatoFechaB();
  documento.PonFecha(datos.ComponeFecha(fecha_a, fecha_b));
  std::int32_t referencia = fecha_a;
  if (n_op != 0) {
    documento.PonOrden(n_op);
  } else {
    referencia = 0;
    documento.PonOrden(datos.SiguienteFolio(encabezado.clave_folio, conexion, referencia, nullptr));
  }
  documento.PonConcepto(Concepto(encabezado.conceptos, n_op));
  documento.PonUsuario(ambiente->UsuarioActual());
  documento.PonDatoFecha(referencia);
  documento.PonFolio(Decimal(referencia));
}

/// Posts one line with the values set before; returns its valued amount.
double Aplica(DocumentoInventario& documento) {
  std::int32_t numero = 0;
  return documento.AplicaMovimiento(numero);
}

/// Posts the current component line: its own warehouse, `cantidad()` of it, at the article's unit cost.
template <class Cantidad>
double AplicaComponente(DocumentoInventario& documento, Recordset& parte, Recordset& producto,
                        Cantidad cantidad) {
  documento.PonAlmacen(ToNumber(parte.Campo("Almacen")));
  documento.PonArticulo(ToText(parte.Campo("Componente")));
  documento.PonCantidad(cantidad());
  documento.PonCosto(ToNumber(producto.Campo("costo")));
  return Aplica(documento);
}

/// The kit's own movement: its cost is the amount of all its components.
void AplicaKit(DocumentoInventario& documento, const Conceptos& conceptos, const char* tipo,
               std::int32_t n_op, std::int32_t almacen, const std::string& articulo, double cantidad,
               double total) {
  documento.PonConcepto(Concepto(conceptos, n_op));
  documento.PonTipo(tipo);
  documento.PonAlmacen(almacen);
  documento.PonArticulo(articulo);
  documento.PonCantidad(cantidad);
  documento.PonCosto(total);
  Aplica(documento);
}

/// A recipe without yield must fail rather than give an infinite quantity.
double Divide(double dividendo, double divisor) {
  if (divisor == 0) throw HostError(ErrorNumber::DivisionByZero);
  return dividendo / divisor;
}

/// Asks the host whether an operation may go ahead; the host may replace `objeto`.
bool Permite(ControlProcesos& procesos, const char* clave, ObjectPtr& objeto, const ObjectPtr& ambiente) {
  PeticionProceso peticion;
  peticion.clave = clave;
  peticion.objeto = objeto;
  peticion.ambiente = ambiente;
  procesos.IniciaProceso(peticion);
  objeto = peticion.objeto;
  procesos.ConsultaProceso(peticion.bandera);
  if (!peticion.bandera) return true;
  procesos.CierraProceso(0);
  return false;
}

}  // namespace

void Produccion::Ensamble(const std::string& articulo, std::int32_t n_almacen, std::int32_t n_cantidad,
                          std::int32_t n_op) noexcept {
  ConReporte(modulo_.Escritorio(), "Produccion", "Ensamble",
             [&] { EnsambleKit(articulo, n_almacen, n_cantidad, n_op); });
}

void Produccion::EnsambleKit(const std::string& articulo, std::int32_t n_almacen, std::int32_t n_cantidad,
                             std::int32_t n_op) {
  const Sesion sesion = AbreSesion();
  AccesoDatos& datos = modulo_.Datos();
  const auto partes = datos.Consulta(EntreApostrofos("SELECT * FROM comppart WHERE articulo =  '", articulo),
                                     sesion.conexion);
  const auto receta = datos.Consulta(EntreApostrofos("SELECT * FROM componen WHERE articulo =  '", articulo),
                                     sesion.conexion);
  if (partes->Eof()) return;

  ObjectPtr objeto = modulo_.Fabrica().Crea(DocumentoInventario::kProgId);
  if (!Permite(modulo_.Procesos(), "OPAUTO002", objeto, sesion.ambiente)) return;
  const auto documento = Como<DocumentoInventario>(objeto);
  PreparaDocumento(*documento, sesion.ambiente, sesion.conexion, datos,
                   {kSalida, kComponentesEnsamble, "ENSAMBLE"}, n_op);

  double total = 0;
  for (; !partes->Eof(); partes->MoveNext()) {
    const auto producto = datos.Consulta(EntreApostrofos("SELECT kit, costo FROM prods WHERE articulo = '",
                                                         ToText(partes->Campo("Componente"))),
                                         sesion.conexion);
    total += AplicaComponente(*documento, *partes, *producto, [&] {
      return Divide(ToNumber(partes->Campo("Cantidad")), ToNumber(receta->Campo("Minimo"))) * n_cantidad;
    });
  }
  AplicaKit(*documento, kKitEnsamble, kEntrada, n_op, n_almacen, articulo, n_cantidad, total);
}

void Produccion::Desensamble(const std::string& articulo, double n_cantidad, std::int32_t n_almacen,
                             std::int32_t n_op) {
  const bool anidada = std::exchange(llamada_propia_, false);
  std::exception_ptr pila_agotada;
  ConReporte(modulo_.Escritorio(), "Produccion", "Desensamble", [&] {
    try {
      DesensambleKit(articulo, n_cantidad, n_almacen, n_op);
    } catch (const StackSpent&) {
      // Every level would take its line again and fill the stack once more: the whole chain ends, and the
      // outermost call, which has its stack back, reports.
      if (!anidada) throw;
      pila_agotada = std::current_exception();
    }
  });
  if (pila_agotada) std::rethrow_exception(pila_agotada);
}

void Produccion::DesensambleKit(const std::string& articulo, double n_cantidad, std::int32_t n_almacen,
                                std::int32_t n_op) {
  modulo_.ExigePila();
  const Sesion sesion = AbreSesion();
  AccesoDatos& datos = modulo_.Datos();
  ObjectPtr yo = shared_from_this();
  if (!Permite(modulo_.Procesos(), "DESEM007", yo, sesion.ambiente)) return;

  const auto receta = datos.Consulta(EntreApostrofos("SELECT * FROM componen WHERE articulo =  '", articulo),
                                     sesion.conexion);
  const auto partes = datos.Consulta(EntreApostrofos("SELECT * FROM comppart WHERE articulo =  '", articulo),
                                     sesion.conexion);
  if (partes->Eof()) return;

  const auto documento = modulo_.Fabrica().Nuevo<DocumentoInventario>();
  PreparaDocumento(*documento, sesion.ambiente, sesion.conexion, datos,
                   {kEntrada, kComponentesDesensamble, "DESENSAMB"}, n_op);

  double total = 0;
  while (!partes->Eof()) {
    const auto producto =
        datos.Consulta(EntreApostrofos("SELECT articulo, kit, costo FROM prods WHERE articulo = '",
                                       ToText(partes->Campo("Componente"))),
                       sesion.conexion);
    const auto cantidad = [&] {
      return Divide(ToNumber(partes->Campo("Cantidad")) * n_cantidad, ToNumber(receta->Campo("Minimo")));
    };
    if (const Value kit = producto->Campo("kit"); !kit.IsNull() && ToBool(kit)) {
      const double kits = cantidad();
      const std::string sub_kit = ToText(producto->Campo("articulo"));
      llamada_propia_ = true;
      Desensamble(sub_kit, kits, n_almacen, n_op);
      // The line is not advanced: a sub-kit is taken apart for as long as its line stays current.
      continue;
    }
    total += AplicaComponente(*documento, *partes, *producto, cantidad);
    partes->MoveNext();
  }
  AplicaKit(*documento, kKitDesensamble, kSalida, n_op, n_almacen, articulo, n_cantidad, total);
}

}  // namespace zuvi
