#pragma once

#include <QByteArray>
#include <QString>

#include <gumbo.h>

// What the feed HTML cleaner lets through: elements, attributes, styles.
namespace FeedHtmlRules {

// Elements removed together with everything inside them.
bool isDropped(GumboTag tag);
// Elements kept as they are; every other element gives way to its content.
bool isAllowed(GumboTag tag);
bool isVoid(GumboTag tag);
// Attribute names are lower case.
bool isAllowedAttribute(const QByteArray &name);
bool isUrlAttribute(const QByteArray &name);
// A style attribute may colour and size its element, but not lay it over the page or
// load anything.
bool isUnsafeStyle(const QString &style);

} // namespace FeedHtmlRules
