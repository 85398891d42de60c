// Output places of the C interface may be null: the value is then computed and dropped.
#pragma once

namespace zelk {

template <class Place, class Value>
void Store(Place* place, Value value) {
  if (place) *place = static_cast<Place>(value);
}

}  // namespace zelk
