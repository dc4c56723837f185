// Dates as automation carries them: days since 30-12-1899, the fraction being the time of day.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zuvi {

/// Calendar fields of a date. Months and days count from 1.
struct FechaCivil {
  int anio = 1899;
  int mes = 12;
  int dia = 30;
  int hora = 0;
  int minuto = 0;
  int segundo = 0;
};

/// A date with time of day; valid from 1-1-100 to 31-12-9999.
class Fecha {
 public:
  Fecha() = default;
  /// From the serial number of days. Throws HostError (Overflow) outside the valid range or for NaN.
  static Fecha DesdeSerie(double dias);
  /// From calendar fields. Throws HostError (TypeMismatch) when they name no day or time.
  static Fecha DesdeCivil(const FechaCivil& civil);
  /// From "yyyy-mm-dd", optionally followed by a blank or 'T' and "hh:mm[:ss[.f]]". Throws HostError
  /// (TypeMismatch).
  static Fecha DesdeTexto(std::string_view iso);

  /// Days since 30-12-1899.
  double Serie() const { return dias_; }
  /// Calendar fields, rounded to the nearest second.
  FechaCivil Civil() const;
  /// The date without its time of day.
  Fecha SoloDia() const;
  /// So many days on, or back, at the same time of day. Throws HostError (Overflow) outside the valid range.
  Fecha MasDias(std::int32_t dias) const;
  /// The same day so many months on, or back, without the time of day; the last day of a month that has no
  /// such day. Throws HostError (Overflow) outside the valid range.
  Fecha MasMeses(std::int32_t meses) const;
  /// The last day of its month, without the time of day.
  Fecha FinDeMes() const;
  /// Writes by pattern: dd, MM, yyyy, hh (0 to 23), mm, ss; everything else as it stands.
  std::string Formatea(std::string_view patron) const;
  /// "yyyy-MM-dd", followed by " hh:mm:ss" when there is a time of day.
  std::string Texto() const;

  friend bool operator==(const Fecha&, const Fecha&) = default;

 private:
  explicit Fecha(double dias) : dias_(dias) {}
  double dias_ = 0;
};

}  // namespace zuvi
