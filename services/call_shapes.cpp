#include "services/call_shapes.h"

#include "services/acceso_datos.h"
#include "services/control_procesos.h"
#include "services/documento_inventario.h"
#include "services/ventanas.h"

namespace zuvi {
namespace {

using enum CallType;
using enum Travel;

constexpr std::string_view kTermina = "Termina el procedimiento";
constexpr std::string_view kSinCarga = "La ventana no termina de cargar";
constexpr std::string_view kSinMovimiento =
    "Termina la operación, con aviso; los movimientos ya aplicados quedan y el del kit falta";
constexpr std::string_view kNadaSeMueve = "Termina la operación, con aviso; no se mueve nada";
constexpr std::string_view kSinGuardar = "Termina el guardado, con aviso; la ventana sigue abierta";
constexpr std::string_view kSinBusqueda = "Aviso; el campo queda como estaba";
constexpr std::string_view kTrasElMovimiento = "En cada movimiento, antes de `AplicaMovimiento`";
constexpr std::string_view kPorOperacion = "Una vez por operación, antes del primer movimiento";

CallArgument Fixed(std::string_view name, CallType type, Value value) {
  return {name, type, In, std::move(value)};
}
CallArgument Starts(std::string_view name, CallType type, Value value) {
  return {name, type, InOut, std::move(value)};
}

ServiceShape OfAmbiente() {
  return {
      Ambiente::kProgId,
      "Lo da el programa en `Produccion.Ambiente`, o a una ventana en su miembro `Ambiente`",
      {{"Conexion", {}, Object, "Al empezar cada método y antes de cada consulta de una ventana", kTermina},
       {"UsuarioActual", {}, Text, "Al abrir una orden ocupada, al guardar y en cada ensamble", kTermina},
       {"RutaAplicacion", {}, Text, "Al entregar: carpeta de `\\Images\\Gears.Avi`", "No se entrega nada"},
       {"EjecutaSQL",
        {{"sql", Text}, {"resultado", Any, Unread, std::nullopt, true}},
        None,
        "Cada UPDATE o DELETE que no va por `ConstructorSql`",
        "Termina el procedimiento; las instrucciones anteriores quedan"},
       {"DatoFechaA", {}, Long, "Por cada fecha de hoy, y antes de los movimientos", kTermina},
       {"DatoFechaB", {}, Long, "Después de `DatoFechaA`", kTermina},
       {"DatoDocumento", {}, Any, kPorOperacion, kNadaSeMueve},
       {"ParametrosEstacion",
        {},
        Object,
        "Al cargar el editor: `Almacen` de una orden nueva, y `Lector`",
        kSinCarga},
       {"ContenedorRutas",
        {},
        Object,
        "Al cargar el editor; vacío o un objeto con `PathCollection`",
        kSinCarga}}};
}

ServiceShape OfAccesoDatos() {
  return {
      AccesoDatos::kProgId,
      "Se crea con el primer uso y sirve a todo el componente hasta que su último objeto desaparece",
      {{"Consulta",
        {{"sql", Text}, {"conexion", Object}, Fixed("bandera", Boolean, true)},
        Object,
        "Cada SELECT; el recordset viene en su primer renglón",
        kTermina},
       {"ValorNumerico", {{"valor", Any}}, Real, "Cuentas, cantidades, precios e importes", kTermina},
       {"ValorTexto", {{"valor", Any}}, Text, "Campos que se muestran o se guardan como texto", kTermina},
       {"EstaVacio", {{"texto", Text}}, Boolean, "Campos obligatorios y renglones de la rejilla", kTermina},
       {"TraeMensaje",
        {{"numero", Long}, {"ambiente", Object}},
        Text,
        "Antes de cada `Mensaje`, y de cada `Pregunta` con texto del catálogo",
        kTermina},
       {"Mensaje",
        {{"texto", Text}, {"estilo", Short}, {"ambiente", Object}},
        None,
        "Cada aviso al usuario; `estilo` es 16 (error) o 64 (información)",
        kTermina},
       {"Pregunta",
        {{"texto", Text}, {"modo", Short}},
        Boolean,
        "Antes de cancelar, cerrar o borrar; `modo` es 2 en órdenes y 1 en turnos",
        "Termina el procedimiento sin hacer lo preguntado"},
       {"SiguienteFolio",
        {{"clave", Text},
         {"conexion", Object},
         Starts("documento", Long, std::int32_t{0}),
         Fixed("constructor", Object, ObjectPtr())},
        Long,
        "Claves `Op`, `oppart`, `ENSAMBLE` y `DESENSAMB`",
        "Termina el procedimiento; no se guarda ni se mueve nada con ese número"},
       {"ComponeFecha", {{"a", Long}, {"b", Long}}, Date, "Con `DatoFechaA` y `DatoFechaB`", kTermina},
       {"FechaSQL", {{"conexion", Object}, {"fecha", Date}}, Text, "Lista de horarios de un día", kTermina},
       {"TextoConCeros", {{"numero", Long}, {"ancho", Long}}, Text, "Horas del editor de turnos", kSinCarga},
       {"ExisteClave",
        {{"valor", Text},
         {"tabla", Text},
         {"columna", Text},
         {"conexion", Object},
         Fixed("bandera", Boolean, true)},
        Boolean,
        "Artículo y almacén de una línea",
        "Aviso; la línea no se agrega"},
       {"UbicacionRestringida",
        {{"articulo", Text}, {"almacen", Short}, {"conexion", Object}},
        Boolean,
        "Antes de agregar una línea",
        "Aviso; la línea no se agrega"},
       {"NuevoConstructorSql", {}, Object, "Al cargar el editor de órdenes", kSinCarga},
       {"PreparaVentana",
        {{"ventana", Object}, {"ambiente", Object}, Fixed("texto", Text, "")},
        None,
        "Último paso de la carga de `frmOp`, `frmTurnos` y `frmTurno`",
        kSinCarga},
       {"LiberaVentana",
        {{"ventana", Object}, {"ambiente", Object}, Fixed("destino", Text, "frmMaster")},
        None,
        "Al descargar esas ventanas",
        "Aviso; la ventana se cierra"},
       {"FormateaCampo",
        {{"caja", Object}, {"ambiente", Object}},
        Text,
        "Al dejar un campo del encabezado, y al llenarlo antes de mostrarse",
        "Aviso; el campo queda como estaba"},
       {"FiltroMayusculas",
        {{"caja", Object}, {"caracter", Short, InOut}},
        Short,
        "Cada carácter en un campo con etiqueta `U`; se usa el resultado",
        "Aviso; en un campo el carácter pasa sin cambio"},
       {"FiltroTecla",
        {Fixed("bandera", Boolean, true), {"caja", Object}, {"caracter", Short, InOut}},
        Short,
        "Cada carácter en un campo `N`, `D`, `SD` o `SN` y en la celda; 0 lo quita",
        "Aviso; en un campo el carácter pasa sin cambio"}}};
}

ServiceShape OfControlProcesos() {
  return {ControlProcesos::kProgId,
          "Como `AccesoDatos`",
          {{"IniciaProceso",
            {{"clave", Text, InOut},
             {"objeto", Object, InOut},
             {"ambiente", Object, InOut},
             Starts("dato", Text, ""),
             Starts("objeto2", Object, ObjectPtr()),
             Starts("bandera", Boolean, true),
             Starts("numero", Long, std::int32_t{0}),
             Starts("texto", Text, ""),
             Starts("nulo", Any, Null{}),
             Starts("texto2", Text, ""),
             Starts("objeto3", Object, ObjectPtr())},
            None,
            "Por cada clave de proceso; se leen de vuelta `objeto` y `bandera` (veto)",
            "Termina el procedimiento: un ensamble no mueve nada"},
           {"ConsultaProceso",
            {{"bandera", Boolean, InOut}},
            None,
            "Tras `IniciaProceso`, en `Ensamble` y `Desensamble`",
            "No se mueve nada"},
           {"CierraProceso",
            {Fixed("numero", Long, std::int32_t{0})},
            None,
            "Si `bandera` sigue en verdadero: la operación quedó vetada",
            "Aviso; no se mueve nada"},
           {"ImprimeReporte",
            {{"clave", Text}, {"op", Long}, {"ambiente", Object}, {"ventana", Object}},
            None,
            "Al imprimir una orden, clave `ORDENP`",
            "Aviso; al finalizar, la ventana queda abierta con lo ya guardado"}}};
}

ServiceShape OfConstructorSql() {
  return {ConstructorSql::kProgId,
          "El editor de órdenes lo pide a `NuevoConstructorSql` y lo guarda; el de turnos crea el suyo",
          {{"PonConexion", {{"conexion", Object}}, None, "Al tenerlo", kSinCarga},
           {"PonRutas", {{"rutas", Object}}, None, "Con `PathCollection` de `ContenedorRutas`", kSinCarga},
           {"Limpia", {}, None, "Antes de cada instrucción, menos la primera de un turno", kSinGuardar},
           {"Tipo", {{"tipo", Text}}, None, "`INSERT` o `UPDATE`", kSinGuardar},
           {"AgregaCampo",
            {{"tabla", Text}, {"columna", Text}, {"valor", Any}},
            None,
            "Una vez por columna; `valor` es entero, real, texto, fecha u objeto",
            kSinGuardar},
           {"Condicion", {{"condicion", Text}}, None, "En un `UPDATE`: `op = 12`", kSinGuardar},
           {"Genera", {{"tabla", Text}}, None, "Con la instrucción completa", kSinGuardar},
           {"Ejecuta",
            {},
            None,
            "Después de `Genera`",
            "Termina el guardado, con aviso; lo guardado antes queda"}}};
}

ServiceShape OfVentanaProgreso() {
  return {VentanaProgreso::kProgId,
          "Se crea una por entrega",
          {{"Inicia",
            {{"total", Long}, {"titulo", Text}, {"animacion", Text}},
            None,
            "Antes de la primera línea; no, si la orden no tiene",
            "No se entrega nada"},
           {"Avanza",
            {{"paso", Long}, {"texto", Text}, Fixed("texto2", Text, "")},
            None,
            "Antes de cada línea",
            "Termina la entrega en silencio; las líneas anteriores quedan ensambladas y sin marcar"},
           {"Cierra", {}, None, "Al terminar, también sin `Inicia`", "La entrega ya está completa"}}};
}

ServiceShape OfDocumentoInventario() {
  return {
      DocumentoInventario::kProgId,
      "Se crea uno por operación; el proceso `OPAUTO002` puede poner otro en su lugar",
      {{"PonAmbiente", {{"ambiente", Object}}, None, kPorOperacion, kNadaSeMueve},
       {"PonDatoDocumento", {{"dato", Any}}, None, kPorOperacion, kNadaSeMueve},
       {"PonDatoFecha", {{"dato", Long}}, None, kPorOperacion, kNadaSeMueve},
       {"PonFecha", {{"fecha", Date}}, None, kPorOperacion, kNadaSeMueve},
       {"PonTipo", {{"tipo", Text}}, None, "Para los componentes y para el kit; `S` o `E`", kSinMovimiento},
       {"PonConcepto",
        {{"concepto", Text}},
        None,
        "Para los componentes y para el kit; `OP`, `EN`, `DE`, `COP`, `DES` o `DEN`",
        kSinMovimiento},
       {"PonOrden", {{"orden", Long}}, None, kPorOperacion, kNadaSeMueve},
       {"PonFolio", {{"folio", Text}}, None, kPorOperacion, kNadaSeMueve},
       {"PonUsuario", {{"usuario", Text}}, None, kPorOperacion, kNadaSeMueve},
       {"PonAlmacen", {{"almacen", Real}}, None, kTrasElMovimiento, kSinMovimiento},
       {"PonArticulo", {{"articulo", Text}}, None, kTrasElMovimiento, kSinMovimiento},
       {"PonCantidad", {{"cantidad", Real}}, None, kTrasElMovimiento, kSinMovimiento},
       {"PonCosto", {{"costo", Real}}, None, kTrasElMovimiento, kSinMovimiento},
       {"AplicaMovimiento",
        {{"numero", Long, Unread, std::int32_t{0}}},
        Real,
        "Por cada componente y al final por el kit; el resultado es el importe",
        kSinMovimiento}}};
}

ServiceShape OfBuscaCatalogo() {
  return {
      BuscaCatalogo::kProgId,
      "Se crea uno por búsqueda del editor",
      {{"PonAmbiente", {{"ambiente", Object}}, None, "Al crearlo", kSinBusqueda},
       {"PonDestino", {{"caja", Object}}, None, "La caja que recibe la clave", kSinBusqueda},
       {"PonFiltro", {{"filtro", Text}}, None, "Sólo al buscar kits: `kit <> 0`", kSinBusqueda},
       {"Muestra",
        {{"titulo", Text}, Fixed("texto1", Text, ""), Fixed("texto2", Text, ""), Fixed("texto3", Text, "")},
        None,
        "Muestra el catálogo y espera",
        kSinBusqueda}}};
}

ServiceShape OfCapturaNumerica() {
  return {CapturaNumerica::kProgId,
          "Se crea uno por captura del editor",
          {{"PonAmbiente", {{"ambiente", Object}}, None, "Al crearlo", kSinBusqueda},
           {"PonDestino", {{"caja", Object}}, None, "La caja que recibe el número", kSinBusqueda},
           {"Muestra", {}, None, "Muestra el teclado y espera", kSinBusqueda}}};
}

ServiceShape OfRecordset() {
  constexpr std::string_view kAlGuardar = "Al guardar una orden, antes de `Open`";
  return {Recordset::kProgId,
          "Los da `Consulta`; el editor de órdenes crea uno al guardar, para ver si quedaron partidas",
          {{"EOF", {}, Boolean, "Antes de cada renglón", kTermina},
           {"MoveNext", {}, None, "Después de cada renglón", kTermina},
           {"Fields", {}, Object, "Por cada campo que se lee, y de él `Item`", kTermina},
           {"Item", {{"Index", Any}}, Object, "Por nombre o por número, y de él `Value`", kTermina},
           {"Value", {}, Any, "El campo del renglón", kTermina},
           {"CursorType", {{"valor", Long}}, None, kAlGuardar, kSinGuardar, CallKind::Put},
           {"LockType", {{"valor", Long}}, None, kAlGuardar, kSinGuardar, CallKind::Put},
           {"Open",
            {{"Source", Text},
             {"ActiveConnection", Object},
             {"CursorType", Long},
             {"LockType", Long},
             {"Options", Long}},
            None,
            "Al guardar una orden, con -1, -1 y 1 al final",
            kSinGuardar}}};
}

}  // namespace

std::span<const ServiceShape> HostContract() {
  static const std::vector<ServiceShape> contract{
      OfAmbiente(),       OfAccesoDatos(),     OfControlProcesos(),
      OfConstructorSql(), OfVentanaProgreso(), OfDocumentoInventario(),
      OfBuscaCatalogo(),  OfCapturaNumerica(), OfRecordset()};
  return contract;
}

}  // namespace zuvi
