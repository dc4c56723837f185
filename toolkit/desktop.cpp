#include "toolkit/desktop.h"

#include <algorithm>

#include "toolkit/form.h"

namespace zuvi {

Desktop::~Desktop() = default;

void Desktop::Closed(const Form& form) {
  const auto found =
      std::ranges::find_if(forms_, [&](const std::shared_ptr<Form>& open) { return open.get() == &form; });
  if (found != forms_.end()) forms_.erase(found);
}

}  // namespace zuvi
