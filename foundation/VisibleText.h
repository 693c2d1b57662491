#pragma once

#include <QByteArray>
#include <QString>

namespace kestrin::foundation {

/// The text with every character that could forge lines, steer a terminal or reorder what is read spelled
/// out:
/// "\u202e". These are control characters (NUL too), line separators, bidirectional controls and lone
/// surrogates. Line feeds stay where `keepsLines`, for texts that are laid out by them. For whoever shows a
/// text that came from outside; what is stored stays as it came.
QString visibleText(const QString &text, bool keepsLines = false);

/// Visible text for JSON, where the spelling means the character itself. Line breaks between values stay.
QByteArray visibleJson(const QByteArray &json);

} // namespace kestrin::foundation
