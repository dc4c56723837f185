#include "fractions/frm_fracciones.h"
#include "host/processes/captura_fracciones.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

class Fracciones : public testing::TestWithParam<std::string> {
 protected:
  Fracciones() {
    ventana->PonAmbiente(t.fabrica.Crea(Ambiente::kProgId));
    t.anfitrion->PonGancho("FRACCIONES", [this](PeticionProceso&) { codigos.push_back(ventana->Codigo()); });
    ventana->Show();
  }

  Tienda t{GetParam()};
  std::shared_ptr<frmFracciones> ventana = std::make_shared<frmFracciones>(t.modulo);
  std::vector<std::string> codigos;
};
ZUVI_EN_CADA_BASE(Fracciones);

TEST_P(Fracciones, CapturaLoQueSeTecleaYSigueEnElCampo) {
  EXPECT_EQ(ventana->Caption(), "Captura de fracciones");
  EXPECT_EQ(ventana->State(), WindowState::Maximized);
  EXPECT_EQ(ventana->Estado(), "ESPERANDO USUARIO");
  const auto claves = t.Base().Consulta("SELECT Articulo, clave FROM clavesadd ORDER BY clave");
  const std::string articulo = ToText(claves->Campo(0)), clave = ToText(claves->Campo(1));
  ventana->Type(" " + articulo + " ");
  ventana->Press(key::kEnter);
  ventana->Type("2.5*" + clave);
  ventana->Press(key::kEnter);
  EXPECT_EQ(codigos, (std::vector<std::string>{articulo, "2.5*" + clave}));
  EXPECT_THAT(t.Filas("SELECT codigo, articulo, cantidad FROM fracciones ORDER BY id", 3),
              testing::ElementsAre(articulo + " " + articulo + " 1", clave + " " + articulo + " 2.5"));
  EXPECT_EQ(ventana->ActiveControl()->Name(), "txtFields");

  ventana->Type("NO EXISTE <b>");
  ventana->Press(key::kEnter);
  EXPECT_EQ(ventana->Estado(), "CODIGO DESCONOCIDO");
  EXPECT_THAT(ToText(ToObject(ventana->Call("wb"))->Call("Html")),
              testing::HasSubstr("Código desconocido: NO EXISTE &lt;b&gt;"));
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones WHERE articulo IS NULL"), 1);
  // A bare Enter starts the process as well, with nothing to capture.
  ventana->Press(key::kEnter);
  EXPECT_EQ(codigos.back(), "");
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM fracciones"), 3);

  // A process that fails is reported and does not lose the code.
  t.anfitrion->PonGancho("FRACCIONES", [](PeticionProceso&) { throw HostError("sin red"); });
  ventana->Type("A");
  ventana->Press(key::kEnter);
  EXPECT_THAT(t.escritorio.Avisos(),
              testing::ElementsAre("Error occured:\r\nModule: frmFracciones\r\nFunction: "
                                   "txtFields_KeyDown\r\nDescription: sin red"));
  EXPECT_EQ(ventana->Codigo(), "A");
  EXPECT_EQ(LeeCaptura("A*B").codigo, "A*B");
  EXPECT_EQ(LeeCaptura("-2*B").cantidad, 1);
}

}  // namespace
}  // namespace zuvi::host
