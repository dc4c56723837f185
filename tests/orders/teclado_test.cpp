// A working day at the keyboard: an order from its first line to paper, looked at again, another one changed.
// Every statement on the order's tables is the expected one, and the database holds what a person expects.
#include <filesystem>

#include "orders/frm_op.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using Lineas = std::vector<std::string>;

class Teclado : public testing::Test {
 protected:
  Teclado() {
    t.escritorio.SetNow(Fecha::DesdeTexto("2026-03-05 14:07:09"));
    // The shop's bar codes have 13 digits: a full field needs no Enter.
    t.anfitrion->PonGancho("Op001", [](PeticionProceso& p) {
      Control<TextBox>(dynamic_cast<Form&>(*p.objeto), "txtFields", 4).SetMaxLength(13);
    });
    t.anfitrion->TraeTraza().Escucha([this](Suceso suceso, const std::string& texto) {
      // What the host reads for itself joins tables, or is about codes and numbers.
      const bool propia = texto.find("JOIN") == std::string::npos &&
                          texto.find("codigos") == std::string::npos &&
                          texto.find("folios") == std::string::npos;
      const bool de_ordenes = texto.find(" op ") != std::string::npos ||
                              texto.find(" Op ") != std::string::npos ||
                              texto.find("oppart") != std::string::npos;
      if (suceso == Suceso::Sentencia && propia && de_ordenes) sentencias.push_back(texto);
    });
  }
  void Toma() {
    ASSERT_EQ(t.escritorio.Forms().size(), 1u);
    v = std::dynamic_pointer_cast<frmOp>(t.escritorio.Forms().back());
  }
  Lineas Sentencias() { return std::exchange(sentencias, {}); }
  std::string Foco() {
    const auto* control = v->ActiveControl();
    if (!control) return "";
    return control->Name() +
           (control->Index() == Control::kNoIndex ? "" : "(" + Decimal(control->Index()) + ")");
  }
  /// Tabs on until the control has the focus.
  void Tabula(const std::string& control, std::int16_t con = shift::kNone) {
    for (int i = 0; i < 30 && Foco() != control; ++i) v->Press(key::kTab, con);
    ASSERT_EQ(Foco(), control);
  }
  void Pulsa(std::initializer_list<std::int16_t> teclas) {
    for (const std::int16_t tecla : teclas) v->Press(tecla);
  }
  template <class T>
  T& C(const char* nombre) {
    return Control<T>(*v, nombre);
  }
  Lineas Rejilla() {
    Lineas filas;
    const auto& rejilla = C<FlexGrid>("fg2");
    for (std::int32_t i = 1; !rejilla.TextMatrix(i, 0).empty(); ++i)
      filas.push_back(rejilla.TextMatrix(i, 0) + "|" + rejilla.TextMatrix(i, 1) + "|" +
                      rejilla.TextMatrix(i, 4));
    return filas;
  }
  Lineas Orden(std::int32_t op) {
    return t.Filas(
        "SELECT estado, ocupado, usuario, almacen, observ, ordencompra, automatico FROM op WHERE op = " +
            Decimal(op),
        7);
  }
  Lineas Partidas(std::int32_t op) {
    return t.Filas(
        "SELECT articulo, cantidad, precio, observ, Tipo_doc, no_referen, usuario FROM oppart WHERE op = " +
            Decimal(op) + " ORDER BY id_entrada",
        7);
  }

  Tienda t{":memory:", "si"};
  Lineas sentencias;
  std::shared_ptr<frmOp> v;
};

