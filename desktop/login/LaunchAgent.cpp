#include "desktop/login/LoginFile.h"

#include <QDir>
#include <QHash>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

QByteArray agentText(const QString &program, bool starts) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n"
           "<dict>\n"
           "\t<key>Label</key>\n"
           "\t<string>" KESTRIN_DESKTOP_ID "</string>\n"
           "\t<key>ProgramArguments</key>\n"
           "\t<array>\n"
           "\t\t<string>" +
           program.toHtmlEscaped().toUtf8() +
           "</string>\n"
           "\t\t<string>--background</string>\n"
           "\t</array>\n"
           "\t<key>ProcessType</key>\n"
           "\t<string>Interactive</string>\n"
           "\t<key>RunAtLoad</key>\n"
           "\t<" +
           (starts ? "true" : "false") +
           "/>\n"
           "</dict>\n"
           "</plist>\n";
}

bool agentStarts(const QByteArray &text) {
    QHash<QString, bool> switches;
    QString key;
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"key")
            key = xml.readElementText();
        else
            switches.insert(key, xml.name() == u"true");
    }
    return !xml.hasError() && switches.value(u"RunAtLoad"_s) && !switches.value(u"Disabled"_s);
}

} // namespace

LoginFile launchAgent() {
    // The program of a bundle is found inside, as launchd wants it. kestrinctl is in the bundle too, or in
    // the bin folder of where the bundle was installed.
    const QString bundled = u"Kestrin.app/Contents/MacOS/Kestrin"_s;
    return {QStringLiteral(KESTRIN_DESKTOP_ID ".plist"),
            {u"Kestrin"_s, u"../"_s + bundled, QDir::homePath() + u"/Applications/"_s + bundled,
             u"/Applications/"_s + bundled},
            {QDir::homePath() + u"/Library/LaunchAgents"_s},
            u"../Application Support/Kestrin"_s,
            agentText,
            agentStarts};
}

} // namespace kestrin::desktop
