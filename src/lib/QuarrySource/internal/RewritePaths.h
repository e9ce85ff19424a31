/// The paths of the parts of a tree.
#pragma once

#include "NamesakeCounter.h"
#include "PathStep.h"
#include "RewriteText.h"

#include <string>
#include <vector>

namespace Quarry {

/// Names items and values as SourceTree does.
class RewritePaths {
 public:
  explicit RewritePaths(const std::vector<RewritePart>& allParts)
      : parts(allParts), ordinals(parts.size()) {
    NamesakeCounter counter;
    for (unsigned long i = 0; i < parts.size(); ++i) {
      if (parts[i].isItem()) ordinals[i] = counter.count(parts[i].owner, parts[i].item->getName());
    }
  }

  std::string getPath(unsigned long part) const {
    const RewritePart& named = parts[part];
    std::vector<unsigned long> steps;
    for (unsigned long i = named.isItem() ? part : named.owner; i != RewritePart::NONE;
         i = parts[i].owner)
      steps.push_back(i);
    std::string path;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
      if (step != steps.rbegin()) path += '/';
      path += makeStep(parts[*step].item->getName(), ordinals[*step]);
    }
    if (!named.isItem()) path += "#" + std::to_string(named.index + 1);
    return path;
  }

 private:
  const std::vector<RewritePart>& parts;
  std::vector<unsigned long> ordinals;  ///< of each item among its namesakes, from 1
};

}  // namespace Quarry
