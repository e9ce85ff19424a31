/// Changes an item, and its model in the same way.
#pragma once

#include <string>
#include <vector>

#include "GroupModel.h"

namespace Fuzz {

inline void addValue(Place& place, unsigned choice) {
  switch (choice % 4) {
    case 0: place.item->addInt(static_cast<int>(choice)); break;
    case 1: place.item->addString(std::string(choice, 's')); break;
    case 2: place.item->addBool(choice >= 128); break;
    default: place.item->addDouble(choice + 0.5); break;
  }
  const std::string texts[] = {std::to_string(choice), '"' + std::string(choice, 's') + '"',
                               choice >= 128 ? "yes" : "no", std::to_string(choice) + ".5"};
  place.model.values.push_back(texts[choice % 4]);
}

/// Numbers that are set are written as one raw byte.
inline void setValue(Place& place, unsigned long index, unsigned choice) {
  const char byte = static_cast<char>(choice);
  switch (choice % 4) {
    case 0: place.item->setInt(byte, index); break;
    case 1: place.item->setString(place.model.name, index); break;
    case 2: place.item->setBool(choice >= 128, index); break;
    default: place.item->setDouble(byte, index); break;
  }
  const std::string texts[] = {std::string(1, byte), '"' + place.model.name + '"',
                               choice >= 128 ? "yes" : "no", std::string(1, byte)};
  place.model.values[index] = texts[choice % 4];
}

inline void removeAllValues(Place& place) {
  place.item->reset();
  place.model.values.clear();
}

inline void removeValue(Place& place, unsigned long index) {
  place.item->removeValue(index);
  place.model.values.erase(place.model.values.begin() + static_cast<long>(index));
}

/// An index that is given twice, or is that of no value, changes nothing more.
inline void removeValueAndNextButOne(Place& place, unsigned long index) {
  std::vector<std::string>& values = place.model.values;
  place.item->removeValue(std::vector<unsigned long>{index + 2, index, index});
  if (index + 2 < values.size()) values.erase(values.begin() + static_cast<long>(index) + 2);
  values.erase(values.begin() + static_cast<long>(index));
}

/// The count of an array is written as one raw byte; from 200 on, the item becomes none.
inline void setArray(Place& place, unsigned long count) {
  place.item->setArray(count < 200, count);
  const char byte = static_cast<char>(count);
  place.model.array = count == 0 ? "[]" : std::string{'[', byte, ']'};
  if (count >= 200) place.model.array.clear();
}

inline void setTemplate(Place& place, const std::string& name) {
  place.item->setTemplate(name);
  place.model.templateName = name;
}

}  // namespace Fuzz
