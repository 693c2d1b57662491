// Desktop entry files, whose first line is here the name of the user's locale.

#include "desktop/applications/DesktopEntry.h"
#include "desktop/applications/DesktopEntryText.h"
#include "tests/fuzz/Fuzzing.h"

namespace {

/// Also with a space at its beginning or end.
QByteArray escaped(const QString &text) {
    return desktopEntryValue(text).replace(' ', "\\s");
}

void checkRoundTrip(const QByteArray &bytes) {
    QString name = QString::fromUtf8(bytes);
    // Qt drops a byte order mark in front of any text, wherever that stands.
    while (name.startsWith(QChar::ByteOrderMark))
        name.remove(0, 1);
    const QByteArray text = "[Desktop Entry]\nType=Application\nName=" + escaped(name) +
                            "\nStartupWMClass=" + escaped(name) + '\n';
    const DesktopEntry expected{name, name, true, false, false, false};
    require(DesktopEntry::parse(text, {}) == expected, "what is written reads as it was");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray input = bytesOf(data, size);
    const qsizetype lineEnd = input.indexOf('\n');
    const EntryLocales locales = entryLocales(QByteArrayView(input).first(std::max<qsizetype>(lineEnd, 0)));
    const QByteArray text = input.sliced(lineEnd + 1);
    const auto entry = DesktopEntry::parse(text, locales);
    require(DesktopEntry::parse(text + "\n[Desktop Action x]\nName=Other\nHidden=true\n", locales) == entry,
            "other groups behind it change nothing");
    require(DesktopEntry::parse(QByteArray(text).replace("\n", "\r\n\n# Name=Other\n"), locales) == entry,
            "line ends and comments change nothing");
    checkRoundTrip(text);
    return 0;
}
