/// @file
/// Edits a document where it stands, and changes nothing but what is asked for.
#pragma once

#include <QuarrySource/Export.h>
#include <QuarrySource/SourceDocument.h>
#include <QuarrySource/SourceLiteral.h>
#include <QuarrySource/SourceTree.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Quarry {

class EditCheck;
class TreeEvents;
struct NewItem;
struct SourceEdit;
struct TreeEvent;

/// Where a new item goes within its group. A sibling has to be in that group.
struct SourcePlacement {
  /// Beside what.
  enum Side {
    AT_END,  ///< behind all items of the group
    BEFORE,  ///< before the sibling
    BEHIND   ///< behind the sibling
  };

  /// Beside what it goes.
  Side side = AT_END;
  std::string sibling{};  ///< the path of the item beside it

  /// Behind all items of the group.
  static SourcePlacement atEnd() { return {}; }
  /// Before the item at a path, which is of the same group.
  static SourcePlacement before(const std::string& path) { return {BEFORE, path}; }
  /// Behind the item at a path, which is of the same group.
  static SourcePlacement behind(const std::string& path) { return {BEHIND, path}; }
};

/// Replaces, adds, removes and renames items and values of a document by their paths (see
/// SourceTree). Comments, layout, includes and the spelling of everything else stay byte for byte,
/// in whichever file the item stands.
///
/// ```cpp
/// Quarry::SourceDocument document;
/// document.read("harbor.cfg");
/// Quarry::SourceEditor editor(document);
/// const bool done = editor.setValue("size#1", Quarry::SourceLiteral::makeInt(1280)) &&
///                   editor.addItem("camera", "note", {Quarry::SourceLiteral::parse("\"wide\"")})
///                   && editor.save();
/// if (!done) std::cerr << editor.getProblem() << "\n";
/// ```
///
/// Every edit is tried on a copy first, which is read anew: the edit is made when the copy holds
/// what was asked for, no more and no less, and draws no message that the document does not draw.
/// Otherwise it is refused with a reason, and nothing has changed.
///
/// A value that has the data of the literal already keeps its spelling, unless the literal is a
/// word that a person typed. A new item goes on a line of its own, indented like its siblings, with
/// the line end of its file; in a group that stands on one line it goes there. At the end of the
/// root it goes to the end of the top file; where the document ends before that, it goes behind the
/// root's last item.
///
/// After an edit the document is the new one, with the changed files' texts standing in for the
/// files until they are saved, and its tree is a new one too. What they handed out before is no
/// longer good; neither may the document be read again while it has an editor.
///
/// An edit takes time in proportion to the document. Throws `std::bad_alloc` when memory runs out;
/// nothing has changed then.
class QUARRYSOURCE_EXPORT SourceEditor {
 public:
  /// Makes an editor of a document, which has not changed yet.
  /// @param edited a document that was read; it has to outlive the editor
  explicit SourceEditor(SourceDocument& edited);
  SourceEditor(const SourceEditor&) = delete;
  SourceEditor& operator=(const SourceEditor&) = delete;
  ~SourceEditor();

  /// Returns the document as the edits have left it.
  const SourceDocument& getDocument() const { return document; }

  /// Returns its tree; good until the next edit.
  const SourceTree& getTree() const { return *tree; }

  /// Returns why the last edit was refused, or saving failed; empty where it was not.
  const std::string& getProblem() const { return problem; }

  // --- Values ------------------------------------------------------------------------------------

  /// Sets all values of an item: those that are there in their places, and further ones behind
  /// them, spaced like the last two; what is too much goes from the end. No literals leave
  /// `<empty>`, an empty argument list, or a group without values.
  /// @param path of the item
  /// @param literals what the values shall be, in order
  /// @return whether the edit was made; where it was not, getProblem() tells why
  bool setValues(const std::string& path, const std::vector<SourceLiteral>& literals);

  /// Sets one value.
  /// @param path of the value: `size#2`, or `title` for the only one
  /// @return as setValues()
  bool setValue(const std::string& path, const SourceLiteral& literal);

  /// Adds a value behind those of an item, or in the place of `<empty>`.
  /// @return as setValues()
  bool addValue(const std::string& path, const SourceLiteral& literal);

  /// Removes one value, with its comma; the only one as setValues() does without literals.
  /// @param path of the value, as for setValue()
  /// @return as setValues()
  bool removeValue(const std::string& path);

  // --- Items -------------------------------------------------------------------------------------

