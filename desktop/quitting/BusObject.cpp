#include "desktop/quitting/BusObject.h"

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

/// Reads to the end of the method. Arguments without a direction are those that it takes.
bool takesNothing(QXmlStreamReader &xml) {
    bool result = true;
    while (xml.readNextStartElement()) {
        if (xml.name() == "arg"_L1 && xml.attributes().value("direction"_L1) != "out"_L1)
            result = false;
        xml.skipCurrentElement();
    }
    return result;
}

} // namespace

BusObject BusObject::fromIntrospection(const QString &text) {
    BusObject object;
    QXmlStreamReader xml(text);
    xml.readNextStartElement();
    while (xml.readNextStartElement()) {
        const QString name = xml.attributes().value("name"_L1).toString();
        if (xml.name() == "node"_L1 && !name.isEmpty())
            object.children.append(name);
        if (xml.name() != "interface"_L1) {
            xml.skipCurrentElement();
            continue;
        }
        object.interfaces.append(name);
        while (xml.readNextStartElement()) {
            const QString member = xml.attributes().value("name"_L1).toString();
            if (xml.name() != "method"_L1)
                xml.skipCurrentElement();
            else if (takesNothing(xml))
                object.plainMethods[name].append(member);
        }
    }
    return object;
}

} // namespace kestrin::desktop
