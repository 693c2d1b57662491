// The tests of the macOS adapters. tools/check-macos-adapters gives them a home of their own.

#include "tests/macos/MacTests.h"
#include "tests/macos/SampleApplication.h"
#include "tests/support/TestClass.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[]) {
    if (!qEnvironmentVariableIsSet("GNUSTEP_CONFIG_FILE")) {
        std::fputs("This would change your own preferences; run tools/check-macos-adapters instead.\n",
                   stderr);
        return 2;
    }
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    @autoreleasepool {
        serveMainQueueByQt();
        // The workspace is to do without GNUstep's notification daemon, and only to say so.
        [[NSUserDefaults standardUserDefaults]
            registerDefaults:[NSDictionary dictionaryWithObject:@"YES" forKey:@"GSLogWorkspaceTimeout"]];
        if (arguments.value(1) == QStringLiteral("--defaults")) {
            std::fputs(qPrintable(actOnUserDefaults(arguments.value(2))), stdout);
            return 0;
        }
        int failures = 0;
        for (const auto &[name, make] : kestrin::samples::testClasses())
            failures += QTest::qExec(make().get(), arguments);
        return failures;
    }
}
