// The preferences of macOS: types, keys, and changes whoever makes them.

#include "desktop/macos/NSUserDefaultsStore.h"
#include "tests/macos/MacTests.h"
#include "tests/support/Test.h"

#include <QProcess>

namespace {

const QString key = u"kestrin.mac.testedValue"_s;
NSString *const nativeKey = @"kestrin.mac.testedValue";

NSUserDefaults *native() {
    return [NSUserDefaults standardUserDefaults];
}

/// What another process, which has nothing but the file, finds or does.
QString elsewhere(const QString &action) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {u"--defaults"_s, action});
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
    void cleanup() {
        [native() removeObjectForKey:nativeKey];
        [native() synchronize];
    }

    void typesAreKept();
    void otherTypesAreAbsent();
    void ownChangesAreToldAtOnce();
    void changesElsewhereAreTold();
};

void UserDefaultsTest::typesAreKept() {
    NSUserDefaultsStore store;
    QCOMPARE(described(store), u"absent"_s);
    for (const bool value : {true, false}) {
        QVERIFY(store.setBoolean(key, value));
        QCOMPARE(described(store), value ? u"true"_s : u"false"_s);
        QCOMPARE(elsewhere(u"describe"_s), described(store));
    }
    for (const QStringList &list : {QStringList{}, QStringList{u"true"_s, u"ä –"_s, u""_s, u"true"_s}}) {
        QVERIFY(store.setStringArray(key, list));
        QCOMPARE(described(store), u"[%1]"_s.arg(list.join(u'|')));
        QCOMPARE(elsewhere(u"describe"_s), described(store));
    }
}

void UserDefaultsTest::otherTypesAreAbsent() {
    NSUserDefaultsStore store;
    const id values[] = {@"YES", [NSNumber numberWithInt:1], [NSNumber numberWithChar:1],
                         [NSArray arrayWithObjects:@"a", [NSNumber numberWithBool:YES], nil],
                         [NSDictionary dictionaryWithObject:@"a" forKey:@"0"]};
    for (const id value : values) {
        [native() setObject:value forKey:nativeKey];
        [native() synchronize];
        const QByteArray description = [[value description] UTF8String];
        QVERIFY2(described(store) == u"absent"_s, description);
        // Neither does the way through the file make booleans of them.
        QVERIFY2(elsewhere(u"describe"_s) == u"absent"_s, description);
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
    elsewhere(u"describe"_s);
    // Nor do they come late, in front of the next one.
    store.setBoolean(key, true);
    QTRY_VERIFY_WITH_TIMEOUT(otherSpy.size() > 1, patience);
    QCOMPARE(spy.size(), 4);
    QCOMPARE(otherSpy.size(), 2);
}

void UserDefaultsTest::changesElsewhereAreTold() {
    NSUserDefaultsStore store;
    store.setBoolean(key, false);
    QSignalSpy spy(&store, &UserDefaults::changed);
    // In another process.
    QCOMPARE(elsewhere(u"set"_s), u"true"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!spy.isEmpty(), patience);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(described(store), u"true"_s);
    // In this one. Equal as numbers, but not a boolean any more. GNUstep would not replace one by the other.
    [native() removeObjectForKey:nativeKey];
    [native() setObject:[NSNumber numberWithInt:1] forKey:nativeKey];
    QTRY_VERIFY_WITH_TIMEOUT(spy.size() == 2, patience);
    [native() synchronize];
    [native() removeObjectForKey:nativeKey];
    QTRY_VERIFY_WITH_TIMEOUT(spy.size() == 3, patience);
    QCOMPARE(spy.last().first().toString(), key);
}

} // namespace

QString actOnUserDefaults(const QString &action) {
    NSUserDefaultsStore store;
    if (action == u"set")
        store.setBoolean(key, true);
    return described(store);
}

KESTRIN_TEST(UserDefaultsTest)

#include "tst_userdefaults.moc"
