#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::design {

/// QML knows the weights as `KestrinWeight.Semibold` and so on.
namespace weights {
Q_NAMESPACE
QML_NAMED_ELEMENT(KestrinWeight)

/// The weights of texts and symbols, as OpenType counts them.
enum class KestrinWeight {
    Regular = 400,
    Medium = 500,
    Semibold = 600,
    Bold = 700,
    Heavy = 800,
};
Q_ENUM_NS(KestrinWeight)

} // namespace weights

using weights::KestrinWeight;

} // namespace kestrin::design
