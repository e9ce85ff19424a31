/// The commands, one source file each. Each adds itself to the table.
#pragma once

namespace Tool {

class CommandTable;

void addTreeCommand(CommandTable& commands);
void addListCommand(CommandTable& commands);
void addFindCommand(CommandTable& commands);
void addGetCommand(CommandTable& commands);
void addDiffCommand(CommandTable& commands);
void addExplainCommand(CommandTable& commands);
void addWordsCommand(CommandTable& commands);
void addExpandCommand(CommandTable& commands);
void addCheckCommand(CommandTable& commands);
void addFormatCommand(CommandTable& commands);
void addSetCommand(CommandTable& commands);
void addAddCommand(CommandTable& commands);
void addRemoveCommand(CommandTable& commands);
void addRenameCommand(CommandTable& commands);
void addRewriteCommand(CommandTable& commands);
void addEncodeCommand(CommandTable& commands);
void addDecodeCommand(CommandTable& commands);
void addConvertCommand(CommandTable& commands);
void addPackCommand(CommandTable& commands);
void addUnpackCommand(CommandTable& commands);

}  // namespace Tool
