// How desktop entries are written down.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace kestrin::desktop {

/// Goes through the keys of the group "Desktop Entry" of a file's text, and through nothing behind it. What
/// cannot be understood is passed over. The text outlives the object.
class DesktopEntryKeys {
  public:
    explicit DesktopEntryKeys(QByteArrayView text);

    /// Goes to the next key, at first to the first one; false when there is none any more.
    bool next();

    /// With its locale, if it has one: "Name[de]".
    QByteArrayView key() const { return m_key; }
    /// As it is written; see below.
    QByteArrayView value() const { return m_value; }

    /// Whether the group is there at all, once next() has told the end.
    bool hasGroup() const { return m_inside; }

  private:
    QByteArrayView m_rest;
    QByteArrayView m_key;
    QByteArrayView m_value;
    bool m_inside = false;
};

/// A value of type string. An escape that does not exist stands for itself; bytes that are no UTF-8 become
/// replacement characters.
QString desktopEntryString(QByteArrayView value);
bool desktopEntryBoolean(QByteArrayView value);

/// The value that stands for this string, which does not begin with a space.
QByteArray desktopEntryValue(const QString &string);

/// One argument of a command line, as a string.
QString desktopEntryArgument(const QString &argument);

} // namespace kestrin::desktop