  /// Adds a plain item, or a keyword for a name with a `#`. Without literals it is `<empty>`.
  /// @param parent the path of the item that holds the group; empty for the root
  /// @param name an identifier, or `#` and an identifier
  /// @param literals its values, in order
  /// @param placement where in the group
  /// @return as setValues()
  bool addItem(const std::string& parent, const std::string& name,
               const std::vector<SourceLiteral>& literals,
               const SourcePlacement& placement = SourcePlacement());

  /// Adds an item with an empty group. Parameters and result as for addItem().
  bool addGroup(const std::string& parent, const std::string& name,
                const SourcePlacement& placement = SourcePlacement());

  /// Adds a call; the literals are its arguments. Parameters and result as for addItem().
  bool addCall(const std::string& parent, const std::string& name,
               const std::vector<SourceLiteral>& literals,
               const SourcePlacement& placement = SourcePlacement());

  /// Removes an item with all that is in it, comments and includes as well, and its lines where
  /// nothing else stands on them. It has to begin and end in one file.
  /// @return as setValues()
  bool removeItem(const std::string& path);

  /// Gives an item another name. A name with a `#` makes a keyword of it, which a call cannot be.
  /// @param name an identifier, or `#` and an identifier
  /// @return as setValues()
  bool renameItem(const std::string& path, const std::string& name);

  // --- Files -------------------------------------------------------------------------------------

  /// Returns the new texts of the files that edits have changed and save() has not written, by
  /// path. A file that is as it was read is not among them. Good until the next edit.
  const std::map<std::string, std::string>& getChangedTexts() const { return changedTexts; }

  /// Writes the changed files, each as ParserFile::save() does. A file that has changed on the disk
  /// since it was read is not overwritten. A text that stood in for a file before the first edit,
  /// as that of SourceDocument::readText() does, takes the place of the file, whatever that holds.
  /// @return whether all are written, also when there was nothing to write; where one is not,
  ///         getProblem() tells why, and files that are written stay so
  bool save();

 private:
  /// A changed file as it was when it was read.
  struct Stored {
    std::string text;
    bool isStandIn;  ///< the text did not come from the disk
  };

  QUARRYSOURCE_HIDDEN bool refuse(const std::string& reason);
  QUARRYSOURCE_HIDDEN bool begin();
  QUARRYSOURCE_HIDDEN bool acceptLiterals(const std::vector<SourceLiteral>& literals);
  QUARRYSOURCE_HIDDEN bool findItem(const std::string& path, unsigned long& item);
  QUARRYSOURCE_HIDDEN bool findValue(const std::string& path, unsigned long& item,
                                     unsigned long& value);
  QUARRYSOURCE_HIDDEN bool findGroup(const std::string& path, unsigned long& item);
  QUARRYSOURCE_HIDDEN bool isEmptyItem(unsigned long item) const;
  QUARRYSOURCE_HIDDEN bool isKept(const SourceValue& value, const SourceLiteral& literal) const;
  QUARRYSOURCE_HIDDEN SourceEdit startValueEdit(unsigned long item) const;
  QUARRYSOURCE_HIDDEN bool replaceValue(unsigned long item, unsigned long value,
                                        const SourceLiteral& literal);
  QUARRYSOURCE_HIDDEN bool changeValues(unsigned long item,
                                        const std::vector<SourceLiteral>& literals);
  QUARRYSOURCE_HIDDEN bool appendValue(unsigned long item, const SourceLiteral& literal);
  QUARRYSOURCE_HIDDEN bool insert(const std::string& parentPath, const SourcePlacement& placement,
                                  const TreeEvent& event,
                                  const std::vector<SourceLiteral>& literals);
  QUARRYSOURCE_HIDDEN bool placeItem(unsigned long parent, const SourcePlacement& placement,
                                     const NewItem& added, SourceEdit& edit,
                                     unsigned long& itemsBefore);
  QUARRYSOURCE_HIDDEN bool make(const SourceEdit& edit);
  QUARRYSOURCE_HIDDEN void accept(EditCheck& check);
  QUARRYSOURCE_HIDDEN bool saveFile(const std::string& path, const std::string& text);

  SourceDocument& document;
  std::unique_ptr<SourceTree> tree;
  std::unique_ptr<TreeEvents> events;
  std::string problem;
  std::map<std::string, std::string> changedTexts;
  std::map<std::string, Stored> storedTexts;  ///< of the changed files
};

}  // namespace Quarry
