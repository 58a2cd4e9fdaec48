#pragma once

#include <QIcon>
#include <QString>

namespace mact {

/// The program's own drawings. They are vectors: sharp at any size and scale.

/// A line drawing in the colours of the palette, so that it can be read on light and on dark. `name` is that
/// of its file in dialogs/pictures.
QIcon LineIcon(const QString& name);

/// The program's emblem, in its own colours.
QIcon EmblemIcon();

/// The file of a picture, as in PictureFile("picture").
QString PictureFile(const QString& name);
} // namespace mact
