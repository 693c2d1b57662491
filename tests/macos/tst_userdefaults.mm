// The preferences of macOS: types, keys, and changes whoever makes them.

#include "runtime/macos/NSUserDefaultsStore.h"
#include "tests/macos/MacTests.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

const QString key = u"kestrin.mac.testedValue"_s;
NSString *const nativeKey = @"kestrin.mac.testedValue";

NSUserDefaults *native() {
    return [NSUserDefaults standardUserDefaults];
}

/// What another process, which has nothing but the file, finds or does.
QString elsewhere(const QStringList &arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), QStringList{u"--defaults"_s} + arguments);
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        return u"failed"_s;
    return QString::fromUtf8(process.readAll());
}

QString described(const UserDefaults &defaults) {
    if (const auto value = defaults.boolean(key))
        return *value ? u"true"_s : u"false"_s;
    if (const auto value = defaults.stringArray(key))
        return u"[%1]"_s.arg(value->join(u'|'));
    return u"absent"_s;
}

class UserDefaultsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_pool = [[NSAutoreleasePool alloc] init]; }
    void cleanup() {
        [native() removeObjectForKey:nativeKey];
        [native() synchronize];
        [m_pool release];
    }

    void typesAreKept();
    void otherTypesAreAbsent();
    void ownChangesAreToldAtOnce();
    void changesElsewhereInTheProcessAreTold();
    void changesOfOtherProcessesAreTold();

  private:
    NSAutoreleasePool *m_pool = nil;
};

void UserDefaultsTest::typesAreKept() {
    NSUserDefaultsStore store;
    QCOMPARE(described(store), u"absent"_s);
    for (const bool value : {true, false}) {
        store.setBoolean(key, value);
        QCOMPARE(described(store), value ? u"true"_s : u"false"_s);
        QCOMPARE(elsewhere({u"describe"_s}), described(store));
        QCOMPARE(store.stringArray(key), std::nullopt);
        NSDictionary *domain = [native() persistentDomainForName:@KESTRIN_BUNDLE_IDENTIFIER];
        QCOMPARE([[domain objectForKey:nativeKey] boolValue], value ? YES : NO);
    }
    for (const QStringList &list : {QStringList{}, QStringList{u"true"_s}, QStringList{u"1"_s, u""_s},
                                    QStringList{u"b"_s, u"ä –"_s, u"a.b"_s, u"b"_s}}) {
        store.setStringArray(key, list);
        QCOMPARE(store.stringArray(key), list);
        QCOMPARE(elsewhere({u"describe"_s}), u"[%1]"_s.arg(list.join(u'|')));
        QCOMPARE(store.boolean(key), std::nullopt);
    }
}

void UserDefaultsTest::otherTypesAreAbsent() {
    NSUserDefaultsStore store;
    const id values[] = {@"YES",
                         @"true",
                         [NSNumber numberWithInt:1],
                         [NSNumber numberWithInt:0],
                         [NSNumber numberWithChar:1],
                         [NSNumber numberWithDouble:1],
                         [NSArray arrayWithObjects:@"a", [NSNumber numberWithBool:YES], nil],
                         [NSArray arrayWithObject:[NSArray array]],
                         [NSDictionary dictionaryWithObject:@"a" forKey:@"0"],
                         [NSData data],
                         [NSDate date]};
    for (const id value : values) {
        [native() setObject:value forKey:nativeKey];
        [native() synchronize];
        const QByteArray description = [[value description] UTF8String];
        QVERIFY2(described(store) == u"absent"_s, description);
    }
    // Neither does the way through the file make booleans of them.
    for (const id value : {values[0], values[2]}) {
        [native() setObject:value forKey:nativeKey];
        [native() synchronize];
        QCOMPARE(elsewhere({u"describe"_s}), u"absent"_s);
    }
    // It is replaced, also where a lenient comparison would find it equal.
    [native() setObject:[NSNumber numberWithInt:1] forKey:nativeKey];
    store.setBoolean(key, true);
    QCOMPARE(described(store), u"true"_s);
}

void UserDefaultsTest::ownChangesAreToldAtOnce() {
    NSUserDefaultsStore store;
    QSignalSpy spy(&store, &UserDefaults::changed);
    store.setBoolean(key, true);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toString(), key);
    store.setBoolean(key, true);
    QCOMPARE(spy.size(), 1);
    store.setStringArray(key, {});
    store.setStringArray(key, {});
    QCOMPARE(spy.size(), 2);
    // The system's own notices of these changes, and the file's, add nothing.
    NSUserDefaultsStore other;
    QSignalSpy otherSpy(&other, &UserDefaults::changed);
    store.setBoolean(key, false);
    QTRY_VERIFY_WITH_TIMEOUT(!otherSpy.isEmpty(), patience);
    elsewhere({u"describe"_s});
    QTest::qWait(50);
    QCOMPARE(spy.size(), 3);
    QCOMPARE(otherSpy.size(), 1);
}

void UserDefaultsTest::changesElsewhereInTheProcessAreTold() {
    NSUserDefaultsStore store;
    store.setBoolean(key, true);
    QSignalSpy spy(&store, &UserDefaults::changed);
    // Equal as numbers, but not a boolean any more. GNUstep would not replace one by the other.
    [native() removeObjectForKey:nativeKey];
    [native() setObject:[NSNumber numberWithInt:1] forKey:nativeKey];
    QTRY_VERIFY_WITH_TIMEOUT(spy.size() == 1, patience);
    [native() synchronize];
    [native() removeObjectForKey:nativeKey];
    QTRY_VERIFY_WITH_TIMEOUT(spy.size() == 2, patience);
    QCOMPARE(spy.last().first().toString(), key);
}

void UserDefaultsTest::changesOfOtherProcessesAreTold() {
    NSUserDefaultsStore store;
    store.setBoolean(key, false);
    QSignalSpy spy(&store, &UserDefaults::changed);
    QCOMPARE(elsewhere({u"set"_s}), u"true"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), patience);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toString(), key);
    QCOMPARE(described(store), u"true"_s);
}

} // namespace

int runUserDefaultsTests(const QStringList &arguments) {
    UserDefaultsTest test;
    return QTest::qExec(&test, arguments);
}

QString actOnUserDefaults(const QString &action) {
    NSUserDefaultsStore store;
    if (action == u"set")
        store.setBoolean(key, true);
    return described(store);
}

#include "tst_userdefaults.moc"
