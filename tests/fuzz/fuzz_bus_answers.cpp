// What members of the session bus say of themselves.

#include "desktop/quitting/BusObject.h"
#include "tests/fuzz/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const BusObject object = BusObject::fromIntrospection(QString::fromUtf8(bytesOf(data, size)));
    require(!object.children.contains(QString()), "children have names");
    for (const QString &interface : object.plainMethods.keys())
        require(object.interfaces.contains(interface), "methods belong to an interface");
    return 0;
}
