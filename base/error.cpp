#include "base/error.h"

namespace zuvi {

std::string DescriptionOf(ErrorNumber number) {
  switch (number) {
    case ErrorNumber::InvalidCall:
      return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
      return "Overflow";
    case ErrorNumber::OutOfMemory:
      return "Out of memory";
    case ErrorNumber::SubscriptOutOfRange:
      return "Subscript out of range";
    case ErrorNumber::DivisionByZero:
      return "Division by zero";
    case ErrorNumber::TypeMismatch:
      return "Type mismatch";
    case ErrorNumber::OutOfStack:
      return "Out of stack space";
    case ErrorNumber::ObjectNotSet:
      return "Object variable or With block variable not set";
    case ErrorNumber::InvalidUseOfNull:
      return "Invalid use of Null";
    case ErrorNumber::CannotCreateObject:
      return "ActiveX component can't create object";
    case ErrorNumber::NoSuchMember:
      return "Object doesn't support this property or method";
    case ErrorNumber::WrongArgumentCount:
      return "Wrong number of arguments or invalid property assignment";
    case ErrorNumber::AutomationFailure:
      break;
  }
  return "Automation error";
}

std::string CurrentDescription() noexcept {
  try {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      return DescriptionOf(ErrorNumber::OutOfMemory);
    } catch (const std::exception& e) {
      return e.what();
    } catch (...) {
      return DescriptionOf(ErrorNumber::AutomationFailure);
    }
  } catch (...) {
    return {};
  }
}

}  // namespace zuvi
