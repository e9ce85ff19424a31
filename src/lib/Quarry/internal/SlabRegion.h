/// Memory that is given back at once.
#pragma once

#include "SlabHeap.h"

#include <memory>
#include <vector>

namespace Quarry {

/// The memory of many pieces that are made together and, most likely, freed together: those of a
/// tree that is read. They lie one behind another, in the order in which they are made, in slabs
/// that hold nothing else. A region that is destroyed gives its slabs back without a look at them.
///
/// A piece can also be freed by itself, like any other; its place is not used again.
///
/// What a region cannot know is told to it: that a part of the tree has got memory from somewhere
/// else, by holdsMore(), and that a part may outlive the region, by breakUp(). After that the
/// pieces are like any others and are freed one by one.
///
/// A region and all of its pieces are used by one thread at a time; the pieces of one that was
/// broken up by any.
class SlabRegion {
 public:
  /// What has more memory than lies here.
  struct Holder {
    void* part;
    void (*release)(void*);
  };

  /// While one lives, all memory that the calling thread gets of SlabHeap is a region's, or, for
  /// null, no region's. The last one that was made counts. A region has one in its life, and is
  /// destroyed after it. Where an exception ends it, the region is broken up: parts may have been
  /// freed that the region was told of.
  class Use {
   public:
    explicit Use(SlabRegion* usedRegion) noexcept;
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    ~Use();

   private:
    // The address sanitizer's build has no regions, and uses none of these.
    [[maybe_unused]] SlabRegion* const region;
    [[maybe_unused]] const int exceptions;  ///< on their way when it was made
    SlabHeap::Run outer;                    ///< what the thread had before
  };

  /// Returns a new region, or null: when memory runs out, and with the address sanitizer, which has
  /// to see every piece on its own.
  static std::unique_ptr<SlabRegion> make() noexcept;

  SlabRegion(const SlabRegion&) = delete;
  SlabRegion& operator=(const SlabRegion&) = delete;

  /// Frees all pieces, unless the region was broken up.
  ~SlabRegion();

  /// Returns the region that the calling thread uses; null for none.
  static SlabRegion* getUsed();

  /// Returns the region of a piece of SlabHeap, of at most LARGEST bytes; null for none.
  static SlabRegion* of(const void* piece);

  /// Has `release(part)` be called before all pieces are freed: the part has to free what else it
  /// has. May be told again and again of one part. Throws std::bad_alloc.
  void holdsMore(void* part, void (*release)(void*));

  /// Makes the pieces pieces like any others. Once is enough.
  void breakUp() noexcept;

  /// Tells whether the region was not broken up.
  bool isWhole() const { return !isBroken; }

  /// Tells whether there is a Use: the region must not be destroyed before that ends.
  bool isUsed() const { return used; }

  /// Tells whether a piece of any size lies here. For checks.
  bool has(const void* piece, std::size_t size) const;

  /// Returns what was told by holdsMore(). For checks.
  const std::vector<Holder>& getHolders() const { return holders; }

 private:
  friend class SlabHeap;

  SlabRegion() = default;
  void* takeSlab(bool isSmall);
  void* takeOfExtent();
  void openSlab();
  void closeSlab() noexcept;
  void breakUpExtents() noexcept;
  void breakUpExtent(char* extent) noexcept;
  void add(SlabHeap::Large& large);
  void remove(SlabHeap::Large& large) noexcept;

  SlabHeap::Slab* newest = nullptr;   ///< of the slabs; the others follow
  std::size_t slabs = 0;              ///< how many these are
  std::vector<char*> extents;         ///< of further slabs, one behind another
  char* spare = nullptr;              ///< where the unused slabs of the last extent begin
  SlabHeap::Slab* open = nullptr;     ///< the slab from which pieces are taken
  SlabHeap::Large* larges = nullptr;  ///< pieces of more than LARGEST bytes
  std::vector<Holder> holders;
  bool isBroken = false;
  bool used = false;
};

}  // namespace Quarry
