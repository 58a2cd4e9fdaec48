#pragma once

#include <QIcon>
#include <QString>

namespace mact {

/// The program's own drawings, as vectors: sharp at any size and scale.

/// A line drawing in the palette's colours, legible on light and on dark; `name` is that of its file.
QIcon LineIcon(const QString& name);

/// The program's emblem, in its own colours.
QIcon EmblemIcon();

/// The resource path of a picture, as in PictureFile("picture").
QString PictureFile(const QString& name);
} // namespace mact
