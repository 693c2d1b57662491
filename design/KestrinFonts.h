#pragma once

#include "design/KestrinWeight.h"

#include <QFont>

namespace kestrin::design::KestrinFonts {

/// The family of all texts: the desktop's own where it has every weight in use, else that of the faces in the
/// program, which are made of Inter. Chosen once. Needs a QGuiApplication.
QString family();

/// A font of that family. The size is in points of the interface, which are device-independent pixels, and
/// need not be whole.
QFont font(double size, KestrinWeight weight);

/// Whether the family has a face of its own for each of the weights.
bool hasAllWeights(const QString &family);

} // namespace kestrin::design::KestrinFonts
