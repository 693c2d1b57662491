#include "desktop/bus/BusValues.h"

namespace kestrin::desktop {

QByteArray readText(sd_bus_message *message, char type) {
    const char *text = nullptr;
    return sd_bus_message_read_basic(message, type, &text) > 0 ? QByteArray(text) : QByteArray();
}

QList<QByteArray> readTexts(sd_bus_message *message) {
    QList<QByteArray> texts;
    if (sd_bus_message_enter_container(message, 'a', "s") <= 0)
        return texts;
    for (QByteArray text = readText(message); !text.isNull(); text = readText(message))
        texts.append(text);
    sd_bus_message_exit_container(message);
    return texts;
}

QByteArray readTextVariant(sd_bus_message *message) {
    for (const char *type : {"s", "o"}) {
        if (sd_bus_message_enter_container(message, 'v', type) > 0)
            return readText(message, type[0]);
    }
    return {};
}

} // namespace kestrin::desktop
