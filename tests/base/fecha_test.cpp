#include "base/fecha.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/error.h"

namespace zuvi {
namespace {

TEST(Fechas, SeriesAndCalendarAgreeInBothDirections) {
  const std::pair<double, const char*> cases[] = {{0, "1899-12-30"},
                                                  {0.25, "1899-12-30 06:00:00"},
                                                  {1, "1899-12-31"},
                                                  {-1, "1899-12-29"},
                                                  {-1.25, "1899-12-29 06:00:00"},
                                                  {-1.75, "1899-12-29 18:00:00"},
                                                  {60, "1900-02-28"},
                                                  {61, "1900-03-01"},
                                                  {36585, "2000-02-29"},
                                                  {45351.5, "2024-02-29 12:00:00"},
                                                  {2958465, "9999-12-31"},
                                                  {-657434, "0100-01-01"},
                                                  {-657434.5, "0100-01-01 12:00:00"}};
  for (const auto& [serie, texto] : cases) {
    EXPECT_EQ(Fecha::DesdeSerie(serie).Texto(), texto);
    EXPECT_EQ(Fecha::DesdeTexto(texto).Serie(), serie) << texto;
  }
  EXPECT_EQ(Fecha::DesdeTexto("2024-02-29T23:59").Texto(), "2024-02-29 23:59:00");
  EXPECT_EQ(Fecha::DesdeTexto("2024-02-29 23:59:58.75").Texto(), "2024-02-29 23:59:58");
  EXPECT_EQ(Fecha::DesdeSerie(-1.25).SoloDia(), Fecha::DesdeSerie(-1));
}

TEST(Fechas, SecondsAreRoundedAndMayReachTheNextDay) {
  EXPECT_EQ(Fecha::DesdeSerie(1.9999999).Formatea("dd hh:mm:ss"), "01 00:00:00");
  EXPECT_EQ(Fecha::DesdeSerie(-1.9999999).Formatea("dd hh:mm:ss"), "30 00:00:00");
  EXPECT_EQ(Fecha::DesdeSerie(45931 + 1.0 / 3).Formatea("hh:mm:ss"), "08:00:00");
  // The last day has no next one.
  EXPECT_EQ(Fecha::DesdeSerie(2958465.9999999).Texto(), "9999-12-31 23:59:59");
}

TEST(Fechas, WhatIsNoDateIsRefused) {
  for (const double serie : {2958466.0, -657435.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(Fecha::DesdeSerie(serie), HostError) << serie;
  for (const char* texto : {"",
                            "2024",
                            "2023-02-29",
                            "1900-02-29",
                            "2024-13-01",
                            "2024-00-10",
                            "2024-01-00",
                            "2024-1-1",
                            "20240101ab",
                            "0099-12-31",
                            "2024-01-01 24:00",
                            "2024-01-01 10:60",
                            "2024-01-01 10:00:60",
                            "2024-01-01 ",
                            "2024-01-01 10",
                            "2024-01-01 10:0",
                            "2024-01-01 10:00:5",
                            "2024-01-01 -0:00",
                            "2024-01-01x10:00",
                            "2024-01-01 10:00:00x",
                            "2024-01-01 10:00:00.",
                            "2024-01-01 10:00:00.x",
                            "-024-01-01",
                            "2024-01-01 10:00Z"})
    EXPECT_THROW(Fecha::DesdeTexto(texto), HostError) << texto;
  for (const FechaCivil& c :
       {FechaCivil{.anio = 2024, .mes = 257, .dia = 1}, FechaCivil{.anio = 2024, .mes = 1, .dia = 257},
        FechaCivil{.anio = 2024, .mes = -1, .dia = 1}, FechaCivil{.anio = 67560, .mes = 1, .dia = 1},
        FechaCivil{.anio = 2024, .mes = 1, .dia = 1, .hora = -1}})
    EXPECT_THROW(Fecha::DesdeCivil(c), HostError) << c.anio << "-" << c.mes << "-" << c.dia;
}

TEST(Fechas, PatternsKeepWhatIsNoField) {
  const Fecha fecha =
      Fecha::DesdeCivil({.anio = 2025, .mes = 3, .dia = 4, .hora = 15, .minuto = 6, .segundo = 7});
  EXPECT_EQ(fecha.Formatea("dd/MM/yyyy hh:mm:ss"), "04/03/2025 15:06:07");
  EXPECT_EQ(fecha.Formatea("'yyyy-MM-dd'"), "'2025-03-04'");
  EXPECT_EQ(fecha.Formatea("día d, M y %s"), "día d, M y %s");
  EXPECT_EQ(fecha.Formatea(""), "");
}

}  // namespace
}  // namespace zuvi
