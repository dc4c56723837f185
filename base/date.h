// Dates as automation carries them: days since 30-12-1899, the fraction being the time of day.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zuvi {

/// Calendar fields of a date. Months and days count from 1.
struct CivilDate {
  int anio = 1899;
  int mes = 12;
  int dia = 30;
  int hora = 0;
  int minuto = 0;
  int segundo = 0;
};

/// A date with time of day; valid from 1-1-100 to 31-12-9999.
class Date {
 public:
  Date() = default;
  /// From the serial number of days. Throws HostError (Overflow) outside the valid range or for NaN.
  static Date FromSerial(double dias);
  /// From calendar fields. Throws HostError (TypeMismatch) when they name no day or time.
  static Date FromCivil(const CivilDate& civil);
  /// From "yyyy-mm-dd", optionally followed by a blank or 'T' and "hh:mm[:ss[.f]]". Throws HostError
  /// (TypeMismatch).
  static Date FromText(std::string_view iso);

  /// Days since 30-12-1899.
  double Serial() const { return dias_; }
  /// Calendar fields, rounded to the nearest second.
  CivilDate Civil() const;
  /// The date without its time of day.
  Date DayOnly() const;
  /// So many days on, or back, at the same time of day. Throws HostError (Overflow) outside the valid range.
  Date PlusDays(std::int32_t dias) const;
  /// The same day so many months on, or back, without the time of day; the last day of a month that has no
  /// such day. Throws HostError (Overflow) outside the valid range.
  Date PlusMonths(std::int32_t meses) const;
  /// The last day of its month, without the time of day.
  Date EndOfMonth() const;
  /// Writes by pattern: dd, MM, yyyy, hh (0 to 23), mm, ss; everything else as it stands.
  std::string Formatea(std::string_view patron) const;
  /// "yyyy-MM-dd", followed by " hh:mm:ss" when there is a time of day.
  std::string Texto() const;

  friend bool operator==(const Date&, const Date&) = default;

 private:
  explicit Date(double dias) : dias_(dias) {}
  double dias_ = 0;
};

}  // namespace zuvi