TEST_F(Teclado, UnaOrdenDesdeSuPrimeraLineaHastaElPapel) {
  t.produccion->NuevaOp();
  Toma();
  C<DatePicker>("DTPicker1").UserPicked(Fecha::DesdeTexto("2026-03-05"));
  C<DatePicker>("DTPicker2").UserPicked(Fecha::DesdeTexto("2026-03-12"));
  EXPECT_EQ(Foco(), "txtFields(0)");
  v->Type("4501");
  Pulsa({key::kEnter, key::kEnter});

  // By its code.
  EXPECT_EQ(Foco(), "txtFields(4)");
  v->Type("trufas");
  Pulsa({key::kTab});
  v->Type("6");
  Pulsa({key::kEnter});
  // By its secondary key, with a price.
  EXPECT_EQ(Foco(), "txtFields(4)");
  Pulsa({key::kF8});
  v->Type("nav");
  Pulsa({key::kF8, key::kF8, key::kF8});
  EXPECT_EQ(Foco(), "txtFields(6)");
  v->Type("1690");
  v->Press(key::kTab, shift::kShift);
  EXPECT_EQ(Foco(), "txtFields(5)");
  v->Type("3");
  Pulsa({key::kEnter});
  // By the scanner, which types and no more.
  Pulsa({key::kF3});
  v->Type("7501000100011");
  EXPECT_EQ(Foco(), "txtFields(4)");
  EXPECT_THAT(Rejilla(), ElementsAre("TRUFAS|6|Caja de trufas", "CAN-NAVIDAD|3|Canasta Navidad",
                                     "CAN-DESAYUNO|1|Canasta Desayuno"));

  v->Press(key::kTab, shift::kShift);
  EXPECT_EQ(Foco(), "RichTextBox2");
  v->Type("Urge para el viernes");
  Tabula("fg2", shift::kShift);
  Pulsa({key::kUp, key::kUp, key::kRight});
  v->Type("8.5");
  Pulsa({key::kEnter});
  Tabula("Check2");
  Pulsa({key::kSpace});
  Tabula("txtFields(0)");
  Pulsa({key::kF5});
  EXPECT_TRUE(v->Closed());

  const std::string partida =
      "INSERT INTO oppart (id_entrada, op, tipo_doc, no_referen, articulo, cantidad, precio, observ, "
      "partida, "
      "usuario, usufecha, usuhora) VALUES (";
  const std::string capturo = "', 0, 'ADMIN', '2026-03-05', '14:07:09')";
  const std::string encabezado = "SELECT * FROM op WHERE (((op) = 111))";
  EXPECT_THAT(
      Sentencias(),
      ElementsAre("SELECT * FROM op WHERE op = 0",
                  "INSERT INTO op (op, ocupado, f_emision, importe, costo, almacen, estado, observ, usuario, "
                  "usufecha, usuhora, fechaEntrega, ordencompra) VALUES (111, 1, '2026-03-05', 0, 0, '1', "
                  "'PE', '', 'ADMIN', '2026-03-05', '14:07:09', '2026-03-12', 4501)",
                  "SELECT * FROM op WHERE op = 111", encabezado,
                  partida + "20, 111, NULL, 111, 'TRUFAS', 6, 0, 'Caja de trufas" + capturo, encabezado,
                  partida + "21, 111, NULL, 111, 'CAN-NAVIDAD', 3, 1690, 'Canasta Navidad" + capturo,
                  encabezado,
                  partida + "22, 111, NULL, 111, 'CAN-DESAYUNO', 1, 0, 'Canasta Desayuno" + capturo,
                  "UPDATE oppart SET cantidad = 8.5 WHERE id_entrada = 20",
                  "UPDATE op SET ocupado = 0, f_emision = '2026-03-05', fechaEntrega = '2026-03-12', importe "
                  "= 0, costo = 0, almacen = 1, estado = 'CO', observ = 'Urge para el viernes', usuario = "
                  "'ADMIN', usufecha = '2026-03-05', usuhora = '14:07:09', ordencompra = 4501 WHERE Op = 111",
                  "SELECT * FROM oppart WHERE (((Op)=111))", "UPDATE Op SET ocupado = 0 WHERE Op = 111"));
  EXPECT_THAT(Orden(111), ElementsAre("CO 0 ADMIN 1 Urge para el viernes 4501 0"));
  EXPECT_THAT(Partidas(111), ElementsAre("TRUFAS 8.5 0 Caja de trufas NULL 111 ADMIN",
                                         "CAN-NAVIDAD 3 1690 Canasta Navidad NULL 111 ADMIN",
                                         "CAN-DESAYUNO 1 0 Canasta Desayuno NULL 111 ADMIN"));
  const std::filesystem::path papel = t.anfitrion->TraeOpciones().ruta + "/Reportes/ORDENP-111.html";
  EXPECT_TRUE(std::filesystem::exists(papel));
  std::filesystem::remove(papel);
  Sentencias();

  // Looked at again.
  t.produccion->ConsultaOp(111);
  Toma();
  EXPECT_THAT(Rejilla(), ElementsAre("TRUFAS|8.5| Caja de trufas", "CAN-NAVIDAD|3| Canasta Navidad",
                                     "CAN-DESAYUNO|1| Canasta Desayuno"));
  v->Press('C', shift::kAlt);
  EXPECT_TRUE(v->Closed());
  EXPECT_THAT(Sentencias(),
              ElementsAre("SELECT * FROM op WHERE op = 111", "SELECT * FROM oppart WHERE Op = (111)"));
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

}  // namespace
}  // namespace zuvi::host
