#include "base/fecha.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/error.h"

namespace zuvi {
namespace {

TEST(Fechas, SeriesAndCalendarAgreeInBothDirections) {
  const std::pair<double, const char*> cases[] = {{0, "1899-12-30"},
                                                  {-1.25, "1899-12-29 06:00:00"},
                                                  {60, "1900-02-28"},
                                                  {61, "1900-03-01"},
                                                  {45351.5, "2024-02-29 12:00:00"},
                                                  {2958465, "9999-12-31"},
                                                  {-657434.5, "0100-01-01 12:00:00"}};
  for (const auto& [serie, texto] : cases) {
    EXPECT_EQ(Fecha::DesdeSerie(serie).Texto(), texto);
    EXPECT_EQ(Fecha::DesdeTexto(texto).Serie(), serie) << texto;
  }
  EXPECT_EQ(Fecha::DesdeTexto("2024-02-29T23:59").Texto(), "2024-02-29 23:59:00");
  EXPECT_EQ(Fecha::DesdeTexto("2024-02-29 23:59:58.75").Texto(), "2024-02-29 23:59:58");
  EXPECT_EQ(Fecha::DesdeSerie(-1.25).SoloDia(), Fecha::DesdeSerie(-1));
  // Seconds are rounded and may reach the next day, which the last one does not have.
  EXPECT_EQ(Fecha::DesdeSerie(1.9999999).Formatea("dd hh:mm:ss"), "01 00:00:00");
  EXPECT_EQ(Fecha::DesdeSerie(-1.9999999).Formatea("dd hh:mm:ss"), "30 00:00:00");
  EXPECT_EQ(Fecha::DesdeSerie(2958465.9999999).Texto(), "9999-12-31 23:59:59");
  EXPECT_EQ(Fecha::DesdeTexto("2025-03-04 15:06:07").Formatea("día d, 'dd/MM/yyyy' hh:mm:ss y %s"),
            "día d, '04/03/2025' 15:06:07 y %s");
}

TEST(Fechas, WhatIsNoDateIsRefused) {
  for (const double serie : {2958466.0, -657435.0, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(Fecha::DesdeSerie(serie), HostError) << serie;
  for (const char* texto :
       {"", "2023-02-29", "2024-13-01", "20240101ab", "-024-01-01", "0099-12-31", "2024-01-01 24:00",
        "2024-01-01 10:60", "2024-01-01 10", "2024-01-01 10:0", "2024-01-01 10:00:5", "2024-01-01x10:00",
        "2024-01-01 10:00:00.", "2024-01-01 10:00:00.x", "2024-01-01 10:00Z"})
    EXPECT_THROW(Fecha::DesdeTexto(texto), HostError) << texto;
  // Of a month or a day the calendar's own types keep but a byte.
  for (const FechaCivil& c : {FechaCivil{2024, 257, 1}, {2024, 1, 257}, {67560, 1, 1}, {2024, 1, 1, -1}})
    EXPECT_THROW(Fecha::DesdeCivil(c), HostError) << c.anio << "-" << c.mes << "-" << c.dia;
}

}  // namespace
}  // namespace zuvi
