#pragma once

#include <QuarrySource/SourceTree.h>

#include <QString>

// What a row says about an item.

QString getNameText(const Quarry::SourceTree& tree, const Quarry::SourceItem& item);

/// Returns the types of the values, each once; "call" for a call.
QString getTypeText(const Quarry::SourceTree& tree, const Quarry::SourceItem& item);

/// Returns the values as they are spelled, those of a call in parentheses.
QString getValueText(const Quarry::SourceTree& tree, const Quarry::SourceItem& item);

/// Returns where the item stands: "lamps.cfg:3:5".
QString getPlaceText(const Quarry::SourceTree& tree, const Quarry::SourceItem& item);

QString getText(const Quarry::SourcePlace& place);
