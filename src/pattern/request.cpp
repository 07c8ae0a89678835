// Finding the records of a request.
#include "pattern/request.h"

namespace lrasynth {

// Every integer of the type's value starts one, wherever it stands.
const int32_t* Records::next(const int32_t* from) const { return std::find(from, end_, type_); }

}  // namespace lrasynth
