// append-worker FILE COUNT: appends COUNT events (0: without end) and prints the id of each once it is
// stored.

#include "engine/JSONMacActivityLogStore.h"
#include "foundation/Clock.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv) {
    using namespace kestrin;
    if (argc != 3)
        return 2;
    JSONMacActivityLogStore store(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    const long count = std::strtol(argv[2], nullptr, 10);
    for (long i = 0; count == 0 || i < count; ++i) {
        const auto event = MacProtectionEvent::create(systemTime(), MacProtectionEventKind::dryRun,
                                                      QStringLiteral("Event %1 of a worker.").arg(i));
        store.append(event);
        std::printf("%s\n", qPrintable(event.id.toString(QUuid::WithoutBraces)));
        std::fflush(stdout);
    }
    return 0;
}
